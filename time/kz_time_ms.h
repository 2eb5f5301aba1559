// _kzTimeMS: a point in time in milliseconds since the Unix epoch, for measuring short
// spans. A span keeps only the low 31 bits of the difference: it is never negative, and
// after about 24.8 days it starts again from 0.
#pragma once

#include <cstdint>

#include "strings/kz_string8.h"

// Aligned to 4 bytes, so that a time can stand at any 4-byte offset of a packed table record.
#pragma pack(push, 4)
struct _kzTimeMS {
    int64_t value;

    // Constructs with the present time.
    _kzTimeMS();

    // Seconds * 1000 + microseconds / 1000 (truncated), from gettimeofday.
    static int64_t now();

    void setNow();
    // Milliseconds since the stored time; nothing stored.
    int32_t elapsed() const;
    // Stores the present time and returns the milliseconds since the time stored before.
    int32_t restart();
    // The span as text: "12.34s.ms", with no seconds below 1001 ms (".34s.ms").
    _kzString8_allSize<50> elapsedText() const;
    _kzString8_allSize<50> restartText();

    // The span from `from` to `to`, masked to 31 bits.
    static int32_t span(int64_t from, int64_t to);
    static _kzString8_allSize<50> spanText(int32_t ms);
};
#pragma pack(pop)
