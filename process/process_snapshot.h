// _kzProcessSnapshot: a lighter process table for one-shot questions, such as whether another
// instance of a program runs. The same capacity and queries as _kzProcessList, with naturally
// aligned entries and no timing log, time stamps or measuring period. Its static instance
// tests take a snapshot of their own on the heap for the one question.
#pragma once

#include <cstdint>

#include "strings/kz_string8.h"

struct _kzProcessSnapshotEntry {
    _kzString8_allSize<25> name;  // short command name, upper case
    _kzString8_allSize<25> owner; // filled on demand
    uint32_t pid;
    uint32_t parentPid;
    int32_t memoryMB;
    double cpuSeconds; // or a negative failure mark
    uint32_t uid;
};

struct _kzProcessSnapshot {
    int32_t count = 0;
    _kzProcessSnapshotEntry entries[4000];
    _kzString8_allSize<500> errorText;
    uint8_t collected = 0;
    uint8_t measureStarted = 0;

    _kzProcessSnapshot();
    _kzProcessSnapshot(const _kzProcessSnapshot&) = delete;
    _kzProcessSnapshot& operator=(const _kzProcessSnapshot&) = delete;

    // Fills the table from the kernel, up to 3999 entries; always true. The owners stay as
    // they stood in the slots.
    bool CollectAllProcesses_OS();
    bool update();

    // As the queries of _kzProcessList; owners are fetched anew for every name match.
    bool findByName(_kzString8_allSize<25>& name, bool refresh, uint64_t* pidOut);
    int countByName(_kzString8_allSize<25>& name, uint64_t* pidOut);
    bool isRunningTwice(_kzString8_allSize<25> name, uint64_t* pidOut);
    bool findByNameAndOwner(_kzString8_allSize<25>& name, _kzString8_allSize<25>& owner, bool refresh,
                            uint64_t* pidOut);
    bool isRunningTwiceByOwner(_kzString8_allSize<25>& name, _kzString8_allSize<25>& owner, uint64_t* pidOut);
    void interruptByName(_kzString8_allSize<25>& name);
    void terminateByName(_kzString8_allSize<25>& name);
    void terminateByName(_kzString8_allSize<25>&& name) { terminateByName(name); }
    bool hasPid(int pid, bool refresh) { return indexOfPid(pid, refresh) >= 0; }
    int indexOfPid(int pid, bool refresh);

    void fillOwner(int index);
    // CPU seconds and megabytes of that entry, without messages: a failure leaves a negative
    // mark (-5 for a process that may not be read or has just gone).
    void measureProcess(int index);
    void fillOwnerAndMeasure(int index) {
        fillOwner(index);
        measureProcess(index);
    }
    void measureFlagged(int index) {
        measureStarted = 1;
        measureProcess(index);
    }
    void fillOwnerAndMeasureFlagged(int index) {
        measureStarted = 1;
        fillOwnerAndMeasure(index);
    }

    // Whether another instance of `name` runs, counting its console variant (the name with
    // "console" added) too where `checkConsole` says so; the caller counts as one process of
    // its own name.
    static bool isOtherInstanceRunning(_kzString8_allSize<25> name, bool callerIsConsole, bool checkConsole,
                                       uint64_t* pidOut);
    static bool isOtherInstanceRunningByOwner(_kzString8_allSize<25> name, _kzString8_allSize<25> owner,
                                              bool callerIsConsole, bool checkConsole, uint64_t* pidOut);
    // More than two processes of the name, with those of the console name if asked.
    static bool isMoreThanTwoRunning(_kzString8_allSize<25> name, bool checkConsole);

private:
    // The owner fetched anew and stored in the entry.
    _kzString8_allSize<25> freshOwner(int index);
    void ensure(bool refresh) {
        if (refresh || !collected) CollectAllProcesses_OS();
    }
};
