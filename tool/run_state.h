// What one run of kzStartLocal knows: its two folders and its two options. It lives in the
// entry function for the whole run; nothing of it is kept between runs.
#pragma once

#include <cstdint>

#include "strings/kz_string.h"

struct kzStartLocalRun {
    _kzString<500> localFolder; // first argument, slashes only, with trailing "/"
    _kzString<500> networkRoot; // second argument, the same
    uint8_t copyLogs = 0;       // "-log" was given
    uint8_t copyJobsDB = 0;     // "-jobdb" was given
};
