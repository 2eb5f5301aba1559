// The text forms of a timestamp. The time of day is written hour:minute.second.
#include <cstdio>

#include "time/kz_time.h"

namespace {

const char* const kMonthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

_kzString8_allSize<250> formatted(const char* format, int a, int b, int c, int d, int e) {
    char text[128];
    std::snprintf(text, sizeof text, format, a, b, c, d, e);
    return _kzString8_allSize<250>(text);
}

// The text for an unset (0) or an invalid (negative) value, or null for a valid one.
const char* unsetText(int64_t value, const char* zero, const char* negative) {
    if (value == 0) return zero;
    return value < 0 ? negative : nullptr;
}

} // namespace

const char* kzMonthName(int index) { return kMonthNames[index < 0 || index > 11 ? 0 : index]; }

_kzString8_allSize<250> _kzTime::dateTimeText() const {
    const tm t = toTm();
    return formatted("%02d.%02d. %02d:%02d.%02d", t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
}

_kzString8_allSize<250> _kzTime::textLogStamp() const { return dateTimeText(); }

_kzString8_allSize<250> _kzTime::monthDayText() const {
    if (const char* special = unsetText(value, "-.-", "--.-")) return _kzString8_allSize<250>(special);
    const tm t = toTm();
    char text[128];
    std::snprintf(text, sizeof text, "%s %02d. %02d:%02d.%02d", kzMonthName(t.tm_mon), t.tm_mday, t.tm_hour,
                  t.tm_min, t.tm_sec);
    return _kzString8_allSize<250>(text);
}

_kzString8_allSize<250> _kzTime::dayMonthText() const {
    if (const char* special = unsetText(value, "-.-", "--.-")) return _kzString8_allSize<250>(special);
    const tm t = toTm();
    char text[64];
    std::snprintf(text, sizeof text, "%02d.%s. ", t.tm_mday, kzMonthName(t.tm_mon));
    return _kzString8_allSize<250>(text);
}

_kzString8_allSize<250> _kzTime::dayMonthYearText() const {
    if (const char* special = unsetText(value, "-.-", "--.-")) return _kzString8_allSize<250>(special);
    const tm t = toTm();
    char text[64];
    std::snprintf(text, sizeof text, "%02d.%s.%02d ", t.tm_mday, kzMonthName(t.tm_mon), t.tm_year + 1900);
    return _kzString8_allSize<250>(text);
}

_kzString8_allSize<250> _kzTime::stampTenSeconds() const {
    if (value == 0) return _kzString8_allSize<250>("000000_000");
    const tm t = toTm();
    return formatted("%02d%02d_%02d%02d%01d", t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec / 10);
}

_kzString8_allSize<250> _kzTime::stampSeconds() const {
    if (value == 0) return _kzString8_allSize<250>("000000_0000");
    const tm t = toTm();
    return formatted("%02d%02d_%02d%02d%02d", t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
}

_kzString8_allSize<250> _kzTime::stampYearMinutes() const {
    if (value == 0) return _kzString8_allSize<250>("000000_0000");
    const tm t = toTm();
    return formatted("%02d%02d%02d_%02d%02d", t.tm_year + 1900 - 2000, t.tm_mon + 1, t.tm_mday, t.tm_hour,
                     t.tm_min);
}

_kzString8_allSize<50> _kzTime::clockText() const {
    const int64_t local = value + timeZoneOffset();
    char text[64];
    std::snprintf(text, sizeof text, "%02d:%02d.%02d", static_cast<int>((local / 3600) % 24),
                  static_cast<int>((local / 60) % 60), static_cast<int>(local % 60));
    return _kzString8_allSize<50>(text);
}

_kzString<50> _kzTime::dateText() const {
    _kzString<50> text;
    if (value < 1) return _kzString<50>("-.-");
    const tm t = toTm();
    text.addNr(static_cast<long long>(t.tm_mday), 2);
    text += ".";
    text += kzMonthName(t.tm_mon);
    text += ".";
    text.addNr(static_cast<long long>(t.tm_year - 100), 2);
    return text;
}
