// Setting a timestamp from local calendar fields.
//
// mktime is called twice: the first pass starts with tm_isdst 0 and lies an hour off on a
// summer-time date; the second pass keeps the tm_isdst that the first one found.
#include <cstdlib>

#include "time/kz_time.h"

namespace {

// The fixed fallback year for a negative year.
constexpr int kFallbackYear = 2014;

int clamp(int v, int low, int high) { return v < low ? low : (v > high ? high : v); }

int normaliseYear(int year) {
    if (year < 0) return kFallbackYear;
    if (year <= 99) return year + 2000;
    return year > 3000 ? 3000 : year;
}

struct CalendarFields {
    int sec, min, hour, day, month, year; // month 1..12
};

// Fills `t` from the fields; with `omissionRules` a year of 1900 takes the present year
// (and on 1 January the present date), and years below 1990 move a century on.
void fill(tm& t, const CalendarFields& f, bool omissionRules) {
    t.tm_sec = f.sec;
    t.tm_min = f.min;
    t.tm_hour = f.hour;
    t.tm_mday = clamp(f.day, 1, 31);
    t.tm_mon = clamp(f.month, 1, 12) - 1;
    t.tm_year = f.year - 1900;
    t.tm_wday = 0;
    t.tm_yday = 0;
    t.tm_gmtoff = 0;
    t.tm_zone = nullptr;
    if (!omissionRules) return;
    if (t.tm_year == 0) {
        const tm today = _kzTime(true).toTm();
        if (t.tm_mday == 1 && t.tm_mon == 0) {
            t.tm_mday = today.tm_mday;
            t.tm_mon = today.tm_mon;
        }
        t.tm_year = today.tm_year;
    } else if (f.year < 1990) {
        t.tm_year = f.year - 1800;
    }
}

int64_t makeLocal(const CalendarFields& f, bool omissionRules) {
    tm t{};
    t.tm_isdst = 0;
    fill(t, f, omissionRules);
    mktime(&t);
    const int isdst = t.tm_isdst;
    fill(t, f, omissionRules);
    t.tm_isdst = isdst;
    return static_cast<int64_t>(mktime(&t));
}

// A piece of a build stamp: digits, a minus sign first; empty passes and reads as 0.
bool readNumber(const _kzString8_allSize<50>& piece, int* out) {
    for (int i = 0; i < piece.length; ++i) {
        const char c = piece.data[i];
        if ((c < '0' || c > '9') && !(i == 0 && c == '-')) return false;
    }
    *out = std::atoi(piece.data);
    return true;
}

} // namespace

int64_t _kzTime::setLocal(int sec, int min, int hour, int day, int month, int year) {
    value = makeLocal({sec, min, hour, day, month, normaliseYear(year)}, true);
    return value;
}

int64_t _kzTime::setDateWrap(int day, int month, int year, const bool& wrapMonth) {
    if (wrapMonth) {
        if (month <= -12) {
            month += 24;
            year -= 2;
        } else if (month <= 0) {
            month += 12;
            year -= 1;
        } else if (month >= 25) {
            month -= 24;
            year += 2;
        } else if (month >= 13) {
            month -= 12;
            year += 1;
        }
    }
    value = makeLocal({0, 0, 0, day, month, normaliseYear(year)}, false);
    return value;
}

int64_t _kzTime::setDate(int day, int month, int year) { return setDateWrap(day, month, year, false); }

int64_t _kzTime::parseBuildStamp(const char* date, const char* time) {
    value = 0;
    _kzString8_allSize<50> d(date), t(time);
    int month = 0;
    while (month < 12 && !d.startsWith(kzMonthName(month))) ++month;
    if (month == 12) return 0;

    d.remove(0, 4);
    _kzString8_allSize<50> day = d.left(2).trim();
    d.remove(0, 3);
    _kzString8_allSize<50> year = d.left(4).trim();
    _kzString8_allSize<50> hour = t.left(2).trim();
    t.remove(0, 3);
    const _kzString8_allSize<50> minute = t.left(2);
    t.remove(0, 3);
    const _kzString8_allSize<50> second = t.left(2);

    int fields[5];
    const _kzString8_allSize<50>* pieces[5] = {&day, &year, &hour, &minute, &second};
    for (int i = 0; i < 5; ++i)
        if (!readNumber(*pieces[i], &fields[i])) return 0;
    return setLocal(fields[4], fields[3], fields[2], fields[0], month + 1, fields[1]);
}
