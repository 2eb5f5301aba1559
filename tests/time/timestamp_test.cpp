// Timestamps under fixed time zones, and millisecond spans. The expected values were computed
// independently of this code (epoch values of known local dates, texts by their formats).
#include <cstdlib>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/text_of.h"
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

const int64_t kSummer = 1626345296; // 2021-07-15 12:34:56 in Berlin (summer time), a Thursday
const int64_t kWinter = 1610712000; // 2021-01-15 13:00:00 in Berlin

struct Number {
    const char* what;
    int64_t got, expected;
};
struct Text {
    const char* what;
    std::string got, expected;
};

TEST(Timestamp, TheOffsetCacheFollowsOnlyWhenItIsCorrected) {
    useZone("Europe/Berlin");
    const long berlin = presentOffset();
    setenv("TZ", "Asia/Kolkata", 1);
    tzset();
    EXPECT_EQ(_kzTime::timeZoneOffset(), berlin);
    EXPECT_EQ(_kzTime::calcTimeZoneOffset(false), 19800 - berlin); // what the cache is off by
    EXPECT_EQ(_kzTime::calcTimeZoneOffset(true), 0);               // corrected: nothing left over
    EXPECT_EQ(_kzTime::timeZoneOffset(), 19800);
    useZone("Etc/GMT-3");
    EXPECT_EQ(_kzTime(int64_t(10800), false).value, 0); // a local value comes back by the offset
}

// A correction round at any moment of the day: a difference of more than half a day and 31
// seconds either way is taken the other way round the day.
TEST(Timestamp, ACorrectionRoundAtEveryMomentOfTheDay) {
    useZone("UTC");
    const int64_t midnight = 1600000000 / 86400 * 86400;
    const struct {
        int64_t second;
        int32_t cached, expected;
    } rows[] = {{50000, 43231, 43169}, {50000, 43230, -43230}, {10000, -43231, -43169},
                {10000, -43230, 43230}, {0, -1, 1},            {86399, 1, -1}};
    for (const auto& row : rows)
        EXPECT_EQ(kzTimeZoneCorrection(midnight + row.second, row.cached), row.expected)
            << "a cache of " << row.cached << " at second " << row.second << " of the day";
}

