// _kzProcessWatch: asks again and again whether a process of a name exists, and each time
// answers what findByName with a new snapshot would answer, at the cost of one process
// instead of the whole table.
//
// Once a look has found a process of the name, the next look first asks that process's own
// entry whether it is still the same process (the same pid and start time) under the same
// name, the name read as the table reads it. Only when it is not (it has ended, been renamed,
// become another program, or left its pid to another process) does the look read the whole
// table again, and remember the first process of the name it finds there. Where the
// platform can't answer about one process, every look reads the table.
#pragma once

#include <cstdint>

#include "process/process_list.h"

struct _kzProcessWatch {
    uint32_t pid = 0;       // the process of the name found last; 0 when none is known
    uint64_t startTime = 0; // its start time, which tells it from a later process of that pid

    // `list` serves the full looks; `name` as for findByName.
    bool isRunning(_kzProcessList& list, const char* name);
};
