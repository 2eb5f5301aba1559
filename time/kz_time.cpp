#include "time/kz_time.h"

#include <ctime>

_kzTime::_kzTime(bool now) : value(now ? static_cast<int64_t>(::time(nullptr)) : 0) {}

void _kzTime::setNowPlus(int64_t seconds) { value = static_cast<int64_t>(::time(nullptr)) + seconds; }

_kzTime& _kzTime::setNow() {
    setNowPlus(0);
    return *this;
}
