// The process table on Linux, read from /proc.
//
// For each process: pid, parent pid and command name from /proc/PID/stat, the effective
// uid from the "Uid:" line of /proc/PID/status. The kernel keeps 15 characters of a
// command name; the table wants up to 16, so a name of exactly 15 characters is completed
// from the base name of argv[0] when that base name starts with it.
#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "process/linux/proc_files.h"
#include "process/process_os.h"

namespace {

constexpr size_t kKernelNameLength = 15;
constexpr size_t kShortNameLength = 16;

// A /proc entry that names a process is all digits.
bool parsePid(const char* name, uint32_t* pid) {
    if (name[0] < '0' || name[0] > '9') return false;
    unsigned long value = 0;
    for (const char* p = name; *p; ++p) {
        if (*p < '0' || *p > '9') return false;
        value = value * 10 + static_cast<unsigned long>(*p - '0');
        if (value > 0xFFFFFFFFul) return false;
    }
    *pid = static_cast<uint32_t>(value);
    return true;
}

// Pid, parent and name (cut to 16 characters) from the process's stat line; its start time
// where asked for.
bool readStat(int folderFd, const char* pidText, uint32_t pid, kzRawProcess& out, unsigned long long* startTicks) {
    char path[48];
    char buffer[1024];
    std::snprintf(path, sizeof path, "%s/stat", pidText);
    const long length = kzReadProcFile(folderFd, path, buffer, sizeof buffer);
    kzProcStat stat;
    if (length <= 0 || !kzParseProcStat(buffer, length, stat)) return false;
    const size_t nameLength = stat.nameLength > kShortNameLength ? kShortNameLength : stat.nameLength;
    std::memcpy(out.name, stat.name, nameLength);
    out.name[nameLength] = 0;
    out.pid = pid;
    out.parentPid = stat.parentPid;
    if (startTicks) *startTicks = stat.startTicks;
    return true;
}

// "Uid:\tREAL\tEFFECTIVE\tSAVED\tFS": the second number.
bool parseEffectiveUid(const char* text, uint32_t* uid) {
    const char* line = std::strstr(text, "\nUid:");
    if (!line) return false;
    char* end = nullptr;
    std::strtoul(line + 5, &end, 10);
    const char* effective = end;
    const unsigned long value = std::strtoul(effective, &end, 10);
    if (end == effective) return false;
    *uid = static_cast<uint32_t>(value);
    return true;
}

// A kernel name of exactly 15 characters may be a longer name cut short: take the 16th
// character from argv[0] when its base name begins with the kernel's name.
void completeShortName(int folderFd, const char* pidText, kzRawProcess& out) {
    if (std::strlen(out.name) != kKernelNameLength) return;
    char path[48];
    std::snprintf(path, sizeof path, "%s/cmdline", pidText);
    char buffer[4096];
    const long n = kzReadProcFile(folderFd, path, buffer, sizeof buffer);
    if (n <= 0) return; // kernel threads and zombies have no command line
    if (!std::memchr(buffer, 0, static_cast<size_t>(n))) return; // argv[0] longer than we read
    const char* slash = std::strrchr(buffer, '/');
    const char* base = slash ? slash + 1 : buffer;
    if (std::strlen(base) <= kKernelNameLength) return;
    if (std::strncmp(base, out.name, kKernelNameLength) != 0) return;
    out.name[kKernelNameLength] = base[kKernelNameLength];
    out.name[kShortNameLength] = 0;
}

// False if the process has gone while it was being read.
bool readProcess(int procFd, const char* pidText, uint32_t pid, kzRawProcess& out) {
    if (!readStat(procFd, pidText, pid, out, nullptr)) return false;
    char path[48];
    char buffer[1024];
    std::snprintf(path, sizeof path, "%s/status", pidText);
    if (kzReadProcFile(procFd, path, buffer, sizeof buffer) <= 0) return false;
    if (!parseEffectiveUid(buffer, &out.uid)) return false;
    completeShortName(procFd, pidText, out);
    return true;
}

} // namespace

bool kzReadRawProcesses_OS(kzRawProcess** records, long* count) {
    *records = nullptr;
    *count = 0;
    DIR* proc = opendir("/proc");
    if (!proc) return false;
    const int procFd = dirfd(proc);

    kzRawProcess* table = nullptr;
    long capacity = 0;
    long n = 0;
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(proc);
        if (!entry) break;
        uint32_t pid = 0;
        if (!parsePid(entry->d_name, &pid)) continue;
        if (n == capacity) {
            const long grown = capacity ? capacity * 2 : 512;
            void* block = std::realloc(table, static_cast<size_t>(grown) * sizeof(kzRawProcess));
            if (!block) {
                std::free(table);
                closedir(proc);
                errno = ENOMEM;
                return false;
            }
            table = static_cast<kzRawProcess*>(block);
            capacity = grown;
        }
        if (readProcess(procFd, entry->d_name, pid, table[n])) ++n;
    }
    const int readError = errno;
    closedir(proc);
    if (readError != 0) {
        std::free(table);
        errno = readError;
        return false;
    }
    *records = table;
    *count = n;
    return true;
}

bool kzReadProcessIdentity_OS(uint32_t pid, kzRawProcess* process, uint64_t* startTime) {
    char folder[24];
    std::snprintf(folder, sizeof folder, "/proc/%u", pid);
    unsigned long long startTicks = 0;
    if (!readStat(AT_FDCWD, folder, pid, *process, &startTicks)) return false;
    process->uid = 0; // not read: the question is who the process is, not whose
    completeShortName(AT_FDCWD, folder, *process);
    *startTime = startTicks;
    return true;
}
