// The questions put to a process table besides findByName, and the two ways to stop the
// processes of a name.
#include <signal.h>

#include "process/name_queries.h"
#include "process/process_list.h"

bool _kzProcessList::update() {
    takeSnapshot();
    return true;
}

int _kzProcessList::countByName(_kzString8_allSize<25>& name, uint64_t* pidOut) {
    if (pidOut) *pidOut = 0;
    if (!collected) takeSnapshot();
    name.makeUpper();
    return kzproc::countByName(*this, name, pidOut);
}

bool _kzProcessList::isRunningTwice(_kzString8_allSize<25> name, uint64_t* pidOut) {
    return countByName(name, pidOut) > 1;
}

bool _kzProcessList::findByNameAndOwner(_kzString8_allSize<25>& name, _kzString8_allSize<25>& owner, bool refresh,
                                        uint64_t* pidOut) {
    if (name.isEmpty()) return false;
    if (pidOut) *pidOut = 0;
    if (refresh || !collected) takeSnapshot();
    name.makeUpper();
    owner.makeUpper();
    return kzproc::countMatching(*this, name, &owner, [this](int i) { return ownerName(entries[i]); }, pidOut, true) > 0;
}

bool _kzProcessList::isRunningTwiceByOwner(_kzString8_allSize<25>& name, _kzString8_allSize<25>& owner,
                                           uint64_t* pidOut) {
    if (pidOut) *pidOut = 0;
    if (!collected) takeSnapshot();
    name.makeUpper();
    owner.makeUpper();
    return kzproc::countMatching(*this, name, &owner, [this](int i) { return ownerName(entries[i]); }, pidOut) > 1;
}

bool _kzProcessList::hasPid(int pid, bool refresh) { return indexOfPid(pid, refresh) >= 0; }

int _kzProcessList::indexOfPid(int pid, bool refresh) {
    if (refresh || !collected) takeSnapshot();
    return indexOfPidInTable(static_cast<unsigned>(pid));
}

int _kzProcessList::indexOfPidInTable(unsigned pid) const { return kzproc::indexOfPid(*this, pid); }

void _kzProcessList::interruptByName(_kzString8_allSize<25>& name) {
    if (!collected) takeSnapshot();
    name.makeUpper();
    kzproc::signalByName(*this, name, SIGINT);
}

void _kzProcessList::terminateByName(_kzString8_allSize<25>& name) {
    if (!collected) takeSnapshot();
    name.makeUpper();
    kzproc::signalByName(*this, name, SIGTERM);
}

int _kzProcessList::killPid(const unsigned& pid) { return ::kill(static_cast<pid_t>(pid), SIGTERM); }

_kzString8_allSize<25> _kzProcessList::ownerName(const _kzProcessEntry& entry) {
    return entry.owner.hasData() ? entry.owner : ownerNameOfUid(entry.uid);
}

void _kzProcessList::fillOwners(const bool& importantOnly) {
    for (int i = 0; i < count; ++i) {
        _kzProcessEntry& entry = entries[i];
        if (!importantOnly || entry.memoryMB > 2000 || entry.name == "FINDER") entry.owner = ownerName(entry);
    }
    logText += importantOnly ? "; OwnerList important: " : "; OwnerList All: ";
    logText += stepTimer.restartText().asChar();
}
