#include "process/process_snapshot.h"

#include <cstdlib>
#include <memory>

#include "platform/system_error_text.h"
#include "process/name_queries.h"
#include "process/process_list.h"
#include "process/process_load.h"
#include "process/process_os.h"

_kzProcessSnapshot::_kzProcessSnapshot() {
    for (_kzProcessSnapshotEntry& entry : entries) entry = _kzProcessSnapshotEntry{};
}

bool _kzProcessSnapshot::CollectAllProcesses_OS() {
    errorText.clear();
    collected = 1;
    count = 0;
    kzproc::collectInto(*this, 3999, false); // an owner stays as it stood in the slot
    return true;
}

bool _kzProcessSnapshot::update() {
    measureStarted = 0;
    return CollectAllProcesses_OS();
}

bool _kzProcessSnapshot::findByName(_kzString8_allSize<25>& name, bool refresh, uint64_t* pidOut) {
    if (name.isEmpty()) return false;
    if (pidOut) *pidOut = 0;
    ensure(refresh);
    name.makeUpper();
    return kzproc::countByName(*this, name, pidOut, true) > 0;
}

int _kzProcessSnapshot::countByName(_kzString8_allSize<25>& name, uint64_t* pidOut) {
    if (pidOut) *pidOut = 0;
    ensure(false);
    name.makeUpper();
    return kzproc::countByName(*this, name, pidOut);
}

bool _kzProcessSnapshot::isRunningTwice(_kzString8_allSize<25> name, uint64_t* pidOut) {
    return countByName(name, pidOut) > 1;
}

// Here the owner is fetched anew for every match, whatever the slot held.
bool _kzProcessSnapshot::findByNameAndOwner(_kzString8_allSize<25>& name, _kzString8_allSize<25>& owner,
                                            bool refresh, uint64_t* pidOut) {
    if (name.isEmpty()) return false;
    if (pidOut) *pidOut = 0;
    ensure(refresh);
    name.makeUpper();
    owner.makeUpper();
    return kzproc::countMatching(*this, name, &owner, [this](int i) { return freshOwner(i); }, pidOut, true) > 0;
}

bool _kzProcessSnapshot::isRunningTwiceByOwner(_kzString8_allSize<25>& name, _kzString8_allSize<25>& owner,
                                               uint64_t* pidOut) {
    if (pidOut) *pidOut = 0;
    ensure(false);
    name.makeUpper();
    owner.makeUpper();
    return kzproc::countMatching(*this, name, &owner, [this](int i) { return freshOwner(i); }, pidOut) > 1;
}

void _kzProcessSnapshot::interruptByName(_kzString8_allSize<25>& name) {
    ensure(false);
    name.makeUpper();
    kzproc::signalByName(*this, name, SIGINT);
}

void _kzProcessSnapshot::terminateByName(_kzString8_allSize<25>& name) {
    ensure(false);
    name.makeUpper();
    kzproc::signalByName(*this, name, SIGTERM);
}

int _kzProcessSnapshot::indexOfPid(int pid, bool refresh) {
    ensure(refresh);
    return kzproc::indexOfPid(*this, static_cast<unsigned>(pid));
}

_kzString8_allSize<25> _kzProcessSnapshot::freshOwner(int index) {
    fillOwner(index);
    return entries[index].owner;
}

void _kzProcessSnapshot::fillOwner(int index) { entries[index].owner = _kzProcessList::ownerNameOfUid(entries[index].uid); }

void _kzProcessSnapshot::measureProcess(int index) {
    _kzProcessSnapshotEntry& entry = entries[index];
    double seconds = 0;
    int megabytes = 0;
    const int error = kzMeasureLoad(entry.pid, &seconds, &megabytes);
    entry.cpuSeconds = error ? (kzMayNotBeRead(error) ? -5.0 : -error) : seconds;
    entry.memoryMB = megabytes;
}

namespace {

_kzString8_allSize<25> consoleNameOf(const _kzString8_allSize<25>& name) { return name.combined("console"); }

} // namespace

bool _kzProcessSnapshot::isOtherInstanceRunning(_kzString8_allSize<25> name, bool callerIsConsole, bool checkConsole,
                                                uint64_t* pidOut) {
    const auto snapshot = std::make_unique<_kzProcessSnapshot>();
    _kzString8_allSize<25> console = consoleNameOf(name);
    if (!checkConsole) return snapshot->isRunningTwice(name, pidOut);
    if (callerIsConsole) return snapshot->findByName(name, false, pidOut) || snapshot->isRunningTwice(console, nullptr);
    return snapshot->isRunningTwice(name, pidOut) || snapshot->findByName(console, false, nullptr);
}

bool _kzProcessSnapshot::isOtherInstanceRunningByOwner(_kzString8_allSize<25> name, _kzString8_allSize<25> owner,
                                                       bool callerIsConsole, bool checkConsole, uint64_t* pidOut) {
    const auto snapshot = std::make_unique<_kzProcessSnapshot>();
    _kzString8_allSize<25> console = consoleNameOf(name);
    if (!checkConsole) return snapshot->isRunningTwiceByOwner(name, owner, pidOut);
    if (callerIsConsole)
        return snapshot->findByNameAndOwner(name, owner, false, pidOut) ||
               snapshot->isRunningTwiceByOwner(console, owner, nullptr);
    return snapshot->isRunningTwiceByOwner(name, owner, pidOut) ||
           snapshot->findByNameAndOwner(console, owner, false, nullptr);
}

bool _kzProcessSnapshot::isMoreThanTwoRunning(_kzString8_allSize<25> name, bool checkConsole) {
    const auto snapshot = std::make_unique<_kzProcessSnapshot>();
    _kzString8_allSize<25> console = consoleNameOf(name);
    const int processes = snapshot->countByName(name, nullptr) + (checkConsole ? snapshot->countByName(console, nullptr) : 0);
    return processes > 2;
}
