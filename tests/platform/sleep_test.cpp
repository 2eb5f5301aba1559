#include <ctime>

#include <gtest/gtest.h>

#include "platform/sleep.h"

namespace {

long long nowMs() {
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<long long>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

TEST(Sleep, NothingForZeroOrLessAndTheWholeSpanOtherwise) {
    long long start = nowMs();
    kzSleepMS(-5);
    kzSleepMS(0);
    EXPECT_LT(nowMs() - start, 50);

    // Above a second the sleep goes in slices; together they last the whole span.
    start = nowMs();
    kzSleepMS(1003);
    const long long slept = nowMs() - start;
    EXPECT_GE(slept, 1003);
    EXPECT_LT(slept, 1500);
}

} // namespace