TEST(Timestamp, CalendarFieldsAndEveryTextIncludingUnsetAndInvalidValues) {
    useZone("Europe/Berlin");
    const _kzTime summer(kSummer, true), unset, invalid(int64_t(-1), true);
    _kzTime32 summer32, unset32;
    summer32.value = static_cast<uint32_t>(kSummer);
    const Number numbers[] = {{"month", summer.month(), 7},
                              {"day", summer.dayOfMonth(0), 15},
                              {"hour", summer.toTm().tm_hour, 12},
                              {"year", summer.year(), 2021},
                              {"the day 17 days on", summer.dayOfMonth(17), 1},
                              {"weekday, Monday 0", summer.weekday(), 3},
                              {"a Sunday", _kzTime(kSummer + 3 * 86400, true).weekday(), 6},
                              {"32-bit hour", summer32.toTm().tm_hour, 12},
                              {"32-bit hour an hour on", [&] { tm out{}; summer32.toTmPlus(out, 3600); return out.tm_hour; }(), 13}};
    for (const Number& n : numbers) EXPECT_EQ(n.got, n.expected) << n.what;
    const Text texts[] = {
        {"dateTimeText", textOf(summer.dateTimeText()), "07.15. 12:34.56"},
        {"dateTimeText of 0: 1970 in Berlin", textOf(unset.dateTimeText()), "01.01. 01:00.00"},
        {"textLogStamp", textOf(summer.textLogStamp()), "07.15. 12:34.56"},
        {"monthDayText", textOf(summer.monthDayText()), "Jul 15. 12:34.56"},
        {"monthDayText of 0", textOf(unset.monthDayText()), "-.-"},
        {"monthDayText below 0", textOf(invalid.monthDayText()), "--.-"},
        {"dayMonthText", textOf(summer.dayMonthText()), "15.Jul. "},
        {"dayMonthText of 0", textOf(unset.dayMonthText()), "-.-"},
        {"dayMonthText below 0", textOf(invalid.dayMonthText()), "--.-"},
        {"dayMonthYearText", textOf(summer.dayMonthYearText()), "15.Jul.2021 "},
        {"dayMonthYearText of 0", textOf(unset.dayMonthYearText()), "-.-"},
        {"dayMonthYearText below 0", textOf(invalid.dayMonthYearText()), "--.-"},
        {"stampTenSeconds", textOf(summer.stampTenSeconds()), "0715_12345"},
        {"stampTenSeconds at ten seconds", textOf(_kzTime(kSummer + 14, true).stampTenSeconds()), "0715_12351"},
        {"stampTenSeconds of 0", textOf(unset.stampTenSeconds()), "000000_000"},
        {"stampSeconds", textOf(summer.stampSeconds()), "0715_123456"},
        {"stampSeconds of 0", textOf(unset.stampSeconds()), "000000_0000"},
        {"stampYearMinutes", textOf(summer.stampYearMinutes()), "210715_1234"},
        {"stampYearMinutes of 0", textOf(unset.stampYearMinutes()), "000000_0000"},
        {"dateText", textOf(summer.dateText()), "15.Jul.21"},
        {"dateText of 0", textOf(unset.dateText()), "-.-"},
        {"dateText below 0", textOf(invalid.dateText()), "-.-"},
        {"dateText of 1: the year less 100", textOf(_kzTime(int64_t(1), true).dateText()), "01.Jan.-30"},
        {"winter dateTimeText", textOf(_kzTime(kWinter, true).dateTimeText()), "01.15. 13:00.00"},
        {"32-bit dateTimeText", textOf(summer32.dateTimeText()), "07.15. 12:34.56"},
        {"32-bit dateTimeText of 0", textOf(unset32.dateTimeText()), "-.-"},
        {"month name 11", kzMonthName(11), "Dec"},
        {"month name outside 0..11", kzMonthName(12), "Jan"}};
    for (const Text& t : texts) EXPECT_EQ(t.got, t.expected) << t.what;
}

TEST(Timestamp, LocalArithmeticByTheCachedOffset) {
    useZone("Etc/GMT-3"); // three hours east of UTC, no summer time
    _kzTime t(int64_t(1626382770), true); // 2021-07-15 23:59:30 local
    _kzTime32 t32;
    t32.value = 1626382770u;
    int64_t now = 1626382770 + 100;
    const Number numbers[] = {{"day number", t.dayNumber(0), 18823},
                              {"the next day 30 s on", t.dayNumber(30), 18824},
                              {"minute of the day", t.minuteOfDay(), 1439},
                              {"second of the day", t.secondOfDay(0), 86370},
                              {"hour of the day", t.hourOfDay(), 23},
                              {"days to 31 s later", t.daysTo(_kzTime(int64_t(1626382770 + 31), true)), 1},
                              {"32-bit local seconds", t32.localSeconds(), 1626382770 + 10800},
                              {"32-bit seconds left", t32.secondsLeft(60, &now), -40},
                              {"days as seconds", _kzTime32::daysToSeconds(3), 259200}};
    for (const Number& n : numbers) EXPECT_EQ(n.got, n.expected) << n.what;
    EXPECT_EQ(textOf(t.clockText()), "23:59.30");
    t.setDayNumber(18823);
    EXPECT_EQ(t.value, 18823LL * 86400 - 10800);
}

