#include "tool/mirror_file.h"

#include <cstdint>

#include "files/file_copy.h"
#include "files/file_probes.h"
#include "platform/platform_os.h"

namespace {

bool sameStamp(const _kzFileStamp& a, const _kzFileStamp& b) {
    return a.seconds == b.seconds && a.nanoseconds == b.nanoseconds && a.size == b.size;
}

// Whether no write from now on can give the file a time in the second of `stamp`: that
// second is over by the clock that writes are stamped from. A time more than a second ahead
// of that clock was set by hand, not by a write now, and counts as over too; otherwise such
// a file would be copied again at every pass until the clock caught up.
bool secondIsOver(const _kzFileStamp& stamp) {
    int64_t nowSeconds = 0, nowNanoseconds = 0;
    kzFileClockNow_OS(&nowSeconds, &nowNanoseconds);
    if (nowSeconds > stamp.seconds) return true;
    return stamp.seconds > nowSeconds + 1 || (stamp.seconds == nowSeconds + 1 && stamp.nanoseconds > nowNanoseconds);
}

} // namespace

void mirrorFile(const _kzString<500>& source, const _kzString<500>& destination) {
    const _kzString8_allSize<500> from = source.to_kzString8_500(), to = destination.to_kzString8_500();
    _kzFileStamp before;
    // A source that has gone or is a folder can't be copied; its mirror stays as it is.
    if (!fileStamp(from, &before)) return;
    _kzTime mirrorTime;
    int64_t mirrorSize = 0;
    // Exactly equal, no tolerance and no order: a newer mirror or a source that shrank is
    // a difference like any other.
    if (fileInfo(to, &mirrorTime, &mirrorSize) && mirrorTime.value == before.seconds && mirrorSize == before.size)
        return;
    const int32_t noPause = 0;
    if (!fileCopy(from, to, true, &noPause, nullptr)) return;
    // The clock is read before the second look: a write after that look is stamped at least
    // this late, so if the look still shows the time read before the copy, and its second is
    // over by this clock, every later write changes the time to a later second.
    const bool over = secondIsOver(before);
    _kzFileStamp after;
    if (!fileStamp(from, &after)) return; // gone meanwhile: nothing left to compare with
    if (over && sameStamp(before, after)) return;
    const _kzTime earlier(after.seconds - 1, true);
    fileSetTime(to, &earlier);
}
