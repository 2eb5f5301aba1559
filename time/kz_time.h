// _kzTime: seconds since the Unix epoch, UTC, as a signed 64-bit value; 0 means unset.
#pragma once

#include <cstdint>

// Aligned to 4 bytes, so that a time can stand at any 4-byte offset of a packed table record.
#pragma pack(push, 4)
struct _kzTime {
    int64_t value;

    _kzTime() : value(0) {}
    // The present time if `now`, else 0.
    explicit _kzTime(bool now);

    // value = present time + seconds; setNowPlus(0) is the usual way to stamp.
    void setNowPlus(int64_t seconds);
    _kzTime& setNow();
};
#pragma pack(pop)
