// Timestamps under fixed time zones. The expected values were computed independently of
// this code (epoch values of known local dates).
#include <cstdlib>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "time/kz_time.h"
#include "time/kz_time32.h"

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

const int64_t kSummer = 1626345296; // 2021-07-15 12:34:56 in Berlin (summer time)
const int64_t kWinter = 1610712000; // 2021-01-15 13:00:00 in Berlin

TEST(Timestamp, TheOffsetCacheAndItsCorrectionRound) {
    useZone("UTC");
    EXPECT_EQ(_kzTime::timeZoneOffset(), 0);
    useZone("Europe/Berlin");
    EXPECT_EQ(_kzTime::timeZoneOffset(), presentOffset());
    EXPECT_EQ(_kzTime::calcTimeZoneOffset(false), 0);

    // Another zone is not taken up by itself: the cache keeps the old offset until a
    // correction round is asked for.
    const long berlin = presentOffset();
    setenv("TZ", "Asia/Kolkata", 1);
    tzset();
    EXPECT_EQ(_kzTime::timeZoneOffset(), berlin);
    EXPECT_EQ(_kzTime::calcTimeZoneOffset(false), 19800 - berlin);
    EXPECT_EQ(_kzTime::calcTimeZoneOffset(true), 0);
    EXPECT_EQ(_kzTime::timeZoneOffset(), 19800);

    useZone("America/New_York");
    EXPECT_EQ(_kzTime::timeZoneOffset(), presentOffset());

    // A local value comes back by the offset.
    useZone("Etc/GMT-3");
    EXPECT_EQ(_kzTime(int64_t(10800), false).value, 0);
    EXPECT_EQ(_kzTime(uint32_t(10800), true).value, 10800);
}

// Each correction is brought into half a day, so a jump of more than twelve hours leaves
// the cache a day off: from UTC, +14 hours read as -10. Run in a child process, since the
// cache is process-wide and stays a day off for good.
void jumpFourteenHours() {
    useZone("UTC");
    useZone("Pacific/Kiritimati");
    std::exit(_kzTime::timeZoneOffset() == -36000 ? 0 : 1);
}

TEST(Timestamp, CorrectionsStayWithinHalfADay) {
    EXPECT_EXIT(jumpFourteenHours(), ::testing::ExitedWithCode(0), "");
}

TEST(Timestamp, CalendarFieldsAndTextsInSummerAndWinter) {
    useZone("Europe/Berlin");
    const _kzTime summer(kSummer, true);
    EXPECT_EQ(summer.toTm().tm_hour, 12);
    EXPECT_EQ(summer.month(), 7);
    EXPECT_EQ(summer.year(), 2021);
    EXPECT_EQ(summer.dayOfMonth(0), 15);
    EXPECT_EQ(summer.dayOfMonth(17), 1);
    EXPECT_EQ(summer.weekday(), 3); // a Thursday
    EXPECT_EQ(_kzTime(kSummer + 3 * 86400, true).weekday(), 6);
    EXPECT_EQ(_kzTime(kSummer + 4 * 86400, true).weekday(), 0);
    tm plus{};
    summer.toTmPlus(plus, 3600);
    EXPECT_EQ(plus.tm_hour, 13);

    EXPECT_EQ(str(summer.dateTimeText()), "07.15. 12:34.56");
    EXPECT_EQ(str(summer.textLogStamp()), "07.15. 12:34.56");
    EXPECT_EQ(str(summer.monthDayText()), "Jul 15. 12:34.56");
    EXPECT_EQ(str(summer.dayMonthText()), "15.Jul. ");
    EXPECT_EQ(str(summer.dayMonthYearText()), "15.Jul.2021 ");
    EXPECT_EQ(str(summer.stampTenSeconds()), "0715_12345");
    EXPECT_EQ(str(summer.stampSeconds()), "0715_123456");
    EXPECT_EQ(str(summer.stampYearMinutes()), "210715_1234");
    EXPECT_EQ(summer.dateText().to_kzString8_250().asChar(), std::string("15.Jul.21"));
    const _kzTime winter(kWinter, true);
    EXPECT_EQ(str(winter.dateTimeText()), "01.15. 13:00.00");
    EXPECT_EQ(winter.dateText().to_kzString8_250().asChar(), std::string("15.Jan.21"));

    // The clock text goes through the cached offset, which is the present one: a summer
    // date read in winter shows the winter hour.
    const int expectedHour = static_cast<int>((10 + presentOffset() / 3600) % 24);
    char expected[16];
    std::snprintf(expected, sizeof expected, "%02d:34.56", expectedHour);
    EXPECT_STREQ(summer.clockText().asChar(), expected);
}

