// _kzTime: seconds since the Unix epoch, UTC, as a signed 64-bit value; 0 means unset.
//
// Local days and hours come either from localtime_r (calendar fields and texts) or, where
// speed matters, from one process-wide cached time-zone offset (local = UTC + offset). The
// offset is computed at its first use and then kept: a change between summer and winter
// time is only taken up by an explicit calcTimeZoneOffset(true).
#pragma once

#include <cstdint>
#include <ctime>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

// Aligned to 4 bytes, so that a time can stand at any 4-byte offset of a packed table record.
#pragma pack(push, 4)
struct _kzTime {
    int64_t value;

    _kzTime() : value(0) {}
    // The present time if `now`, else 0.
    explicit _kzTime(bool now);
    // A UTC value as it is, or a local one (isUTC false) moved back by the offset.
    _kzTime(int64_t value, bool isUTC);
    _kzTime(uint32_t value, bool isUTC);

    // value = present time + seconds; setNowPlus(0) is the usual way to stamp.
    void setNowPlus(int64_t seconds);
    _kzTime& setNow();

    // --- the cached time-zone offset, seconds east of UTC ---------------------------------
    static int32_t timeZoneOffset();
    // One correction round of the cached offset (see time_zone.cpp). With `store` false
    // only the correction is returned; with it the cache is corrected and what remains
    // after the correction, normally 0, is returned.
    static int32_t calcTimeZoneOffset(bool store);

    // --- calendar fields in local time, through localtime_r -------------------------------
    void toTm(tm& out) const;
    void toTmPlus(tm& out, const int64_t& seconds) const;
    tm toTm() const;
    int month() const;                     // 1 to 12
    int year() const;                      // four digits
    int dayOfMonth(int64_t addDays) const; // of value + addDays days
    int weekday() const;                   // 0 Monday to 6 Sunday
    static bool isSummerTime();            // of the present time

    // --- local arithmetic through the cached offset (no localtime_r) ----------------------
    int64_t dayNumber(int64_t addSeconds) const;
    void setDayNumber(const int64_t& day);
    int hourOfDay() const;
    int minuteOfDay() const;
    int secondOfDay(int64_t addSeconds) const;
    void localToUTC();

    // --- comparison; `now` null means the clock -------------------------------------------
    // True if now > value + span, strictly; with `reset` the value then becomes now.
    bool hasElapsed(const int64_t& span, const bool& reset, const int64_t* now);
    bool isOlderThan(const int64_t& span, const int64_t* now) const;
    // 0 if this time is unset, a large constant if the other is; else the difference.
    int32_t secondsTo(const _kzTime& other) const;
    int32_t minutesTo(const _kzTime& other) const;
    int32_t hoursTo(const _kzTime& other) const;
    int32_t absSecondsTo(const _kzTime& other) const;
    int64_t daysTo(const _kzTime& other) const;
    int64_t absDaysTo(const _kzTime& other) const;

    // --- setting from local calendar fields; each returns the new value -------------------
    // Years below 0 become 2014, 0..99 mean 2000..2099, above 3000 become 3000; a year
    // of 1900 takes the present year, and years below 1990 move a century on.
    int64_t setLocal(int sec, int min, int hour, int day, int month, int year);
    // Midnight of a date; with `wrapMonth` a month outside 1..12 is carried into the year.
    int64_t setDateWrap(int day, int month, int year, const bool& wrapMonth);
    int64_t setDate(int day, int month, int year);
    // Reads the texts that build tools give as date and time ("Jan  5 2021", "14:05:09");
    // 0 if they can't be read.
    int64_t parseBuildStamp(const char* date, const char* time);

    // --- texts: hour:minute.second, e.g. 14:05.09 -----------------------------------------
    _kzString8_allSize<250> dateTimeText() const;     // "07.15. 14:05.09"
    _kzString8_allSize<250> textLogStamp() const;     // the same
    _kzString8_allSize<250> monthDayText() const;     // "Jul 15. 14:05.09"
    _kzString8_allSize<250> dayMonthText() const;     // "15.Jul. "
    _kzString8_allSize<250> dayMonthYearText() const; // "15.Jul.2021 "
    _kzString8_allSize<250> stampTenSeconds() const;  // "0715_14050"
    _kzString8_allSize<250> stampSeconds() const;     // "0715_140509"
    _kzString8_allSize<250> stampYearMinutes() const; // "210715_1405"
    _kzString8_allSize<50> clockText() const;         // "14:05.09", from the cached offset
    _kzString<50> dateText() const;                   // "15.Jul.21"
};
#pragma pack(pop)

// The names of the months, "Jan" to "Dec", by index 0 to 11.
const char* kzMonthName(int index);

// What a cached time-zone offset is off by at the moment `now` (seconds since the epoch,
// not before it): one correction round of the cache, for any moment of the day.
int32_t kzTimeZoneCorrection(int64_t now, int32_t offset);
