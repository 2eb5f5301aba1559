#include "process/process_load_table.h"

#include <cstring>

#include "process/process_load.h"

// Both times start unset (0): isBehind tells a table that never took a list over by that.
_kzProcessLoadTable::_kzProcessLoadTable(const int& capacity_) : records(new _kzProcessLoadRecord[capacity_]), capacity(capacity_) {
    snapshotTimeMS.value = 0;
}

_kzProcessLoadTable::~_kzProcessLoadTable() {
    delete[] records;
    records = nullptr;
}

void _kzProcessLoadTable::reset() {
    count = 0;
    snapshotTime.value = 0;
    snapshotTimeMS.value = 0;
    previousMeasure = lastMeasure = measureInterval = 0;
}

void _kzProcessLoadTable::removeAt(const int& index) {
    if (index < 0 || index >= count) return;
    std::memmove(static_cast<void*>(&records[index]), &records[index + 1],
                 static_cast<size_t>(count - 1 - index) * sizeof(_kzProcessLoadRecord));
    --count;
}

int _kzProcessLoadTable::indexOfPid(const unsigned& pid) const {
    for (int i = 0; i < count; ++i)
        if (records[i].pid == pid) return i;
    return -1;
}

bool _kzProcessLoadTable::isBehind(const _kzProcessList& list) const {
    if (snapshotTime.value < 1) return false;
    if (snapshotTime.value != list.snapshotTime.value) return snapshotTime.value < list.snapshotTime.value;
    // The same second: compared in tenths of a second, then by the measuring rounds.
    if (snapshotTimeMS.value != 0 && snapshotTimeMS.value / 100 < list.snapshotTimeMS.value / 100) return true;
    if (lastMeasure == 0) return false;
    return list.measureTime > lastMeasure;
}

void _kzProcessLoadTable::takeTimes(const _kzProcessList& list) {
    previousMeasure = lastMeasure;
    lastMeasure = list.measureTime;
    measureInterval = previousMeasure > 0 && previousMeasure < lastMeasure ? lastMeasure - previousMeasure : 0;
    takeSnapshotTime(list);
}

void _kzProcessLoadTable::takeSnapshotTime(const _kzProcessList& list) {
    snapshotTime.value = list.snapshotTime.value;
    snapshotTimeMS.value = list.snapshotTimeMS.value;
}

void _kzProcessLoadTable::updateCpu(int recordIndex, const _kzProcessList& list, const int& entryIndex) {
    _kzProcessLoadRecord& record = records[recordIndex];
    const _kzProcessEntry& entry = list.entries[entryIndex];
    record.cpuPercent = 0;
    if (list.measureTime == 0 || previousMeasure == 0 || !(measureInterval > 0)) {
        record.takeCpu(entry); // the first round only stores
        return;
    }
    if (record.cpuSeconds > 0) record.cpuPercent = static_cast<float>(kzCpuPercent(entry.cpuSeconds, record.cpuSeconds, measureInterval));
    record.takeCpu(entry);
    if (record.cpuPercent < 0) record.cpuPercent = 0;
    if (record.cpuPercent > 102400.0f) record.cpuPercent = 102400.0f;
}
