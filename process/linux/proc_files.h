// The small text files of /proc that the process tables read, and the one line of
// /proc/PID/stat that most of what they need comes from.
#pragma once

#include <cstddef>
#include <cstdint>

// Reads a small file whole (at most size - 1 bytes), relative to an open folder (AT_FDCWD
// for an absolute path), and terminates it. The byte count, or -1 with errno set.
long kzReadProcFile(int folderFd, const char* path, char* buffer, size_t size);

// What /proc/PID/stat says: "PID (NAME) STATE PPID ... UTIME STIME ... STARTTIME ...".
struct kzProcStat {
    const char* name; // inside the text, not terminated
    size_t nameLength;
    uint32_t parentPid;
    unsigned long long userTicks, systemTicks; // CPU time, in clock ticks
    unsigned long long startTicks;             // when the process started, in ticks since boot
};
// The name stands between the first "(" and the last ")", since a name may itself hold
// blanks and parentheses. False if the text is not such a line.
bool kzParseProcStat(const char* text, long length, kzProcStat& out);
