// Timestamps under fixed time zones, and millisecond spans. The expected values were computed
// independently of this code (epoch values of known local dates).
#include <cstdlib>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "time/kz_time.h"
#include "time/kz_time32.h"
#include "time/kz_time_ms.h"

namespace {

// Switches the process to a time zone and lets the cached offset follow.
void useZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
    _kzTime::calcTimeZoneOffset(true);
}

// The zone's present offset, as the C library reports it.
long presentOffset() {
    const time_t now = ::time(nullptr);
    tm t{};
    localtime_r(&now, &t);
    return t.tm_gmtoff;
}

std::string str(const _kzString8_allSize<250>& s) { return s.asChar(); }

const int64_t kSummer = 1626345296; // 2021-07-15 12:34:56 in Berlin (summer time), a Thursday
const int64_t kWinter = 1610712000; // 2021-01-15 13:00:00 in Berlin

TEST(Timestamp, TheOffsetCacheFollowsOnlyWhenItIsCorrected) {
    useZone("Europe/Berlin");
    const long berlin = presentOffset();
    setenv("TZ", "Asia/Kolkata", 1);
    tzset();
    EXPECT_EQ(_kzTime::timeZoneOffset(), berlin);
    EXPECT_EQ(_kzTime::calcTimeZoneOffset(false), 19800 - berlin); // what the cache is off by
    EXPECT_EQ(_kzTime::calcTimeZoneOffset(true) + _kzTime::timeZoneOffset(), 19800);
    useZone("Etc/GMT-3");
    EXPECT_EQ(_kzTime(int64_t(10800), false).value, 0); // a local value comes back by the offset
}

TEST(Timestamp, CalendarFieldsTextsAndLocalArithmetic) {
    useZone("Europe/Berlin");
    const _kzTime summer(kSummer, true), winter(kWinter, true);
    EXPECT_EQ(summer.month() * 10000 + summer.dayOfMonth(0) * 100 + summer.toTm().tm_hour, 71512);
    EXPECT_EQ(summer.dayOfMonth(17), 1);
    EXPECT_EQ(summer.weekday(), 3); // Monday is 0, Sunday 6
    EXPECT_EQ(_kzTime(kSummer + 3 * 86400, true).weekday(), 6);
    EXPECT_EQ(str(summer.dateTimeText()), "07.15. 12:34.56");
    EXPECT_EQ(str(summer.monthDayText()), "Jul 15. 12:34.56");
    EXPECT_EQ(str(summer.dayMonthYearText()), "15.Jul.2021 ");
    EXPECT_EQ(str(winter.dateTimeText()) + str(_kzTime().stampSeconds()), "01.15. 13:00.00000000_0000");

    useZone("Etc/GMT-3");                 // three hours east of UTC, no summer time
    _kzTime t(int64_t(1626382770), true); // 2021-07-15 23:59:30 local
    EXPECT_EQ(t.dayNumber(30) - t.dayNumber(0), 1);
    EXPECT_EQ(t.minuteOfDay(), 1439);
    EXPECT_EQ(t.secondOfDay(0), 86370);
    EXPECT_EQ(t.daysTo(_kzTime(int64_t(1626382770 + 31), true)), 1);
    t.setDayNumber(18823);
    EXPECT_EQ(t.value, 18823LL * 86400 - 10800);
}

TEST(Timestamp, SetLocalWithItsClampsAndTheDoubleMktime) {
    useZone("Europe/Berlin");
    _kzTime t;
    EXPECT_EQ(t.setLocal(56, 34, 12, 15, 7, 2021), kSummer);  // summer time: the second pass
    EXPECT_EQ(t.setLocal(0, 0, 13, 15, 1, 21), kWinter);      // 21 means 2021
    EXPECT_EQ(t.setLocal(0, 0, 0, 1, 1, 99), 4070905200);     // and 99 means 2099
    EXPECT_EQ(t.setLocal(0, 0, 0, 1, 1, 1985), 3629142000);   // below 1990: a century on
    EXPECT_EQ(t.setLocal(0, 0, 10, 1, 3, -1), 1393664400);    // the fallback year 2014
    EXPECT_EQ(t.setLocal(0, 0, 12, 40, 7, 2021), 1627725600); // day 40 is the 31st
    EXPECT_EQ(t.setDateWrap(10, 14, 2020, true), 1612911600); // February 2021
    EXPECT_EQ(t.setDateWrap(10, 0, 2020, true), 1575932400);  // December 2019
    EXPECT_EQ(t.parseBuildStamp("jan  5 2021", "14:05:09"), 1609851909);
}

TEST(Timestamp, ComparisonsAtTheirBoundariesAndSpecialValues) {
    _kzTime t(int64_t(1000), true);
    int64_t now = 1010;
    EXPECT_FALSE(t.hasElapsed(10, true, &now)); // exactly value + span: not yet
    EXPECT_FALSE(t.isOlderThan(10, &now));
    now = 1011;
    EXPECT_TRUE(t.isOlderThan(10, &now));
    EXPECT_TRUE(t.hasElapsed(10, true, &now));
    EXPECT_EQ(t.value, 1011);
    const _kzTime unset, a(int64_t(1000), true), b(int64_t(1000 + 7322), true);
    EXPECT_EQ(unset.secondsTo(a), 0);
    EXPECT_EQ(a.secondsTo(unset) + a.minutesTo(unset) + a.hoursTo(unset), 2000000000 + 33333333 + 555555);
    EXPECT_EQ(b.minutesTo(a) * 10 + a.hoursTo(b), -1218);
}

TEST(TimeMS, SpansAndTheirTexts) {
    struct Case { int ms; const char* text; };
    for (const Case& c : {Case{7, ".00s.ms"}, Case{340, ".34s.ms"}, Case{1000, ".00s.ms"}, Case{1001, "1.00s.ms"},
                          Case{2147483647, "2147483.64s.ms"}})
        EXPECT_STREQ(_kzTimeMS::spanText(c.ms).asChar(), c.text) << c.ms;
    EXPECT_EQ(_kzTimeMS::span(0, (int64_t(1) << 31) + 5), 5);
    EXPECT_EQ(_kzTimeMS::span(1000, 999), 2147483647); // the clock went back
}

} // namespace
