#include "platform/sleep.h"

#include <unistd.h>

void kzSleepMS(int ms) {
    if (ms <= 0) return;
    if (ms < 999) {
        usleep(static_cast<useconds_t>(ms) * 1000);
        return;
    }
    while (ms > 998) {
        usleep(999000);
        ms -= 999;
    }
    usleep(static_cast<useconds_t>(ms) * 1000); // the rest, which may be 0
}
