// Searching and comparing string text, for every string template.
//
// `fold` selects the case treatment: true compares after folding both sides to upper case
// (the unmarked names: indexOf, contains, isEqual, ...), false compares exactly (the names
// with CaseSen or SameCase). Characters enter comparisons by charValue: bytes signed,
// 16-bit codes unsigned.
#pragma once

#include <cstring>

#include "strings/string_core.h"

namespace kzstr {

template <typename C>
inline int compareValue(C c, bool fold) {
    return fold ? foldUpper(charValue(c)) : charValue(c);
}

template <typename C>
bool equalRange(const C* a, const C* b, int n, bool fold) {
    if (!fold) return n <= 0 || std::memcmp(a, b, static_cast<size_t>(n) * sizeof(C)) == 0;
    for (int i = 0; i < n; ++i)
        if (foldUpper(charValue(a[i])) != foldUpper(charValue(b[i]))) return false;
    return true;
}

// ---------------------------------------------------------------------------------------
// Single characters

// Character searches never fail for their start: one below 1 or at/behind the end means 0.
inline int charSearchStart(int start, int length) { return (start < 1 || start >= length) ? 0 : start; }

// First place at or after `start` whose value (folded or exact) equals `key`.
template <typename C>
int indexOfChar(const C* data, int length, int key, int start, bool fold) {
    if (length <= 0) return -1;
    for (int i = charSearchStart(start, length); i < length; ++i)
        if (compareValue(data[i], fold) == key) return i;
    return -1;
}

// First place at or after `start` whose low byte equals the low byte of `code`.
template <typename C>
int indexOfLowByte(const C* data, int length, unsigned short code, int start) {
    if (length <= 0) return -1;
    for (int i = charSearchStart(start, length); i < length; ++i)
        if ((static_cast<unsigned>(charValue(data[i])) & 0xFF) == (code & 0xFFu)) return i;
    return -1;
}

// Walks downward, exact: from `start` when it lies inside the text (taken as unsigned, so
// a negative start means the whole string), else from the last character.
template <typename C>
int lastIndexOfChar(const C* data, int length, int value, int start) {
    if (length <= 0) return -1;
    const int from = static_cast<unsigned>(start) < static_cast<unsigned>(length) ? start : length - 1;
    for (int i = from; i >= 0; --i)
        if (charValue(data[i]) == value) return i;
    return -1;
}

template <typename C>
int countChar(const C* data, int length, int key, bool fold) {
    int n = 0;
    for (int i = 0; i < length; ++i)
        if (compareValue(data[i], fold) == key) ++n;
    return n;
}

// ---------------------------------------------------------------------------------------
// Patterns

// First occurrence of the whole pattern at or after `start`. A rolling sum of the window's
// character values filters the candidates; only where it equals the pattern's sum is the
// window compared in full. No restart at 0: a start too far right finds nothing.
template <typename C>
int indexOfPattern(const C* text, int length, const C* pattern, int patternLength, int start, bool fold) {
    if (patternLength <= 0) return -1;
    if (start < 0) start = 0;
    if (start + patternLength > length) return -1;
    if (patternLength == length) return equalRange(text, pattern, length, fold) ? 0 : -1;

    int patternSum = 0;
    int windowSum = 0;
    for (int i = 0; i < patternLength; ++i) {
        patternSum += compareValue(pattern[i], fold);
        windowSum += compareValue(text[start + i], fold);
    }
    const int last = length - patternLength;
    for (int p = start;; ++p) {
        if (windowSum == patternSum && equalRange(text + p, pattern, patternLength, fold)) return p;
        if (p == last) return -1;
        windowSum += compareValue(text[p + patternLength], fold) - compareValue(text[p], fold);
    }
}

// The place of the last-listed pattern that is found, or 0 as soon as a pattern is found at
// 0; -1 if none is found. `which` (may be null) receives the pattern's number or -1.
template <typename C>
int indexOfFirstOcc(const C* text, int length, const C* const* patterns, const int* patternLengths, int n,
                    int* which) {
    if (which) *which = -1;
    int result = -1;
    for (int k = 0; k < n; ++k) {
        const int p = indexOfPattern(text, length, patterns[k], patternLengths[k], 0, true);
        if (p < 0) continue;
        if (which) *which = k;
        if (p == 0) return 0;
        result = p;
    }
    return result;
}

// The text starts with the pattern; false for an empty string or pattern, or a pattern
// longer than the string.
template <typename C>
bool startsWithPattern(const C* text, int length, const C* pattern, int patternLength, bool fold) {
    if (length <= 0 || patternLength <= 0 || patternLength > length) return false;
    return equalRange(text, pattern, patternLength, fold);
}

template <typename C>
bool endsWithPattern(const C* text, int length, const C* pattern, int patternLength, bool fold) {
    if (length <= 0 || patternLength <= 0 || patternLength > length) return false;
    return equalRange(text + length - patternLength, pattern, patternLength, fold);
}

// ---------------------------------------------------------------------------------------
// Ordering. Results follow memcmp on the characters as stored, so 16-bit characters order
// by their low byte first; only the sign of a non-zero result has meaning.

template <typename C>
int storageOrder(C a, C b) {
    return std::memcmp(&a, &b, sizeof(C));
}

// Folds the common prefix of both and orders it; with equal prefixes the shorter is less.
template <typename C>
int compareFolded(const C* a, int aLength, const C* b, int bLength) {
    const int n = minInt(aLength, bLength);
    for (int i = 0; i < n; ++i) {
        const int order = storageOrder(upperChar(a[i]), upperChar(b[i]));
        if (order != 0) return order;
    }
    if (aLength == bLength) return 0;
    return aLength < bLength ? -1 : 1;
}

// memcmp over the common prefix only: a prefix of the other compares as equal.
template <typename C>
int comparePrefix(const C* a, int aLength, const C* b, int bLength) {
    const int n = minInt(aLength, bLength);
    return n <= 0 ? 0 : std::memcmp(a, b, static_cast<size_t>(n) * sizeof(C));
}

template <typename C>
bool lessThan(const C* a, int aLength, const C* b, int bLength) {
    const int order = comparePrefix(a, aLength, b, bLength);
    return order < 0 || (order == 0 && aLength < bLength);
}

// First characters, then lengths, then the whole text.
template <typename C>
bool sameText(const C* a, int aLength, const C* b, int bLength) {
    if (a[0] != b[0] || aLength != bLength) return false;
    return comparePrefix(a, aLength, b, bLength) == 0;
}

} // namespace kzstr
