#include "time/kz_time_ms.h"

#include <sys/time.h>

_kzTimeMS::_kzTimeMS() : value(now()) {}

int64_t _kzTimeMS::now() {
    timeval tv;
    gettimeofday(&tv, nullptr);
    return static_cast<int64_t>(tv.tv_sec) * 1000 + tv.tv_usec / 1000;
}

void _kzTimeMS::setNow() { value = now(); }

int32_t _kzTimeMS::span(int64_t from, int64_t to) {
    return static_cast<int32_t>(static_cast<uint64_t>(to - from) & 0x7fffffff);
}

int32_t _kzTimeMS::elapsed() const { return span(value, now()); }

int32_t _kzTimeMS::restart() {
    const int64_t present = now();
    const int32_t ms = span(value, present);
    value = present;
    return ms;
}

_kzString8_allSize<50> _kzTimeMS::spanText(int32_t ms) {
    _kzString8_allSize<50> text;
    if (ms >= 1001) text.addNr(ms / 1000);
    text += '.';
    text.addNr((ms % 1000) / 10, static_cast<unsigned char>(2));
    text += "s.ms";
    return text;
}

_kzString8_allSize<50> _kzTimeMS::elapsedText() const { return spanText(elapsed()); }

_kzString8_allSize<50> _kzTimeMS::restartText() { return spanText(restart()); }
