// Small questions to the file system and small changes to it: does a file exist, how old
// and how large is it, is a path a folder; delete, move, set a time, create a folder with
// its parents. Each answers with a boolean and leaves the reason of a failure in errno.
// A path is a folder when stat shows the folder bit (0x4000), a file when stat reaches it
// otherwise; stat follows symbolic links. A 16-bit path is narrowed to 8 bits first and
// keeps at most one character less than the 8-bit record's capacity.
#pragma once

#include <cstdint>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"
#include "time/kz_time.h"

// True if the path exists and is no folder; then its modification time (whole seconds)
// and size go to `time` and `size` where given, otherwise both get 0.
bool fileInfo(const _kzString<500>& path, _kzTime* time, int64_t* size);
bool fileInfo(const _kzString8_allSize<500>& path, _kzTime* time, int64_t* size);
bool fileInfo(const _kzString8_allSize<250>& path, _kzTime* time, int64_t* size);

bool fileExists(const _kzString<500>& path);

// A file's modification time to the nanosecond, and its size: what tells two looks at a
// file apart even when both fall in the same second.
struct _kzFileStamp {
    int64_t seconds = 0;
    int64_t nanoseconds = 0;
    int64_t size = 0;
};
// True if the path exists and is no folder; then `stamp` holds its time and size,
// otherwise all zero.
bool fileStamp(const _kzString8_allSize<500>& path, _kzFileStamp* stamp);

// True if the file is gone afterwards, also when there was none.
bool fileDelete(const _kzString8_allSize<500>& path);

// Sets access and modification time to `time`, or to the present time if it is null.
bool fileSetTime(const _kzString8_allSize<500>& path, const _kzTime* time);

// Renames `source` to `destination`. An existing destination file stays, and the answer is
// true, when `overwrite` is false; with `overwrite` it is removed first.
bool fileMove(const _kzString8_allSize<500>& source, const _kzString8_allSize<500>& destination,
              const bool& overwrite);

// True if the path exists and is a folder. Paths below 3 characters are no folders (no
// system call). A trailing "/" is taken away first: in the 8-bit forms by a NUL written
// over it in the caller's record (its length stays), in the 16-bit form by shortening the
// caller's string, in the char form in a private copy.
bool folderExists(_kzString8_allSize<500>& path);
bool folderExists(_kzString8_allSize<250>& path);
bool folderExists(_kzString<500>& path);
bool folderExists(const char* path);

// True if the folder exists afterwards. With `withParents` missing parents are made first;
// a root that can't be climbed further gives false.
bool folderCreate(const _kzString8_allSize<500>& path, const bool& withParents);
