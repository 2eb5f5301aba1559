// The algorithms behind every fixed-capacity string template.
//
// Each string template is a thin record (length, text, terminator) that forwards to the
// functions here, passing its character array, its present length and its capacity. The
// functions return the new length instead of taking the length by reference, because the
// 8-bit records are packed and a packed field cannot be bound to a reference.
//
// Characters are either `char` (8-bit, signed when compared or summed) or `unsigned short`
// (16-bit, unsigned). Case folding is ASCII only, exactly as toupper/tolower behave in the
// "C" locale, which this system never leaves.
#pragma once

#include <cstdint>
#include <cstring>

#include "strings/text_length.h"

namespace kzstr {

// ---------------------------------------------------------------------------------------
// Characters

// The value of a character in comparisons and sums: bytes are signed, 16-bit codes unsigned.
inline int charValue(char c) { return static_cast<signed char>(c); }
inline int charValue(unsigned short c) { return c; }

inline int foldUpper(int c) { return (c >= 'a' && c <= 'z') ? c - ('a' - 'A') : c; }
inline int foldLower(int c) { return (c >= 'A' && c <= 'Z') ? c + ('a' - 'A') : c; }

template <typename C>
inline C upperChar(C c) {
    return static_cast<C>(foldUpper(charValue(c)));
}

// The two ways a byte becomes a 16-bit character; they differ for 0x80..0xFF.
struct SignExtend {
    unsigned short operator()(char c) const {
        return static_cast<unsigned short>(static_cast<signed char>(c));
    }
};
struct ZeroExtend {
    unsigned short operator()(char c) const { return static_cast<unsigned char>(c); }
};
// A 16-bit character in an 8-bit place keeps its low byte.
struct Narrow {
    char operator()(unsigned short c) const { return static_cast<char>(c & 0xFF); }
};
// A byte into a place of type C, as a plain conversion does it: taken as it is into a
// char, sign-extended into a 16-bit character.
template <typename C>
struct FromByte {
    C operator()(char c) const { return static_cast<C>(c); }
};

// Same width: the character is taken as it is.
struct Keep {
    template <typename C>
    C operator()(C c) const {
        return c;
    }
};

// ---------------------------------------------------------------------------------------
// Whole assignment and appending. `capacity` is N: data has N+1 places.

inline int minInt(int a, int b) { return a < b ? a : b; }

// Stores the first min(count, capacity) characters of src, then the terminator.
template <typename D, typename S, typename Conv>
int assign(D* data, int capacity, const S* src, int count, Conv conv) {
    const int n = minInt(count < 0 ? 0 : count, capacity);
    for (int i = 0; i < n; ++i) data[i] = conv(src[i]);
    data[n] = 0;
    return n;
}

template <typename C>
int assign(C* data, int capacity, const C* src, int count) {
    const int n = minInt(count < 0 ? 0 : count, capacity);
    if (n > 0) std::memmove(data, src, static_cast<size_t>(n) * sizeof(C));
    data[n] = 0;
    return n;
}

// Appends the first min(count, capacity - length) characters of src, then the terminator.
template <typename D, typename S, typename Conv>
int append(D* data, int length, int capacity, const S* src, long long count, Conv conv) {
    long long room = capacity - length;
    if (count < room) room = count;
    const int n = room < 0 ? 0 : static_cast<int>(room);
    for (int i = 0; i < n; ++i) data[length + i] = conv(src[i]);
    data[length + n] = 0;
    return length + n;
}

template <typename C>
int append(C* data, int length, int capacity, const C* src, long long count) {
    long long room = capacity - length;
    if (count < room) room = count;
    const int n = room < 0 ? 0 : static_cast<int>(room);
    if (n > 0) std::memmove(data + length, src, static_cast<size_t>(n) * sizeof(C));
    data[length + n] = 0;
    return length + n;
}

// One character: a full string stays exactly as it is, terminator included.
template <typename C>
int appendChar(C* data, int length, int capacity, C c) {
    if (length >= capacity) return length;
    data[length] = c;
    data[length + 1] = 0;
    return length + 1;
}

// ---------------------------------------------------------------------------------------
// Length handling

// n below 1 gives 0, above the capacity the capacity; the terminator goes to data[n].
template <typename C>
int setLength(C* data, int capacity, int n) {
    if (n < 1) n = 0;
    if (n > capacity) n = capacity;
    data[n] = 0;
    return n;
}

// Length from the first 0 among the first `capacity` places, or the capacity if none.
template <typename C>
int calcLength(C* data, int capacity) {
    int n = 0;
    while (n < capacity && data[n] != 0) ++n;
    data[n] = 0;
    return n;
}

// Zeroes the places behind the text, terminator included.
template <typename C>
void clearUnused(C* data, int length, int capacity) {
    std::memset(data + length, 0, static_cast<size_t>(capacity + 1 - length) * sizeof(C));
}

// ---------------------------------------------------------------------------------------
// Comparison and in-place changes needed by every consumer

// Equal lengths and equal characters after folding both sides to upper case.
template <typename C>
bool isEqualFolded(const C* a, int aLength, const C* b, int bLength) {
    if (aLength != bLength) return false;
    for (int i = 0; i < aLength; ++i)
        if (foldUpper(charValue(a[i])) != foldUpper(charValue(b[i]))) return false;
    return true;
}

// Every place whose folded character equals the folded `from` receives `to` as given.
template <typename C>
void replaceChar(C* data, int length, C from, C to) {
    const int key = foldUpper(charValue(from));
    for (int i = 0; i < length; ++i)
        if (foldUpper(charValue(data[i])) == key) data[i] = to;
}

template <typename C>
void makeUpper(C* data, int length) {
    for (int i = 0; i < length; ++i) data[i] = upperChar(data[i]);
}

template <typename C>
void makeLower(C* data, int length) {
    for (int i = 0; i < length; ++i) data[i] = static_cast<C>(foldLower(charValue(data[i])));
}

} // namespace kzstr
