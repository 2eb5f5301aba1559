// A small program of the suite on the installed shared code: it lists the files of a folder
// with the directory scan, sorted, and counts the processes of a name in the process table.
// Usage: kz_consumer FOLDER PROCESS_NAME
#include <cstdio>
#include <memory>

#include "files/dir_scan.h"
#include "process/process_list.h"
#include "strings/kz_string.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: kz_consumer FOLDER PROCESS_NAME\n");
        return 2;
    }
    _kzDirScan scan;
    scan.start(_kzString<500>(argv[1]), false, true, true, false);
    int files = 0;
    for (; scan.next(); ++files) std::printf("%s\n", scan.currentName().to_kzString8_500().data);

    auto processes = std::make_unique<_kzProcessList>(false); // a table of 3999 entries
    _kzString8_allSize<25> name(argv[2]);
    uint64_t pid = 0;
    const int running = processes->countByName(name, &pid);
    std::printf("%d files, %d processes named %s\n", files, running, argv[2]);
    return 0;
}
