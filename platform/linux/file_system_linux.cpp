// Which file systems keep a modification time that was set while a file was open for
// writing, on Linux. Those on a block device of this machine do, told by the device number
// of the descriptor's file system. Network file systems, FUSE and tmpfs have anonymous device
// numbers (major 0): among them, sshfs does (it sets the time with an SFTP setstat, which the
// server's close leaves alone), found by the mount's type in /proc/self/mountinfo; the others
// get the time after the close, which holds on all of them. SMB needs that: the server stamps
// the time of the last write when the handle closes, and through smbnetfs that close may come
// after the time was set. Nothing here asks the server: fstat right after the open is served
// from the attributes the open brought, while a statfs would be a round trip on a FUSE share.
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/platform_os.h"

namespace {

// Whether the file system mounted as the anonymous device `minor` is sshfs.
bool isSshfs(unsigned minor) {
    FILE* in = std::fopen("/proc/self/mountinfo", "re");
    if (!in) return false;
    char* line = nullptr;
    size_t size = 0;
    bool found = false, sshfs = false;
    // "36 35 0:52 / /mnt rw,relatime shared:1 - fuse.sshfs daemon@host:/ rw,..."
    while (!found && ::getline(&line, &size, in) > 0) {
        unsigned major = 1, mountedMinor = 0;
        const char* type = std::strstr(line, " - ");
        found = std::sscanf(line, "%*d %*d %u:%u", &major, &mountedMinor) == 2 && major == 0 && mountedMinor == minor && type;
        sshfs = found && std::strncmp(type + 3, "fuse.sshfs ", 11) == 0;
    }
    std::free(line);
    std::fclose(in);
    return sshfs;
}

// The last answer for an anonymous device, kept for a second: a pass copies many files onto
// one share, and a share that is mounted anew in its place (another device of the same
// number) is seen within a second.
struct Answer {
    dev_t device = 0;
    time_t second = -1;
    bool keeps = false;
};
thread_local Answer last;

} // namespace

bool kzCloseKeepsFileTime_OS(int fd) {
    struct stat st;
    if (::fstat(fd, &st) != 0) return false;
    if (major(st.st_dev) != 0) return true;
    timespec now;
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    if (last.device != st.st_dev || last.second != now.tv_sec) last = {st.st_dev, now.tv_sec, isSshfs(minor(st.st_dev))};
    return last.keeps;
}

// The kernel stamps a write with its coarse clock, which lags the fine one by up to a tick:
// a write just after a second boundary can carry a time a few milliseconds before it.
void kzFileClockNow_OS(int64_t* seconds, int64_t* nanoseconds) {
    timespec now;
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    *seconds = now.tv_sec;
    *nanoseconds = now.tv_nsec;
}