TEST(Timestamp, SetLocalWithItsClampsAndTheDoubleMktime) {
    useZone("Europe/Berlin");
    _kzTime t;
    const Number numbers[] = {
        {"summer time: the second pass", t.setLocal(56, 34, 12, 15, 7, 2021), kSummer},
        {"21 means 2021", t.setLocal(0, 0, 13, 15, 1, 21), kWinter},
        {"99 means 2099", t.setLocal(0, 0, 0, 1, 1, 99), 4070905200},
        {"below 1990: a century on", t.setLocal(0, 0, 0, 1, 1, 1985), 3629142000},
        {"1990 itself stays", t.setLocal(0, 0, 0, 1, 1, 1990), 631148400},
        {"below 0: the fallback year 2014", t.setLocal(0, 0, 10, 1, 3, -1), 1393664400},
        {"day 40 is the 31st", t.setLocal(0, 0, 12, 40, 7, 2021), 1627725600},
        {"month 14: February of the next year", t.setDateWrap(10, 14, 2020, true), 1612911600},
        {"month 1 stays", t.setDateWrap(10, 1, 2020, true), 1578610800},
        {"a date's year below 1990 stays", t.setDateWrap(10, 1, 1985, true), 474159600},
        {"month 25: January two years on", t.setDateWrap(10, 25, 2020, true), 1641769200},
        {"month 0: December of the year before", t.setDateWrap(10, 0, 2020, true), 1575932400},
        {"month 13 of 3000: January, in a year held at 3000", t.setDateWrap(10, 13, 3000, true), 32504454000},
        {"month 36: December two years on", t.setDateWrap(10, 36, 2020, true), 1670626800},
        {"month -12: December two years back", t.setDateWrap(10, -12, 2020, true), 1544396400},
        {"a build stamp", t.parseBuildStamp("jan  5 2021", "14:05:09"), 1609851909},
        {"a build stamp in July", t.parseBuildStamp("Jul 15 2021", "12:34:56"), kSummer},
        {"a build stamp's year below 0: the fallback year", t.parseBuildStamp("Jan  5 -1", "14:05:09"), 1388927109},
        {"no month", t.parseBuildStamp("Foo  5 2021", "14:05:09"), 0},
        {"no month: no time kept", t.value, 0}, // the rows are read from top to bottom
        {"no minute", t.parseBuildStamp("Jan  5 2021", "14:x5:09"), 0}};
    for (const Number& n : numbers) EXPECT_EQ(n.got, n.expected) << n.what;
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
    const Number numbers[] = {{"from an unset time", unset.secondsTo(a), 0},
                              {"seconds to an unset time", a.secondsTo(unset), 2000000000},
                              {"minutes to an unset time", a.minutesTo(unset), 33333333},
                              {"hours to an unset time", a.hoursTo(unset), 555555},
                              {"hours to second 1, which is set", a.hoursTo(_kzTime(int64_t(1), true)), 0},
                              {"minutes back", b.minutesTo(a), -122},
                              {"hours on", a.hoursTo(b), 2},
                              {"absolute seconds back", b.absSecondsTo(a), 7322}};
    for (const Number& n : numbers) EXPECT_EQ(n.got, n.expected) << n.what;
}

TEST(TimeMS, SpansAndTheirTexts) {
    struct Case {
        int ms;
        const char* text;
    };
    for (const Case& c : {Case{7, ".00s.ms"}, Case{340, ".34s.ms"}, Case{1000, ".00s.ms"}, Case{1001, "1.00s.ms"},
                          Case{2147483647, "2147483.64s.ms"}})
        EXPECT_STREQ(_kzTimeMS::spanText(c.ms).asChar(), c.text) << c.ms;
    EXPECT_EQ(_kzTimeMS::span(0, (int64_t(1) << 31) + 5), 5);
    EXPECT_EQ(_kzTimeMS::span(1000, 999), 2147483647); // the clock went back
    EXPECT_NEAR(static_cast<double>(_kzTimeMS::now()), ::time(nullptr) * 1000.0, 2000.0); // milliseconds of the clock
}

} // namespace
