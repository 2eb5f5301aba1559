// Copying one file with plain read and write calls.
#pragma once

#include <cstdint>

#include "strings/kz_string8.h"

// The chunk of a large copy, and so the unit of its pauses: 512 KiB.
constexpr int32_t kzFileCopyChunk = 0x80000;

// Copies `src` to `dst` and gives `dst` the source's access and modification times in whole
// seconds, before it is closed. An existing `dst` file is left as it is (and the answer is
// true) without `overwrite`; with it, it is removed first. After each chunk the copy pauses
// *throttleMs milliseconds (read anew each time; 0 or less: no pause). `tailIsZero`, if
// given, tells whether the end of the last chunk looked like unwritten zero fill.
//
// A small file goes in one chunk; a large one, a pipe or a device in chunks of 512 KiB.
// On failure the answer is false and errno holds the reason. A source that is missing or
// can't be opened leaves an old `dst` as it was; a partly written `dst` stays, without the
// source's time, so that the next comparison of time and size sees it differ.
// Nothing taken by the call outlives it.
bool fileCopy(const _kzString8_allSize<500>& src, const _kzString8_allSize<500>& dst, const bool& overwrite,
              const int32_t* throttleMs, bool* tailIsZero);

// Whether a chunk's end looks like zero fill: a few bytes counted from the end, more of them
// for longer chunks, must all be 0.
bool kzTailLooksZero(const unsigned char* chunk, long length);
