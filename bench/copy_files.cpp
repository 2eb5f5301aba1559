// Copies files with fileCopy, for timing against cp: either one file (SRC DST), or every
// file of a folder into another folder (--folder SRCDIR DSTDIR). Exit status 1 if a copy
// failed.
#include <dirent.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "files/file_copy.h"

namespace {

bool copyOne(const std::string& src, const std::string& dst) {
    const int32_t noPause = 0;
    return fileCopy(_kzString8_allSize<500>(src.c_str()), _kzString8_allSize<500>(dst.c_str()), true,
                    &noPause, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3) return copyOne(argv[1], argv[2]) ? 0 : 1;
    if (argc != 4 || std::strcmp(argv[1], "--folder") != 0) {
        std::fprintf(stderr, "usage: copy_files SRC DST | copy_files --folder SRCDIR DSTDIR\n");
        return 2;
    }
    DIR* dir = opendir(argv[2]);
    if (!dir) return 1;
    bool ok = true;
    while (const dirent* e = readdir(dir)) {
        if (e->d_name[0] == '.') continue;
        ok = copyOne(std::string(argv[2]) + "/" + e->d_name, std::string(argv[3]) + "/" + e->d_name) && ok;
    }
    closedir(dir);
    return ok ? 0 : 1;
}
