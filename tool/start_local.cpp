#include "tool/start_local.h"

#include <cstdint>
#include <cstdio>

#include "files/dir_scan.h"
#include "files/path_strings.h"
#include "platform/memory.h"
#include "platform/sleep.h"
#include "process/process_list.h"
#include "process/process_watch.h"
#include "strings/kz_string8.h"
#include "tool/job_db_pass.h"
#include "tool/log_pass.h"

namespace {

// The banner shows the version behind a blank: "(v 8.4.02)".
const char* const kVersion = " " KZ_VERSION;
const char* const kWatchedProcess = "kzServerconsole";
// The process is looked for once a second; every seventh look is followed by the passes.
constexpr int kLooksPerPass = 7;

void printBanner() {
    std::puts("________________________________________________________________");
    std::puts("|                                                              |");
    std::puts("|            Syncing local files to KZ network folder          |");
    std::printf("|            (v%s)                                       |\n", kVersion);
    std::puts("|______________________________________________________________|");
}

// Backslashes become slashes, and a folder gets its trailing "/" unless it already has
// one or is full. Nothing else is tidied: doubled separators and "../" stay.
void normaliseFolder(_kzString<500>& folder) {
    folder = pathForwardSlashes(folder);
    folder.endWith('/');
}

// The options may stand anywhere on the command line, the program's own name included,
// in any case and any number of times.
void readOptions(int argc, char** argv, uint8_t& copyLogs, uint8_t& copyJobsDB) {
    for (int i = 0; i < argc; ++i) {
        const _kzString8_allSize<500> argument(argv[i]);
        if (argument.isEqual("-log")) copyLogs = 1;
        if (argument.isEqual("-jobdb")) copyJobsDB = 1;
    }
}

void printSettings(const _kzString<500>& localFolder, const _kzString<500>& networkRoot, bool copyLogs,
                   bool copyJobsDB) {
    std::printf("Local Folder: %s\n", localFolder.to_kzString8_500().asChar());
    std::printf("KZ ROOT: %s\n", networkRoot.to_kzString8_500().asChar());
    std::printf("copyLogs: %s\n", boolText(copyLogs, true).to_kzString8_500().asChar());
    std::printf("copyJobsDB: %s\n", boolText(copyJobsDB, true).to_kzString8_500().asChar());
    // An administrator tails the tool's log: the settings must be there now, not at the end.
    std::fflush(stdout);
}


} // namespace

_kzString<500> boolText(bool value, bool asWord) {
    if (asWord) return _kzString<500>(value ? "true" : "false");
    return _kzString<500>(value ? "1" : "0");
}

int kzStartLocalMain(int argc, char** argv) {
    printBanner();
    if (argc < 4) {
        std::puts("Usage: kzStartLocal [localfolder] [KZ_NETWORK_ROOT]  [-log]  [-jobdb] ");
        return -1;
    }

    // The run state lives here for the whole run; nothing of it is kept between runs.
    _kzString<500> localFolder(argv[1]);
    _kzString<500> networkRoot(argv[2]);
    uint8_t copyLogs = 0;
    uint8_t copyJobsDB = 0;
    readOptions(argc, argv, copyLogs, copyJobsDB);
    normaliseFolder(localFolder);
    normaliseFolder(networkRoot);
    printSettings(localFolder, networkRoot, copyLogs, copyJobsDB);

    // Each pass reads its folder into a list of whole name records (about 1 KiB a name) and
    // frees it at its end; this makes that memory leave the process with it.
    kzReturnLargeBlocksToSystem();
    // Each look answers as a full look at the process table would; once the server has been
    // found, a look reads only the server's own entry until that is no longer the server.
    _kzProcessList processes(false);
    _kzProcessWatch server;
    _kzDirScan logScan;
    logScan.addEndFilter(_kzString<500>(".txt"));
    _kzDirScan jobScan;
    int passCounter = 0;
    for (;;) {
        if (!server.isRunning(processes, kWatchedProcess)) {
            // No last pass: what changed since the previous pass stays unmirrored.
            std::puts("\nQUIT\n");
            std::fflush(stdout);
            return 0;
        }
        kzSleepMS(1000);
        if (passCounter < kLooksPerPass - 1) {
            ++passCounter;
            continue;
        }
        if (copyLogs) logPass(localFolder, networkRoot, logScan);
        if (copyJobsDB) jobDbPass(localFolder, networkRoot, jobScan);
        passCounter = 0;
    }
}
