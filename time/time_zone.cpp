// The process-wide time-zone offset, seconds east of UTC (local = UTC + offset).
//
// It starts as -1 ("not yet asked") and is found by a correction round: the local time of
// day of (now - cached offset) is compared with the UTC time of day of now; the difference,
// brought into half a day, is what the cache is off by. From -1 the first round lands on
// the true offset; a second round checks that nothing is left.
#include <ctime>

#include "time/kz_time.h"

namespace {

int32_t cachedOffset = -1;

int32_t correctionRound() { return kzTimeZoneCorrection(static_cast<int64_t>(::time(nullptr)), cachedOffset); }

} // namespace

int32_t kzTimeZoneCorrection(int64_t now, int32_t offset) {
    const time_t shifted = static_cast<time_t>(now - offset);
    tm local{};
    localtime_r(&shifted, &local);
    const int32_t localSeconds = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
    int32_t d = localSeconds - static_cast<int32_t>(now % 86400);
    // Half a day and 31 seconds either way, so that a leap second can't flip the day.
    if (d <= -43231)
        d += 86400;
    else if (d >= 43231)
        d -= 86400;
    return d;
}

int32_t _kzTime::calcTimeZoneOffset(bool store) {
    const int32_t d = correctionRound();
    if (!store) return d;
    cachedOffset += d;
    return correctionRound();
}

int32_t _kzTime::timeZoneOffset() {
    if (cachedOffset == -1) calcTimeZoneOffset(true);
    return cachedOffset;
}
