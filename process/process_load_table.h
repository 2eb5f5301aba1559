// _kzProcessLoadTable: follows processes over measuring rounds, keeping CPU seconds and a
// percentage per process from one round to the next. Its records are a heap array sized at
// construction; a caller fills a record's pid and name through `at` and raises `count`.
#pragma once

#include <cstdint>

#include "process/process_list.h"
#include "strings/kz_string8.h"
#include "time/kz_time.h"
#include "time/kz_time_ms.h"

struct _kzProcessLoadRecord {
    uint32_t pid = 0;
    int32_t reserved = 0;
    _kzString8_allSize<25> name;
    float cpuPercent = 0;  // load of the last round
    double cpuSeconds = 0; // CPU seconds at the last round

    void takeCpu(const _kzProcessEntry& entry) { cpuSeconds = entry.cpuSeconds; }
};

struct _kzProcessLoadTable {
    _kzProcessLoadRecord* records = nullptr;
    int32_t count = 0;
    _kzTime snapshotTime;
    _kzTimeMS snapshotTimeMS;
    int32_t active = 1; // set by setActive; nothing here reads it
    int32_t capacity = 0;
    double previousMeasure = 0; // measureTime of the list before the last one
    double lastMeasure = 0;     // measureTime of the last list
    double measureInterval = 0; // between those two, 0 if unknown

    explicit _kzProcessLoadTable(const int& capacity);
    ~_kzProcessLoadTable();
    _kzProcessLoadTable(const _kzProcessLoadTable&) = delete;
    _kzProcessLoadTable& operator=(const _kzProcessLoadTable&) = delete;

    void reset();
    void setActive(const int& value) { active = value; }
    _kzProcessLoadRecord* at(const int& index) { return &records[index]; }
    void removeAt(const int& index);
    int indexOfPid(const unsigned& pid) const;
    // Whether `list` holds newer data than this table took over last.
    bool isBehind(const _kzProcessList& list) const;
    void takeTimes(const _kzProcessList& list);
    void takeSnapshotTime(const _kzProcessList& list);
    // The record's percentage since the last round, from the entry's CPU seconds, held to
    // 0 .. 102400; the first round only stores.
    void updateCpu(int recordIndex, const _kzProcessList& list, const int& entryIndex);
};
