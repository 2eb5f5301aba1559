#include "process/process_watch.h"

#include "process/name_queries.h"
#include "process/process_os.h"

namespace {

// Whether the process of `pid` is now a process of the name; its start time goes to `startTime`.
bool isNamed(uint32_t pid, const _kzString8_allSize<25>& upperName, uint64_t* startTime) {
    kzRawProcess process;
    return kzReadProcessIdentity_OS(pid, &process, startTime) && kzproc::sameName(kzproc::upperNameOf(process), upperName);
}

} // namespace

bool _kzProcessWatch::isRunning(_kzProcessList& list, const char* name) {
    _kzString8_allSize<25> upperName(name);
    upperName.makeUpper();
    uint64_t nowStarted = 0;
    if (pid != 0 && isNamed(pid, upperName, &nowStarted) && nowStarted == startTime) return true;
    pid = 0;
    _kzString8_allSize<25> query(name);
    uint64_t found = 0;
    if (!list.findByName(query, true, &found)) return false;
    // Remembered from its own entry: a process that ended and left its pid to another since
    // the table was read is not taken for the one found.
    if (isNamed(static_cast<uint32_t>(found), upperName, &startTime)) pid = static_cast<uint32_t>(found);
    return true;
}
