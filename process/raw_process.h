// What the operating system delivers about one process, before it becomes a table slot.
#pragma once

#include <cstdint>

struct kzRawProcess {
    uint32_t pid;
    uint32_t parentPid;
    uint32_t uid;  // effective user id
    char name[17]; // short command name, at most 16 characters, NUL-terminated
};
