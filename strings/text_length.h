// How the string family measures NUL-terminated text that comes from outside a record.
#pragma once

namespace kzstr {

// A 16-bit text is counted up to its first 0, but never beyond this many characters,
// whatever the capacity of the record it goes into.
constexpr int kWideScanLimit = 1024;

// strlen reduced to 16 bits: a text of 65,536 bytes measures 0, one of 65,540 measures 4.
int length8(const char* text);

// Count of 16-bit units before the first 0, stopping at kWideScanLimit.
int length16(const unsigned short* text);

// Either, by the width of the text's characters.
inline int textLength(const char* text) { return length8(text); }
inline int textLength(const unsigned short* text) { return length16(text); }

} // namespace kzstr
