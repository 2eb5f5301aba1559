// The load of one process on Linux: user and system time from /proc/PID/stat (in clock
// ticks; they already cover every thread, live and ended), and resident pages from
// /proc/PID/statm.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "process/linux/proc_files.h"
#include "process/process_os.h"

int kzReadProcessLoad_OS(uint32_t pid, double* cpuSeconds, uint64_t* residentBytes) {
    char path[64], text[1024];
    std::snprintf(path, sizeof path, "/proc/%u/stat", pid);
    long length = kzReadProcFile(AT_FDCWD, path, text, sizeof text);
    if (length < 0) return errno;
    kzProcStat stat;
    if (!kzParseProcStat(text, length, stat)) return EINVAL;
    *cpuSeconds = static_cast<double>(stat.userTicks + stat.systemTicks) / static_cast<double>(::sysconf(_SC_CLK_TCK));
    std::snprintf(path, sizeof path, "/proc/%u/statm", pid);
    length = kzReadProcFile(AT_FDCWD, path, text, sizeof text);
    if (length < 0) return errno;
    unsigned long long size = 0, resident = 0;
    if (std::sscanf(text, "%llu %llu", &size, &resident) != 2) return EINVAL;
    *residentBytes = resident * static_cast<unsigned long long>(::sysconf(_SC_PAGESIZE));
    return 0;
}
