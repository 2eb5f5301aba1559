// One slot of the process table: 80 bytes, fields without gaps.
#pragma once

#include <cstdint>

#include "strings/kz_string8.h"

#pragma pack(push, 4)
struct _kzProcessEntry {
    _kzString8_allSize<25> name;  // short command name, upper case
    _kzString8_allSize<25> owner; // user name; empty after collection, filled on demand
    uint32_t pid;
    uint32_t parentPid;
    int32_t memoryMB;  // resident memory; 0 after collection
    double cpuSeconds; // CPU seconds used; 0 after collection, negative marks a failed measurement
    uint32_t uid;      // user id of the owner
};
#pragma pack(pop)

static_assert(sizeof(_kzProcessEntry) == 80, "a process slot takes 80 bytes");
