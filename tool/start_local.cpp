#include "tool/start_local.h"

#include <cstdio>

#include "platform/sleep.h"
#include "process/process_list.h"
#include "strings/kz_string8.h"
#include "tool/mirror_passes.h"
#include "tool/run_state.h"

namespace {

const char* const kVersion = " 8.4.02";
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
    folder.replace('\\', '/');
    if (!folder.endsWith('/') && folder.length < _kzString<500>::capacity) folder += "/";
}

// The options may stand anywhere on the command line, the program's own name included,
// in any case and any number of times.
void readOptions(int argc, char** argv, kzStartLocalRun& run) {
    for (int i = 0; i < argc; ++i) {
        const _kzString8_allSize<500> argument(argv[i]);
        if (argument.isEqual("-log")) run.copyLogs = 1;
        if (argument.isEqual("-jobdb")) run.copyJobsDB = 1;
    }
}

void printSettings(const kzStartLocalRun& run) {
    std::printf("Local Folder: %s\n", run.localFolder.to_kzString8_500().asChar());
    std::printf("KZ ROOT: %s\n", run.networkRoot.to_kzString8_500().asChar());
    std::printf("copyLogs: %s\n", boolText(run.copyLogs, true).to_kzString8_500().asChar());
    std::printf("copyJobsDB: %s\n", boolText(run.copyJobsDB, true).to_kzString8_500().asChar());
    // An administrator tails the tool's log: the settings must be there now, not at the end.
    std::fflush(stdout);
}

bool serverIsRunning(_kzProcessList& processes) {
    // findByName upper-cases the name it is given, so the name is built anew for each look.
    _kzString8_allSize<25> name(kWatchedProcess);
    return processes.findByName(name, true, nullptr);
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

    kzStartLocalRun run;
    run.localFolder = _kzString<500>(argv[1]);
    run.networkRoot = _kzString<500>(argv[2]);
    readOptions(argc, argv, run);
    normaliseFolder(run.localFolder);
    normaliseFolder(run.networkRoot);
    printSettings(run);

    _kzProcessList processes(false);
    int passCounter = 0;
    for (;;) {
        if (!serverIsRunning(processes)) {
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
        if (run.copyLogs) logPass(run);
        if (run.copyJobsDB) jobDbPass(run);
        passCounter = 0;
    }
}