TEST(Timestamp, UnsetAndInvalidValuesHaveTextsOfTheirOwn) {
    useZone("UTC");
    const _kzTime zero, negative(int64_t(-5), true);
    EXPECT_EQ(str(zero.monthDayText()), "-.-");
    EXPECT_EQ(str(zero.dayMonthText()), "-.-");
    EXPECT_EQ(str(zero.dayMonthYearText()), "-.-");
    EXPECT_EQ(str(zero.stampTenSeconds()), "000000_000");
    EXPECT_EQ(str(zero.stampSeconds()), "000000_0000");
    EXPECT_EQ(str(zero.stampYearMinutes()), "000000_0000");
    EXPECT_EQ(zero.dateText().to_kzString8_250().asChar(), std::string("-.-"));
    EXPECT_EQ(str(zero.dateTimeText()), "01.01. 00:00.00"); // no text of its own
    EXPECT_EQ(str(negative.monthDayText()), "--.-");
    EXPECT_EQ(str(negative.dayMonthText()), "--.-");
    EXPECT_EQ(str(negative.dayMonthYearText()), "--.-");
    EXPECT_EQ(negative.dateText().to_kzString8_250().asChar(), std::string("-.-"));
    EXPECT_EQ(str(negative.stampSeconds()), "1231_235955");
}

TEST(Timestamp, LocalArithmeticThroughTheOffset) {
    useZone("Etc/GMT-3");                 // three hours east of UTC, no summer time
    _kzTime t(int64_t(1626382770), true); // 2021-07-15 23:59:30 local
    EXPECT_EQ(t.dayNumber(0), 18823);
    EXPECT_EQ(t.dayNumber(30), 18824);
    EXPECT_EQ(t.hourOfDay(), 23);
    EXPECT_EQ(t.minuteOfDay(), 1439);
    EXPECT_EQ(t.secondOfDay(0), 86370);
    EXPECT_EQ(t.secondOfDay(30), 0);
    EXPECT_EQ(t.daysTo(_kzTime(int64_t(1626382770 + 31), true)), 1);
    EXPECT_EQ(_kzTime(int64_t(1626382770 + 31), true).absDaysTo(t), 1);
    t.setDayNumber(18823);
    EXPECT_EQ(t.value, 18823LL * 86400 - 10800);
    t.localToUTC();
    EXPECT_EQ(t.value, 18823LL * 86400 - 21600);

    _kzTime32 old;
    old.value = 100;
    EXPECT_EQ(old.localSeconds(), 10900);
    EXPECT_EQ(old.dateTimeText().asChar(), std::string("01.01. 03:01.40"));
    old.value = 0;
    EXPECT_EQ(old.dateTimeText().asChar(), std::string("-.-"));
}

TEST(Timestamp, SetLocalWithItsClampsAndTheDoubleMktime) {
    useZone("Europe/Berlin");
    _kzTime t;
    EXPECT_EQ(t.setLocal(56, 34, 12, 15, 7, 2021), kSummer); // summer time: the second pass
    EXPECT_EQ(t.value, kSummer);
    EXPECT_EQ(t.setLocal(0, 0, 13, 15, 1, 21), kWinter);      // 21 means 2021
    EXPECT_EQ(t.setLocal(0, 0, 0, 1, 1, 1985), 3629142000);   // below 1990: a century on
    EXPECT_EQ(t.setLocal(0, 0, 10, 1, 3, -1), 1393664400);    // the fallback year 2014
    EXPECT_EQ(t.setLocal(0, 0, 0, 1, 6, 5000), 32516719200);  // at most 3000
    EXPECT_EQ(t.setLocal(0, 0, 12, 40, 7, 2021), 1627725600); // day 40 is the 31st
    EXPECT_EQ(t.setLocal(0, 0, 12, 0, 7, 2021), 1625133600);  // day 0 is the 1st
    t.setLocal(0, 0, 12, 40, 15, 2021);                       // month 15 is December
    EXPECT_EQ(t.month(), 12);
    EXPECT_EQ(t.dayOfMonth(0), 31);

    // A year of 1900 stands for "this year", and 1 January with it for "today".
    const tm today = _kzTime(true).toTm();
    t.setLocal(0, 0, 12, 1, 1, 1900);
    EXPECT_EQ(t.year(), today.tm_year + 1900);
    EXPECT_EQ(t.toTm().tm_yday, today.tm_yday);
    t.setLocal(0, 0, 12, 2, 3, 1900);
    EXPECT_EQ(t.year(), today.tm_year + 1900);
    EXPECT_EQ(t.month(), 3);
    _kzTime32 old;
    EXPECT_EQ(old.setLocal(56, 34, 12, 15, 7, 2021), static_cast<uint32_t>(kSummer));
}

