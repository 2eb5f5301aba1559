#include "files/file_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include <cerrno>
#include <cstdlib>

#include "platform/file_kinds.h"
#include "platform/platform_os.h"
#include "platform/retry_io.h"
#include "platform/sleep.h"

namespace {

constexpr long kLargeChunk = kzFileCopyChunk;
constexpr long kPage = 4096;

// A regular file below one large chunk goes in one chunk with room to spare, so that the
// one read comes back short and no second read is needed to find the end.
long chunkSizeFor(const struct stat& st) {
    if (!S_ISREG(st.st_mode) || st.st_size >= kLargeChunk) return kLargeChunk;
    const long rounded = (static_cast<long>(st.st_size) + kPage) / kPage * kPage;
    return rounded < kPage ? kPage : rounded;
}

long leastCommonMultiple(long a, long b) {
    long x = a, y = b;
    while (y != 0) {
        const long r = x % y;
        x = y;
        y = r;
    }
    return a / x * b;
}

// Copies chunk by chunk; false on a failed read or write (errno tells why).
bool transfer(int from, int to, bool regular, long chunk, unsigned char* buffer, const int32_t* throttleMs,
              bool* tailIsZero) {
    for (;;) {
        const ssize_t got = kzReadRetrying(from, buffer, static_cast<size_t>(chunk));
        if (got < 0) return false;
        if (got == 0) return true;
        if (tailIsZero) *tailIsZero = kzTailLooksZero(buffer, got);
        const ssize_t written = kzWriteRetrying(to, buffer, static_cast<size_t>(got));
        if (written != got) {
            if (written >= 0) errno = EIO; // a short write has no reason of its own
            return false;
        }
        if (regular && got < chunk) return true; // the end, with no pause
        if (*throttleMs >= 1) kzSleepMS(*throttleMs);
    }
}

} // namespace

bool kzTailLooksZero(const unsigned char* chunk, long length) {
    static const long kLong[] = {1, 50, 200, 201, 202, 500, 501};
    static const long kMiddle[] = {1, 50, 300};
    static const long kShort[] = {1, 7, 10};
    static const long kTiny[] = {1};
    const long* positions = kTiny;
    int n = 1;
    if (length >= 501) {
        positions = kLong;
        n = 7;
    } else if (length >= 301) {
        positions = kMiddle;
        n = 3;
    } else if (length >= 11) {
        positions = kShort;
        n = 3;
    } else if (length < 1) {
        return false;
    }
    for (int i = 0; i < n; ++i)
        if (chunk[length - positions[i]] != 0) return false;
    return true;
}

bool fileCopy(const _kzString8_allSize<500>& src, const _kzString8_allSize<500>& dst, const bool& overwrite,
              const int32_t* throttleMs, bool* tailIsZero) {
    struct stat st;
    const bool replacing = ::stat(dst.data, &st) == 0 && !kzIsFolderKind(st.st_mode);
    if (replacing && !overwrite) return true;
    if (::stat(src.data, &st) != 0 || kzIsFolderKind(st.st_mode)) return false;

    // The source is opened before an old destination goes: a mirror outlives a source that
    // has gone or can't be read.
    const int from = ::open(src.data, O_RDONLY | O_CLOEXEC);
    if (from < 0) return false;
    const auto fail = [from]() {
        const int error = errno;
        ::close(from);
        errno = error;
        return false;
    };
    if (::fstat(from, &st) != 0) return fail();
    if (replacing && ::unlink(dst.data) != 0) return fail();
    const int to = ::open(dst.data, O_WRONLY | O_CREAT | O_CLOEXEC, (st.st_mode | 0664) & 07777);
    if (to < 0) return fail();

    const utimbuf times{st.st_atime, st.st_mtime};
    // The source's time is what makes the next comparison find the copy up to date. It is set
    // once: before the close where the close keeps it (a local disk, sshfs), so that on a
    // share its answer comes back together with those of the last writes; after the close
    // elsewhere, since an SMB share stamps the time of the last write on the file when its
    // handle closes (and that close may land after close() has returned).
    const bool timeBeforeClose = kzCloseKeepsFileTime_OS(to);
    const long chunk = chunkSizeFor(st);
    const long alignment = leastCommonMultiple(8, ::sysconf(_SC_PAGESIZE));
    void* block = std::malloc(static_cast<size_t>(chunk + alignment + 7));
    bool ok = block != nullptr;
    if (!ok) errno = ENOMEM;
    if (ok) {
        const uintptr_t at = reinterpret_cast<uintptr_t>(block);
        unsigned char* buffer =
            reinterpret_cast<unsigned char*>((at + alignment - 1) / alignment * alignment);
        ok = transfer(from, to, S_ISREG(st.st_mode), chunk, buffer, throttleMs, tailIsZero);
        if (ok && timeBeforeClose) ok = ::utime(dst.data, &times) == 0;
    }
    int error = ok ? 0 : errno;
    if (::close(to) != 0 && ok) {
        ok = false;
        error = errno;
    }
    if (::close(from) != 0 && ok) {
        ok = false;
        error = errno;
    }
    std::free(block);
    if (ok && !timeBeforeClose && ::utime(dst.data, &times) != 0) {
        ok = false;
        error = errno;
    }
    if (!ok) errno = error;
    return ok;
}
