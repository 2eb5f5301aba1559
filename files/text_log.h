// One line of text added to a text file in a single call: open, write, close. Nothing stays
// open between two lines.
#pragma once

#include "strings/kz_string8.h"

// Writes `length` bytes of `text` and a line feed (behind the local time and ": " with
// `withTime`), truncating the file first with `overwrite`, else appending; the line is cut
// at 5000 characters, the line feed first. False only if the file can't be opened (errno
// tells why); a missing folder is not made.
bool kzWriteTextLine(const char* path, const char* text, int length, bool overwrite, bool withTime);

template <int N>
bool writeTextLine(const _kzString8_allSize<N>& path, const _kzString8_allSize<N>& text, bool overwrite,
                   bool withTime) {
    return kzWriteTextLine(path.data, text.data, text.length, overwrite, withTime);
}

// The system's folder for temporary files, with its trailing slash: "/tmp/".
_kzString8_allSize<250> tempFolder();