TEST(Timestamp, SetDateWrapCarriesMonthsIntoTheYear) {
    useZone("Europe/Berlin");
    _kzTime t;
    EXPECT_EQ(t.setDateWrap(10, 14, 2020, true), 1612911600);    // February 2021
    EXPECT_EQ(t.setDateWrap(10, 0, 2020, true), 1575932400);     // December 2019
    EXPECT_EQ(t.setDateWrap(10, -12, 2020, true), 1544396400);   // December 2018
    EXPECT_EQ(t.setDateWrap(10, 25, 2020, true), 1641769200);    // January 2022
    EXPECT_EQ(t.setDate(10, 14, 2020), t.setDate(10, 12, 2020)); // no carry: clamped
    EXPECT_EQ(t.month(), 12);
    EXPECT_EQ(t.toTm().tm_hour, 0);
}

TEST(Timestamp, BuildStampsAreReadOrRefused) {
    useZone("Europe/Berlin");
    _kzTime t;
    EXPECT_EQ(t.parseBuildStamp("Jan  5 2021", "14:05:09"), 1609851909);
    EXPECT_EQ(t.value, 1609851909);
    EXPECT_EQ(t.parseBuildStamp("jan  5 2021", "14:05:09"), 1609851909); // the month ignores case
    EXPECT_EQ(t.parseBuildStamp("Foo  5 2021", "14:05:09"), 0);
    EXPECT_EQ(t.value, 0);
    EXPECT_EQ(t.parseBuildStamp("Jan  5 2021", "14:x5:09"), 0);
    EXPECT_EQ(t.parseBuildStamp("Jan  5 2021", "14:05:\xE9"
                                               "9"),
              0);
    EXPECT_EQ(t.parseBuildStamp("Jan 15 2021", "14:05:9"), 1610715909);
}

TEST(Timestamp, ComparisonsAtTheirBoundariesAndSpecialValues) {
    _kzTime t(int64_t(1000), true);
    int64_t now = 1010;
    EXPECT_FALSE(t.hasElapsed(10, true, &now)); // exactly value + span: not yet
    EXPECT_FALSE(t.isOlderThan(10, &now));
    now = 1011;
    EXPECT_TRUE(t.isOlderThan(10, &now));
    EXPECT_TRUE(t.hasElapsed(10, false, &now));
    EXPECT_EQ(t.value, 1000);
    EXPECT_TRUE(t.hasElapsed(10, true, &now));
    EXPECT_EQ(t.value, 1011);
    EXPECT_TRUE(_kzTime(int64_t(1), true).hasElapsed(60, false, nullptr));

    const _kzTime unset, a(int64_t(1000), true), b(int64_t(1000 + 7322), true);
    EXPECT_EQ(unset.secondsTo(a), 0);
    EXPECT_EQ(a.secondsTo(unset), 2000000000);
    EXPECT_EQ(a.minutesTo(unset), 33333333);
    EXPECT_EQ(a.hoursTo(unset), 555555);
    EXPECT_EQ(unset.hoursTo(a), 0);
    EXPECT_EQ(a.secondsTo(b), 7322);
    EXPECT_EQ(b.secondsTo(a), -7322);
    EXPECT_EQ(b.absSecondsTo(a), 7322);
    EXPECT_EQ(a.minutesTo(b), 122);
    EXPECT_EQ(a.hoursTo(b), 2);
    EXPECT_EQ(b.minutesTo(a), -122);

    _kzTime32 old;
    old.value = 100;
    const int64_t at = 150;
    EXPECT_EQ(old.secondsLeft(60, &at), 10);
    EXPECT_EQ(old.secondsLeft(10, &at), -40);
    EXPECT_EQ(_kzTime32::daysToSeconds(2), 172800);
}

} // namespace
