// The load of one process on Linux: user and system time from /proc/PID/stat (fields 14
// and 15, in clock ticks; they already cover every thread, live and ended), and resident
// pages from /proc/PID/statm.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "process/process_os.h"

namespace {

// Reads a small file whole and terminates it; the error number on failure.
int readWhole(const char* path, char* buffer, size_t size, size_t* length) {
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno;
    ssize_t n;
    do n = ::read(fd, buffer, size - 1);
    while (n < 0 && errno == EINTR);
    const int error = n < 0 ? errno : 0;
    ::close(fd);
    if (error) return error;
    buffer[n] = 0;
    *length = static_cast<size_t>(n);
    return 0;
}

} // namespace

int kzReadProcessLoad_OS(uint32_t pid, double* cpuSeconds, uint64_t* residentBytes) {
    char path[64], text[1024];
    size_t length = 0;
    std::snprintf(path, sizeof path, "/proc/%u/stat", pid);
    if (const int error = readWhole(path, text, sizeof text, &length)) return error;
    // Behind the name's closing parenthesis (the name may hold blanks and parentheses of its
    // own) stand the fields from the third on: utime and stime are the 12th and 13th there.
    const char* p = std::strrchr(text, ')');
    if (!p) return EINVAL;
    unsigned long long utime = 0, stime = 0;
    if (std::sscanf(p + 1, " %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %llu %llu", &utime, &stime) != 2)
        return EINVAL;
    *cpuSeconds = static_cast<double>(utime + stime) / static_cast<double>(::sysconf(_SC_CLK_TCK));
    std::snprintf(path, sizeof path, "/proc/%u/statm", pid);
    if (const int error = readWhole(path, text, sizeof text, &length)) return error;
    unsigned long long size = 0, resident = 0;
    if (std::sscanf(text, "%llu %llu", &size, &resident) != 2) return EINVAL;
    *residentBytes = resident * static_cast<unsigned long long>(::sysconf(_SC_PAGESIZE));
    return 0;
}
