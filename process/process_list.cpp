#include "process/process_list.h"

#include <sys/time.h>

#include <cstddef>
#include <cstring>

#include "platform/owners.h"
#include "process/name_queries.h"

_kzProcessList::_kzProcessList(const bool& collectLoad_) {
    // Every byte starts defined, the fields the table never reads included.
    std::memset(static_cast<void*>(this), 0, sizeof(*this));
    clearAll(collectLoad_);
    stepTimer.setNow();
    // The first measurement starts with the construction; its interval would be the whole
    // epoch, so it is set back to 0. Its "; init: " entry stays in logText until the first
    // snapshot empties it.
    resetForReuse();
}

void _kzProcessList::clearTextsAndSlots() {
    snapshotTime.value = 0;
    snapshotTimeMS.value = 0;
    errorText.clear();
    logText.clear();
    for (_kzProcessEntry& entry : entries) {
        entry.name.clear();
        entry.owner.clear();
    }
}

void _kzProcessList::clearAll(const bool& collectLoad_) {
    clearTextsAndSlots();
    collectLoad = collectLoad_ ? 1 : 0;
    skipLoad = 0;
    optionFlag = 0;
    magic = kMagic;
    measureTime = 0;
    measureInterval = 0;
}

bool _kzProcessList::findByName(_kzString8_allSize<25>& name, bool refresh, uint64_t* pidOut) {
    if (name.isEmpty()) return false;
    if (pidOut) *pidOut = 0;
    if (refresh || !collected) takeSnapshot();
    name.makeUpper();
    return kzproc::countByName(*this, name, pidOut, true) > 0;
}

void _kzProcessList::storeRawProcesses(const kzRawProcess* records, long n) {
    kzproc::storeRaw(*this, records, n, kMaxProcesses, true);
}

void _kzProcessList::takeSnapshot() {
    stepTimer.setNow();
    logText.clear();
    errorText.clear();
    measureStarted = 0;
    collected = 1;
    count = 0;
    snapshotTime.setNow();
    snapshotTimeMS.setNow();
    const int64_t startSeconds = snapshotTime.value;
    const int64_t startMS = snapshotTimeMS.value;

    CollectAllProcesses_OS();

    const int64_t endSeconds = _kzTime(true).value;
    const int64_t endMS = _kzTimeMS::now();
    // The snapshot is stamped a quarter of the way through the collection.
    snapshotTime.value = startSeconds + (endSeconds - startSeconds) / 4;
    snapshotTimeMS.value = startMS + (endMS - startMS) / 4;
}

void _kzProcessList::beginMeasure() {
    measureStarted = 1;
    timeval tv;
    gettimeofday(&tv, nullptr);
    const double t = static_cast<double>(tv.tv_usec) * 1e-6 + static_cast<double>(tv.tv_sec);
    measureInterval = t - measureTime;
    measureTime = t;
    logText += "; init: ";
    logText += stepTimer.restartText().asChar();
}

void _kzProcessList::resetForReuse() {
    errorText.clear();
    count = 0;
    measureStarted = 0;
    collected = 0;
    beginMeasure();
    measureInterval = 0;
}

void _kzProcessList::copyFrom(const _kzProcessList& other) {
    if (&other == this) return;
    const size_t begin = offsetof(_kzProcessList, magic);
    const size_t end = offsetof(_kzProcessList, measureStarted) + sizeof(measureStarted);
    std::memcpy(reinterpret_cast<char*>(this) + begin, reinterpret_cast<const char*>(&other) + begin,
                end - begin);
}

_kzString8_allSize<25> _kzProcessList::ownerNameOfUid(const unsigned& uid) {
    _kzString8_allSize<25> name;
    const char* account = nullptr;
    if (!kzUserName(uid, &account)) return name.addNr(static_cast<long long>(uid));
    if (account) name = account;
    return name;
}
