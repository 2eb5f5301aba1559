#include "files/locked_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include "files/file_probes.h"
#include "platform/file_kinds.h"
#include "platform/sleep.h"
#include "platform/system_error_text.h"
#include "time/kz_time.h"

namespace kzlock {

namespace {

// A symbolic link at the path (st: the link's own). Asked where stat has failed: then the
// link leads nowhere.
bool isLink(const char* path, struct stat& st) { return ::lstat(path, &st) == 0 && S_ISLNK(st.st_mode); }

// The entry at the path if it is an abandoned lock: a file (no folder) older than three hours
// by its time, or a link to nothing, which has no time (0) and so is older still.
bool abandonedEntry(const char* path, struct stat& st) {
    if (::stat(path, &st) == 0) return !kzHasFolderBit(st.st_mode) && _kzTime(true).value > st.st_mtime + kAbandonedAfterSeconds;
    return isLink(path, st);
}

} // namespace

// The link itself counts: exclusive creation fails on a link to nothing as on a file.
bool entryExists(const char* path) {
    struct stat st;
    return ::lstat(path, &st) == 0;
}

bool isLockFile(const _kzString8_allSize<500>& path) {
    struct stat st;
    return fileInfo(path, nullptr, nullptr) || isLink(path.data, st);
}

void removeAbandoned(const _kzString8_allSize<500>& path) {
    struct stat seen, now;
    if (!abandonedEntry(path.data, seen)) return;
    _kzString8_allSize<500> claim(path);
    claim += ".stale";
    FILE* claimed = std::fopen(claim.data, "wx");
    if (!claimed) {
        // Another process is removing it right now. A claim left by a process that died
        // holding it is removed once it is abandoned itself; the next time-out tries again.
        if (errno == EEXIST && abandonedEntry(claim.data, now)) ::unlink(claim.data);
        return;
    }
    std::fclose(claimed);
    // Only the file that was found abandoned, and only while it still stands there.
    if (abandonedEntry(path.data, now) && now.st_ino == seen.st_ino && now.st_mtime == seen.st_mtime) ::unlink(path.data);
    ::unlink(claim.data);
}

bool removeFile(const char* path) { return ::unlink(path) == 0; }

_kzString8_allSize<500> lockText(const _kzString<250>& owner) {
    _kzString8_allSize<500> text("\n File locked by: ");
    text += owner.to_kzString8_250().asChar();
    text += "\n Time locked: ";
    text += _kzTime(true).monthDayText().asChar();
    text += "\nInfo: This lock file should only exist a few seconds.\n\n";
    return text;
}

void writeLockText(FILE* file, const _kzString<250>& owner) {
    const _kzString8_allSize<500> text = lockText(owner);
    std::fwrite(text.data, 1, text.length, file);
    std::fflush(file);
}

void moveAside(const _kzString8_allSize<500>& path) {
    _kzString8_allSize<500> aside(path);
    aside += ".none";
    fileMove(path, aside, true);
}

void sleepOnePoll(int& polls) {
    kzSleepMS(kPollMs);
    ++polls;
}

_kzString<500> deleteFailureText() {
    _kzString<500> text("Unable to delete file, ");
    return text.add(kzSystemErrorTextWide(-1));
}

_kzString<250> errorText(int32_t lastError, bool timedOut) {
    if (timedOut) return _kzString<250>("File still locked, timeout reached.");
    return _kzString<250>(kzSystemErrorTextWide(lastError).asUni());
}

} // namespace kzlock

// The three variants, compiled once here.
template class _kzLockedFile<500, true>;
template class _kzLockedFile<250, true>;
template class _kzLockedFile<250, false>;
