// Numbers in string text, for every string template: decimal text appended plain,
// zero-padded or in a blank field, decimal parsing with a validity test, hexadecimal text.
// The texts come from the C runtime's printf formats and its parsers.
#pragma once

#include "strings/string_core.h"
#include "strings/string_edit.h"

namespace kzstr {

// Decimal text of v into buf (at least 24 bytes); returns its length.
int formatInt(char* buf, long long v);
int formatUnsigned(char* buf, unsigned long long v);

// Hexadecimal text with upper-case digits, zero-filled to the width; buf needs at least 24
// bytes. A signed value comes in sign-extended: -1 as a byte or short prints "FFFFFFFF".
enum class HexWidth { Byte, Short, Int, LongLong }; // "%02X", "%04X", "%08X", "%016llX"
int formatHex(char* buf, unsigned long long v, HexWidth width);

// Hexadecimal text read with strtoll, and read with sscanf("%X") into 32 bits; the latter
// is false when nothing could be read.
long long parseHex64(const char* text);
bool parseHex32(const char* text, unsigned int* value);

// The low `bits` of a value, sign-extended, for fields of 32, 16 or 8 bits; false for any
// other width.
bool signExtendField(unsigned int value, int bits, long long* result);

template <typename C>
int appendText(C* data, int length, int capacity, const char* text, int n) {
    return append(data, length, capacity, text, n, FromByte<C>());
}

template <typename C>
int appendNumber(C* data, int length, int capacity, long long v) {
    char text[24];
    return appendText(data, length, capacity, text, formatInt(text, v));
}

template <typename C>
int appendUnsigned(C* data, int length, int capacity, unsigned long long v) {
    char text[24];
    return appendText(data, length, capacity, text, formatUnsigned(text, v));
}

// Appends width - n zeros, each only while there is room, then the number's text. The
// zeros stand in front of a minus sign: -5 in a width of 4 is "00-5".
template <typename C>
int appendNumberZeroPadded(C* data, int length, int capacity, long long v, int width) {
    char text[24];
    const int n = formatInt(text, v);
    for (int i = n; i < width; ++i) length = appendChar(data, length, capacity, C('0'));
    return appendText(data, length, capacity, text, n);
}

// The number's text in a field of abs(width) blanks: behind it for a positive width, in
// front of it for a negative one.
template <typename C>
int appendNumberInField(C* data, int length, int capacity, long long v, int width) {
    char text[24];
    return appendInField(data, length, capacity, text, formatInt(text, v), width, FromByte<C>());
}

// Valid decimal text: digits, and a minus sign as the first character. Empty text is valid.
template <typename C>
bool isDecimalText(const C* data, int length) {
    for (int i = 0; i < length; ++i) {
        const int v = charValue(data[i]);
        if ((v < '0' || v > '9') && !(i == 0 && v == '-')) return false;
    }
    return true;
}

} // namespace kzstr
