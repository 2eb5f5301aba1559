#include <string>

#include <gtest/gtest.h>

#include "time/kz_time.h"
#include "time/kz_time_ms.h"

namespace {

std::string spanText(int ms) { return _kzTimeMS::spanText(ms).asChar(); }

TEST(TimeMS, SpanTextShowsSecondsOnlyAboveOneSecond) {
    EXPECT_EQ(spanText(0), ".00s.ms");
    EXPECT_EQ(spanText(7), ".00s.ms");
    EXPECT_EQ(spanText(340), ".34s.ms");
    EXPECT_EQ(spanText(1000), ".00s.ms");
    EXPECT_EQ(spanText(1001), "1.00s.ms");
    EXPECT_EQ(spanText(12345), "12.34s.ms");
    EXPECT_EQ(spanText(2147483647), "2147483.64s.ms");
}

TEST(TimeMS, SpansKeepThirtyOneBits) {
    EXPECT_EQ(_kzTimeMS::span(1000, 1000), 0);
    EXPECT_EQ(_kzTimeMS::span(0, (int64_t(1) << 31) + 5), 5);
    EXPECT_EQ(_kzTimeMS::span(1000, 999), 2147483647); // the clock went back
}

TEST(TimeMS, RestartReturnsTheSpanAndStoresThePresent) {
    _kzTimeMS timer;
    timer.value -= 2500;
    EXPECT_GE(timer.elapsed(), 2500);
    const int32_t first = timer.restart();
    EXPECT_GE(first, 2500);
    EXPECT_LT(timer.restart(), 100);
    timer.value -= 1500;
    const std::string text = timer.restartText().asChar();
    EXPECT_EQ(text.substr(0, 2), "1.");
    EXPECT_LT(timer.elapsed(), 100);
    // now() truncates microseconds the way setNow does.
    const int64_t before = _kzTimeMS::now();
    timer.setNow();
    EXPECT_GE(timer.value, before);
}

TEST(Time, ConstructionAndStamping) {
    EXPECT_EQ(_kzTime().value, 0);
    EXPECT_EQ(_kzTime(false).value, 0);
    const int64_t now = _kzTime(true).value;
    EXPECT_GT(now, 1700000000);
    _kzTime t;
    t.setNowPlus(-60);
    EXPECT_GE(t.value, now - 60);
    EXPECT_LE(t.value, now - 59);
    EXPECT_GE(t.setNow().value, now);
}

} // namespace
