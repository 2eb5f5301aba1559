// The seam between the process table and the operating system. One definition per
// platform, in the platform's own folder.
#pragma once

#include <cstdint>

#include "process/raw_process.h"

// Reads every process of the machine, in the kernel's order, into a block allocated with
// malloc that the caller frees. On failure returns false with errno set and *records null.
// A process that ends while the table is read is left out.
bool kzReadRawProcesses_OS(kzRawProcess** records, long* count);

// The load of one process: its CPU seconds over all its threads, live and ended, and its
// resident bytes. Returns 0, or the error number of the failure (EACCES, EPERM, ENOENT and
// ESRCH mean a process that may not be read or has just gone).
int kzReadProcessLoad_OS(uint32_t pid, double* cpuSeconds, uint64_t* residentBytes);

// Who the process of one pid is now, from that process's own entry: its short name, as the
// table would hold it, in `process` (pid, parent and name; no uid), and its start time, which
// tells it apart from a later process under the same pid. False if that can't be answered:
// the process is gone, or its entry can't be read.
bool kzReadProcessIdentity_OS(uint32_t pid, kzRawProcess* process, uint64_t* startTime);
