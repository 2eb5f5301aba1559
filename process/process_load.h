// Helpers of the load measurement shared by both process tables.
#pragma once

#include <cstdint>

// Resident megabytes, rounded in two steps: to the nearest kilobyte, then megabyte.
int kzMemoryMB(uint64_t residentBytes);
// Reads the CPU seconds and resident megabytes of process `pid` (a non-zero size that rounds
// to 0 gives 1). 0, or the error of the failed read, with both values 0.
int kzMeasureLoad(uint32_t pid, double* cpuSeconds, int* memoryMB);
// Whether a failed read means a process that may not be read or has just gone, which is
// no error of the measurement.
bool kzMayNotBeRead(int error);
// The CPU share of a process between two measurements, in percent of one core: the growth
// of its CPU seconds, narrowed to a 32-bit float, times 100, over the seconds between them.
double kzCpuPercent(double secondsNow, double secondsBefore, double interval);
