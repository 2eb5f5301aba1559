// _kzProcessList: a fixed-size snapshot of the machine's processes.
//
// One object holds up to 3999 process records in the kernel's order, the time of the
// snapshot and two short texts (failures and a timing log). Nothing stays on the heap
// between calls, so the object can live on the stack or inside another record.
#pragma once

#include <cstdint>

#include "process/process_entry.h"
#include "process/raw_process.h"
#include "strings/kz_string8.h"
#include "time/kz_time.h"
#include "time/kz_time_ms.h"

#pragma pack(push, 4)
struct alignas(8) _kzProcessList {
    static constexpr uint16_t kMagic = 0xABCD;
    static constexpr int kSlots = 4000;
    static constexpr int kMaxProcesses = 3999; // the last slot is never filled

    uint16_t magic;
    uint8_t unused0[2];
    _kzTime snapshotTime;
    _kzTimeMS snapshotTimeMS;
    _kzString8_allSize<500> errorText; // failures of the last snapshot; empty when all went well
    _kzString8_allSize<500> logText;   // timing of the last snapshot
    int32_t count;
    _kzProcessEntry entries[kSlots];
    double measureTime;     // epoch seconds with microseconds, at the last beginMeasure
    double measureInterval; // seconds between the last two beginMeasure calls
    uint8_t collectLoad;
    uint8_t skipLoad;
    uint8_t optionFlag;
    uint8_t measureStarted;
    uint8_t collected; // at least one snapshot was taken
    _kzTimeMS stepTimer;
    uint8_t unused1[40];

    explicit _kzProcessList(const bool& collectLoad);
    _kzProcessList(const _kzProcessList&) = delete;
    _kzProcessList& operator=(const _kzProcessList&) = delete;

    // Empties the object as the constructor does, with all times 0 and no measurement.
    void clearAll(const bool& collectLoad);

    // True if a process of exactly this name (ignoring case) is in the table. `name` is
    // turned to upper case in place. With `refresh` false the last snapshot is used, and
    // one is taken only if there never was one. `pidOut` may be null; it is left alone
    // when `name` is empty, and receives 0 or the pid of the first match otherwise.
    bool findByName(_kzString8_allSize<25>& name, bool refresh, uint64_t* pidOut);

    // Fills the table from the kernel. Expects `count` 0; always returns true. A failure
    // leaves the table empty and its reason in errorText.
    bool CollectAllProcesses_OS();

    // Appends raw records as slots, in the given order, up to the 3999th; the rest are
    // dropped without a message. Names are cut to 25 characters and upper-cased.
    void storeRawProcesses(const kzRawProcess* records, long n);

    // A new snapshot, stamped a quarter of the way through the collection.
    void takeSnapshot();

    // Starts a measurement period.
    void beginMeasure();
    void resetForReuse();
    // Takes over every field from magic to measureStarted; collected and stepTimer stay.
    void copyFrom(const _kzProcessList& other);
    void clearSkipLoad() { skipLoad = 0; }
    void setOptionFlag(const bool& value) { optionFlag = value ? 1 : 0; }

    // The user name of a uid, cut to 25 characters; the uid as a number if there is no
    // such user, empty if the user record has no name.
    static _kzString8_allSize<25> ownerNameOfUid(const unsigned& uid);

    // Queries and signals. Names (and owners) are upper-cased in place and match whole,
    // ignoring case. `pidOut` may be null and is set to 0 first. A snapshot is taken when
    // none was (lazy), or with `refresh` as well.
    bool update();
    int countByName(_kzString8_allSize<25>& name, uint64_t* pidOut);
    bool isRunningTwice(_kzString8_allSize<25> name, uint64_t* pidOut);
    bool findByNameAndOwner(_kzString8_allSize<25>& name, _kzString8_allSize<25>& owner, bool refresh,
                            uint64_t* pidOut);
    bool isRunningTwiceByOwner(_kzString8_allSize<25>& name, _kzString8_allSize<25>& owner, uint64_t* pidOut);
    bool hasPid(int pid, bool refresh);
    int indexOfPid(int pid, bool refresh);
    int indexOfPidInTable(unsigned pid) const;
    void interruptByName(_kzString8_allSize<25>& name); // SIGINT to every process of the name
    void terminateByName(_kzString8_allSize<25>& name); // SIGTERM to every process of the name
    static int killPid(const unsigned& pid);            // SIGTERM; what kill returns
    // The entry's owner, or the name of its uid when none is filled in.
    static _kzString8_allSize<25> ownerName(const _kzProcessEntry& entry);
    // Owners for every entry, or only for those above 2000 MB and the desktop ("FINDER").
    void fillOwners(const bool& importantOnly);

    // CPU seconds and resident megabytes. measureProcess returns 0 at a failure that stops a
    // full pass (its text in errorText), 1 otherwise; a process that may not be read or has
    // just gone is marked with cpuSeconds -5.0.
    int measureProcess(const int& index);
    int measureProcessChecked(const int& index);
    bool updateFull();
    // The CPU load of a process between `other` (the earlier table) and this one, in percent
    // of one processor, multiplied by `scale` if it is 1 or more.
    bool cpuPercent(float& out, const int& index, const _kzProcessList& other, const int& scale) const;
    void appendCountText();
    double measureTimeValue() const { return measureTime; }
    double measureIntervalValue() const { return measureInterval; }
    void clearMeasureInterval() { measureInterval = 0; }
    void sortByName() { sortEntries(0, count - 1, false, true); }
    void sortByPid() { sortEntries(0, count - 1, false, false); }
    static int recordSize() { return 321104; }

private:
    void clearTextsAndSlots();
    // Quicksort of entries[left .. right] by name (then pid) or by pid alone.
    void sortEntries(int left, int right, bool descending, bool byName);
};
#pragma pack(pop)

static_assert(sizeof(_kzProcessList) == 321104, "the process table record has a fixed size");
