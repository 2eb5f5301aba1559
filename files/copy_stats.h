// _kzCopyStats: running totals of copies, and their one-line summary. Its owner fills and
// clears it.
//
// The cache's verified copy (copyFileChecked) adds a file here only once fileCopy has
// written it completely: the source's size, the milliseconds of the copy, its pause and
// 512 KiB chunk. Up-to-date files, refused sources and failed copies are left out, so that
// `files`, `bytes` and the speeds of statusText describe data that really moved.
#pragma once

#include <cstdint>

#include "strings/kz_string8.h"

struct _kzCopyStats {
    uint64_t bytes = 0;           // total bytes copied
    uint16_t throttleMs = 0;      // pause per chunk, 0 for none
    int32_t files = 0;            // files copied
    int64_t elapsedMs = 0;        // total time of the copies
    uint16_t throttledChunks = 0; // chunks paused after; wraps at 65536
    int32_t chunkSize = 0;        // the chunk the throttle counts in; below 1: the default

    static int32_t defaultChunkSize() { return 0x100000; }

    // Adds one copy; values with their top bit set are refused.
    void addCopy(uint64_t bytes, int64_t ms);
    // The same, with the throttle and chunk size it ran with.
    void addCopyThrottled(uint64_t bytes, int64_t ms, int throttle, int32_t chunk);
    // The share of the time not spent in pauses, in percent.
    float speedSetting() const;
    float speedMiBs() const;
    // "3 files copied ( 1.50 MiB. 2.05s. 0.732 MiB/s. Copy speed setting: 100% )"
    _kzString8_allSize<500> statusText(bool aligned) const;
    _kzString8_allSize<500> statusText() const { return statusText(false); }
};
