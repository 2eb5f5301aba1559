#pragma once

// Sleeps `ms` milliseconds; nothing for 0 or less. No single usleep call gets a
// second or more: the sleep goes in slices of at most 999 ms.
void kzSleepMS(int ms);
