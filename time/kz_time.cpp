#include "time/kz_time.h"

#include <cstdlib>

namespace {

int64_t present() { return static_cast<int64_t>(::time(nullptr)); }

} // namespace

_kzTime::_kzTime(bool now) : value(now ? present() : 0) {}

_kzTime::_kzTime(int64_t v, bool isUTC) : value(isUTC ? v : v - timeZoneOffset()) {}

_kzTime::_kzTime(uint32_t v, bool isUTC) : _kzTime(static_cast<int64_t>(v), isUTC) {}

void _kzTime::setNowPlus(int64_t seconds) { value = present() + seconds; }

_kzTime& _kzTime::setNow() {
    setNowPlus(0);
    return *this;
}

// --- calendar fields ---------------------------------------------------------------------

void _kzTime::toTm(tm& out) const { toTmPlus(out, 0); }

void _kzTime::toTmPlus(tm& out, const int64_t& seconds) const {
    const time_t t = static_cast<time_t>(value + seconds);
    localtime_r(&t, &out);
}

tm _kzTime::toTm() const {
    tm out{};
    toTm(out);
    return out;
}

int _kzTime::month() const { return toTm().tm_mon + 1; }

int _kzTime::year() const { return toTm().tm_year + 1900; }

int _kzTime::dayOfMonth(int64_t addDays) const {
    tm out{};
    toTmPlus(out, addDays * 86400);
    return out.tm_mday;
}

int _kzTime::weekday() const {
    const int day = (toTm().tm_wday + 6) % 7; // Sunday last
    return day < 0 ? 0 : (day > 6 ? 6 : day);
}

bool _kzTime::isSummerTime() { return _kzTime(true).toTm().tm_isdst > 0; }

// --- local arithmetic --------------------------------------------------------------------

int64_t _kzTime::dayNumber(int64_t addSeconds) const {
    return (value + timeZoneOffset() + addSeconds) / 86400;
}

void _kzTime::setDayNumber(const int64_t& day) { value = day * 86400 - timeZoneOffset(); }

int _kzTime::hourOfDay() const { return static_cast<int>(((value + timeZoneOffset()) / 3600) % 24); }

int _kzTime::minuteOfDay() const { return static_cast<int>(((value + timeZoneOffset()) / 60) % 1440); }

int _kzTime::secondOfDay(int64_t addSeconds) const {
    return static_cast<int>((value + timeZoneOffset() + addSeconds) % 86400);
}

void _kzTime::localToUTC() { value -= timeZoneOffset(); }

// --- comparison --------------------------------------------------------------------------

bool _kzTime::hasElapsed(const int64_t& span, const bool& reset, const int64_t* now) {
    const int64_t n = now ? *now : present();
    if (n <= value + span) return false;
    if (reset) value = n;
    return true;
}

bool _kzTime::isOlderThan(const int64_t& span, const int64_t* now) const {
    return (now ? *now : present()) > value + span;
}

int32_t _kzTime::secondsTo(const _kzTime& other) const {
    if (value < 1) return 0;
    if (other.value < 1) return 2000000000;
    return static_cast<int32_t>(other.value - value);
}

int32_t _kzTime::minutesTo(const _kzTime& other) const {
    if (value < 1) return 0;
    if (other.value < 1) return 33333333;
    return secondsTo(other) / 60;
}

int32_t _kzTime::hoursTo(const _kzTime& other) const {
    if (value < 1) return 0;
    if (other.value < 1) return 555555;
    return secondsTo(other) / 3600;
}

int32_t _kzTime::absSecondsTo(const _kzTime& other) const {
    return static_cast<int32_t>(std::llabs(static_cast<int64_t>(secondsTo(other))));
}

int64_t _kzTime::daysTo(const _kzTime& other) const { return other.dayNumber(0) - dayNumber(0); }

int64_t _kzTime::absDaysTo(const _kzTime& other) const { return std::llabs(daysTo(other)); }
