// kzLocalCache: primes a workstation's local executable cache by hand.
//
//   kzLocalCache <executable on the network> <local cache folder> [-fast] [-v]
//
// Prints the path to start: the executable in the cache, or the network path when the
// refresh failed (then the reasons go to standard error). With -v the steps, every copy
// and every failure are printed as they happen, and a summary of what was copied at the
// end. -fast pauses 5 ms after each 512 KiB of a copy instead of 200 ms.
// Exit status: 0 the cache's path came back, 1 the network path, 2 a wrong command line.
#include <cstdio>
#include <filesystem>

#include "exe_cache/cache_refresh.h"

namespace {

bool isOption(const char* argument, const char* option) {
    return _kzString8_allSize<50>(argument).isEqual(_kzString8_allSize<50>(option));
}

int usage() {
    std::fputs("usage: kzLocalCache <executable on the network> <local cache folder> [-fast] [-v]\n", stderr);
    return 2;
}

// Both paths are used by concatenation, so a relative one is made absolute first, and the
// cache folder ends with "/".
_kzString8_allSize<500> absolute(const char* path, bool folder) {
    std::error_code failed;
    std::string text = std::filesystem::absolute(path, failed).lexically_normal().string();
    if (failed) text = path;
    if (folder && (text.empty() || text.back() != '/')) text += '/';
    _kzString8_allSize<500> result;
    result = text;
    return result;
}

} // namespace

int main(int argc, char** argv) {
    const char* paths[2] = {nullptr, nullptr};
    int given = 0;
    bool verbose = false;
    uint8_t fastCopy = 0;
    for (int i = 1; i < argc; ++i) {
        if (isOption(argv[i], "-v")) {
            verbose = true;
        } else if (isOption(argv[i], "-fast")) {
            fastCopy = 1;
        } else if (argv[i][0] == '-' || given == 2 || argv[i][0] == '\0') {
            return usage();
        } else {
            paths[given++] = argv[i];
        }
    }
    if (given != 2) return usage();

    const _kzString8_allSize<500> exe = absolute(paths[0], false);
    _kzString8_allSize<1000> infoLog, errorLog;
    _kzCopyStats stats;
    const _kzString8_allSize<500> result =
        localExeCache_copy(exe, absolute(paths[1], true), &infoLog, &errorLog, verbose, fastCopy, &stats);
    const bool cached = !result.isEqualSameCase(exe);
    if (verbose) std::printf("%s\n", stats.statusText().data);
    if (!cached && !verbose) std::fputs(errorLog.data, stderr);
    std::printf("%s\n", result.data);
    return cached ? 0 : 1;
}
