#include "process/linux/proc_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/retry_io.h"

long kzReadProcFile(int folderFd, const char* path, char* buffer, size_t size) {
    const int fd = ::openat(folderFd, path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return -1;
    size_t total = 0;
    while (total < size - 1) {
        const ssize_t n = kzReadRetrying(fd, buffer + total, size - 1 - total);
        if (n < 0) {
            const int error = errno;
            ::close(fd);
            errno = error;
            return -1;
        }
        if (n == 0) break;
        total += static_cast<size_t>(n);
    }
    ::close(fd);
    buffer[total] = 0;
    return static_cast<long>(total);
}

bool kzParseProcStat(const char* text, long length, kzProcStat& out) {
    const char* open = static_cast<const char*>(std::memchr(text, '(', static_cast<size_t>(length)));
    const char* close = static_cast<const char*>(memrchr(text, ')', static_cast<size_t>(length)));
    if (!open || !close || close < open) return false;
    out.name = open + 1;
    out.nameLength = static_cast<size_t>(close - open - 1);
    // From the third field on: state, ppid, pgrp, session, tty, tpgid, flags, four fault
    // counters, utime, stime, cutime, cstime, priority, nice, threads, itrealvalue, starttime.
    return std::sscanf(close + 1, " %*c %u %*d %*d %*d %*d %*u %*u %*u %*u %*u %llu %llu %*d %*d %*d %*d %*d %*d %llu",
                       &out.parentPid, &out.userTicks, &out.systemTicks, &out.startTicks) == 4;
}
