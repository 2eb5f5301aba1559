// _kzTime32: the older 32-bit timestamp, unsigned seconds since the Unix epoch, UTC; 0 means
// unset. A smaller set of operations than _kzTime, with the same meanings.
#pragma once

#include <cstdint>
#include <ctime>

#include "strings/kz_string8.h"

struct _kzTime32 {
    uint32_t value = 0;

    void setNowPlus(uint32_t seconds);
    void toTm(tm& out) const;
    void toTmPlus(tm& out, const int64_t& seconds) const;
    tm toTm() const;
    // "07.15. 14:05.09"; "-.-" when unset.
    _kzString8_allSize<250> dateTimeText() const;
    // As _kzTime::setLocal; returns the new value.
    uint32_t setLocal(int sec, int min, int hour, int day, int month, int year);
    // value + the cached offset, in 32 bits, sign-extended.
    int64_t localSeconds() const;
    // value + span - now, in 32-bit arithmetic; `now` null means the clock.
    int32_t secondsLeft(const uint32_t& span, const int64_t* now) const;
    static int32_t daysToSeconds(const uint32_t& days);
};
