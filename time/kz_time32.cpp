#include "time/kz_time32.h"

#include "time/kz_time.h"

void _kzTime32::setNowPlus(uint32_t seconds) { value = static_cast<uint32_t>(::time(nullptr)) + seconds; }

void _kzTime32::toTm(tm& out) const { toTmPlus(out, 0); }

void _kzTime32::toTmPlus(tm& out, const int64_t& seconds) const {
    _kzTime(static_cast<int64_t>(value), true).toTmPlus(out, seconds);
}

tm _kzTime32::toTm() const { return _kzTime(static_cast<int64_t>(value), true).toTm(); }

_kzString8_allSize<250> _kzTime32::dateTimeText() const {
    if (value == 0) return _kzString8_allSize<250>("-.-");
    return _kzTime(static_cast<int64_t>(value), true).dateTimeText();
}

uint32_t _kzTime32::setLocal(int sec, int min, int hour, int day, int month, int year) {
    _kzTime t;
    value = static_cast<uint32_t>(t.setLocal(sec, min, hour, day, month, year));
    return value;
}

int64_t _kzTime32::localSeconds() const {
    return static_cast<int32_t>(value + static_cast<uint32_t>(_kzTime::timeZoneOffset()));
}

int32_t _kzTime32::secondsLeft(const uint32_t& span, const int64_t* now) const {
    const uint32_t present = static_cast<uint32_t>(now ? *now : static_cast<int64_t>(::time(nullptr)));
    return static_cast<int32_t>(value + span - present);
}

int32_t _kzTime32::daysToSeconds(const uint32_t& days) { return static_cast<int32_t>(days * 86400u); }
