// _kzLockedFile: several processes take turns on a file. The lock is a second file beside the
// guarded one, its name with "_lock.txt" added: whoever creates it exclusively holds the lock,
// and its existence is the whole protocol (nobody reads its text). A lock file older than
// three hours counts as abandoned, and the next process that has waited out its budget on it
// removes it.
//
// One template, three variants: over the path capacity (500: backslashes in the given path
// become slashes, and deleteLockFile tells why it failed; 250: the path is kept as given),
// and over whether errors are kept. Without kept errors, lastError and timedOut stay 0 and
// false and lastErrorText is not there.
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <type_traits>

#include "files/file_probes.h"
#include "strings/kz_string.h"
#include "strings/kz_string8.h"

namespace kzlock {

constexpr int kPollMs = 250;
constexpr int64_t kAbandonedAfterSeconds = 10800;

// Whether anything (file, folder or link) stands at the path.
bool entryExists(const char* path);
// A file (fileInfo's rule: no folder) stands at the path: a lock file, for the stale rule. A
// symbolic link that leads nowhere counts as a lock file without a time: it blocks the
// exclusive creation like one, and is removed like an abandoned one.
bool isLockFile(const _kzString8_allSize<500>& path);
// Deletes the lock file at the path if it is abandoned (older than three hours), and only
// that file. Several processes may find the same abandoned file at once; by the time one
// of them deletes, another may have removed it already and a third created a fresh lock
// there, which a plain unlink would take away from its holder. So the removal runs under a
// claim of its own (the path with ".stale" added, created exclusively like the lock itself),
// and deletes only the file that was found abandoned, if it still stands there while the
// claim is held. A path with no file has nothing to delete.
void removeAbandoned(const _kzString8_allSize<500>& path);
bool removeFile(const char* path);
// The text written into a lock file: owner and local time, at most 500 bytes.
_kzString8_allSize<500> lockText(const _kzString<250>& owner);
// Writes the text in one fwrite and flushes.
void writeLockText(FILE* file, const _kzString<250>& owner);
// A lock file that can't be unlinked is moved aside to its name with ".none" added.
void moveAside(const _kzString8_allSize<500>& path);
void sleepOnePoll(int& polls);
// "Unable to delete file, " and the system's text of errno.
_kzString<500> deleteFailureText();
_kzString<250> errorText(int32_t lastError, bool timedOut);

} // namespace kzlock

template <int N, bool KeepErrors>
class _kzLockedFile {
    static_assert(N == 500 || N == 250, "lock paths are _kzString<500> or _kzString<250>");

public:
    _kzString<N> lockPath;
    FILE* file = nullptr;   // the open lock file while this object holds the lock
    int32_t lastError = 0;  // the system error of the last failed creation
    bool timedOut = false;  // the last lock gave up because the lock file was still there

    explicit _kzLockedFile(const _kzString<N>& path) : lockPath(path) {
        if (N == 500) lockPath.replace('\\', '/');
        lockPath += "_lock.txt";
    }
    ~_kzLockedFile() { unlock(); }
    _kzLockedFile(const _kzLockedFile&) = delete;
    _kzLockedFile& operator=(const _kzLockedFile&) = delete;

    // Waits in polls of 250 ms (timeoutMs / 250 of them, at least one) for the lock file to
    // be gone, then creates it. With checkOnly it only waits and creates nothing.
    bool lock(const int32_t& timeoutMs, const _kzString<250>& owner, int32_t* waitedMs, bool checkOnly) {
        const int maxPolls = timeoutMs / kzlock::kPollMs < 1 ? 1 : timeoutMs / kzlock::kPollMs;
        int polls = 0;
        setError(0, false);
        if (waitedMs) *waitedMs = 1;
        const _kzString8_allSize<250> shortPath = lockPath.to_kzString8_250();
        bool present = kzlock::entryExists(shortPath.data);
        while (present) { // the wait runs at least once
            kzlock::sleepOnePoll(polls);
            if (polls >= maxPolls) break;
            present = kzlock::entryExists(shortPath.data);
        }
        for (;;) {
            if (waitedMs) *waitedMs = polls * kzlock::kPollMs;
            if (polls >= maxPolls) {
                const _kzString8_allSize<500> longPath = lockPath.to_kzString8_500();
                kzlock::removeAbandoned(longPath);
                if (kzlock::isLockFile(longPath)) {
                    setError(lastError, true);
                    return false;
                }
            }
            if (checkOnly) return true;
            file = std::fopen(shortPath.data, "wx");
            if (file) break;
            // A folder at the lock path would make the race rule below wait forever: it fails.
            // (errno is read first: the folder test's stat sets it anew.)
            const int created = errno;
            const int error = created == EEXIST && folderExists(shortPath.data) ? EISDIR : created;
            setError(error, false);
            if (error != EEXIST) {
                if (waitedMs) *waitedMs = -*waitedMs;
                return false;
            }
            // Another process created it first: wait on within the same budget.
            while (polls < maxPolls && kzlock::entryExists(shortPath.data)) kzlock::sleepOnePoll(polls);
        }
        kzlock::writeLockText(file, owner);
        return true;
    }

    bool waitUntilFree(const int32_t& timeoutMs, int32_t* waitedMs) { return lock(timeoutMs, _kzString<250>(), waitedMs, true); }

    void unlock() {
        setError(0, timedOut);
        if (!file) return;
        std::fclose(file);
        file = nullptr;
        const _kzString8_allSize<250> shortPath = lockPath.to_kzString8_250();
        if (!kzlock::removeFile(shortPath.data)) kzlock::moveAside(lockPath.to_kzString8_500());
    }

    // Empty if the lock path is no file or the file went; else why it could not be deleted.
    _kzString<500> deleteLockFile() {
        const _kzString8_allSize<500> path = lockPath.to_kzString8_500();
        if (!kzlock::isLockFile(path) || kzlock::removeFile(path.data)) return _kzString<500>();
        return kzlock::deleteFailureText();
    }

    // "File still locked, timeout reached." after a time-out, else the system's text of lastError.
    template <bool K = KeepErrors, typename = std::enable_if_t<K>>
    _kzString<250> lastErrorText() const {
        return kzlock::errorText(lastError, timedOut);
    }

private:
    void setError(int32_t error, bool timeout) {
        if (!KeepErrors) return;
        lastError = error;
        timedOut = timeout;
    }
};

using _kzLockedFileWide = _kzLockedFile<500, true>;
using _kzLockedFileShort = _kzLockedFile<250, true>;
using _kzLockedFileShortQuiet = _kzLockedFile<250, false>;
