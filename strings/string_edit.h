// Editing string text in place, for every string template. Every function keeps the
// record's limit: the result never exceeds `capacity` characters, and a result that
// would be longer is cut at its end without a message. Each returns the new length.
#pragma once

#include <cstring>

#include "strings/string_core.h"
#include "strings/string_search.h"

namespace kzstr {

// Puts `insert` (which must not lie inside `data`) at `pos` in place of `removeCount`
// characters. What follows is cut first when room runs out, then the inserted text.
template <typename C>
int splice(C* data, int length, int capacity, int pos, int removeCount, const C* insert, int insertCount) {
    const int keepInsert = minInt(insertCount, capacity - pos);
    const int tailStart = pos + removeCount;
    const int keepTail = minInt(length - tailStart, capacity - pos - keepInsert);
    if (keepTail > 0)
        std::memmove(data + pos + keepInsert, data + tailStart, static_cast<size_t>(keepTail) * sizeof(C));
    if (keepInsert > 0) std::memcpy(data + pos, insert, static_cast<size_t>(keepInsert) * sizeof(C));
    const int newLength = pos + keepInsert + (keepTail > 0 ? keepTail : 0);
    data[newLength] = 0;
    return newLength;
}

// Replaces every occurrence of `from` by `to`. The search goes on behind the inserted
// text, so what was put in is never searched again, and `from` equal to `to` ends after
// one pass. Neither pattern may lie inside `data`.
template <typename C>
int replaceAll(C* data, int length, int capacity, const C* from, int fromLength, const C* to, int toLength,
               bool fold) {
    int p = indexOfPattern(data, length, from, fromLength, 0, fold);
    while (p >= 0) {
        length = splice(data, length, capacity, p, fromLength, to, toLength);
        p = indexOfPattern(data, length, from, fromLength, p + toLength, fold);
    }
    return length;
}

// Removes every occurrence; the search goes on from the place of the removal, so an
// occurrence formed across the joint, which begins before it, stays.
template <typename C>
int removeAll(C* data, int length, const C* pattern, int patternLength, bool fold) {
    int p = indexOfPattern(data, length, pattern, patternLength, 0, fold);
    while (p >= 0) {
        length = splice(data, length, length, p, patternLength, data, 0);
        p = indexOfPattern(data, length, pattern, patternLength, p, fold);
    }
    return length;
}

// Removes every character whose folded value equals `key`.
template <typename C>
int removeChar(C* data, int length, int key) {
    int kept = 0;
    for (int i = 0; i < length; ++i)
        if (foldUpper(charValue(data[i])) != key) data[kept++] = data[i];
    data[kept] = 0;
    return kept;
}

// Removes `count` characters from `start`, both held inside the text.
inline void clampRange(int length, int& start, int& count) {
    if (start < 0) start = 0;
    if (start > length) start = length;
    if (count < 0) count = 0;
    if (count > length - start) count = length - start;
}

template <typename C>
int removeRange(C* data, int length, int start, int count) {
    clampRange(length, start, count);
    return splice(data, length, length, start, count, data, 0);
}

// Whitespace is exactly NUL, tab, line feed, carriage return and space.
template <typename C>
inline bool isTrimSpace(C c) {
    const int v = charValue(c);
    return v == 0 || v == 9 || v == 10 || v == 13 || v == 32;
}

template <typename C>
int trim(C* data, int length) {
    while (length > 0 && isTrimSpace(data[length - 1])) --length;
    int first = 0;
    while (first < length && isTrimSpace(data[first])) ++first;
    length -= first;
    if (first > 0 && length > 0) std::memmove(data, data + first, static_cast<size_t>(length) * sizeof(C));
    data[length] = 0;
    return length;
}

// Appends `text` in a field of abs(width) places filled with blanks: a positive width puts
// the blanks behind the text, a negative one in front. A text longer than the field is
// not cut to it, only by the capacity.
template <typename C, typename S, typename Conv>
int appendInField(C* data, int length, int capacity, const S* text, int textLength, int width, Conv conv) {
    if (width == 0 && textLength == 0) return length;
    const int room = capacity - length;
    const int used = minInt(textLength, room);
    const int field = minInt(width < 0 ? -width : width, room);
    const int blanks = field - used;
    if (width < 0)
        for (int i = 0; i < blanks; ++i) data[length++] = C(' ');
    for (int i = 0; i < used; ++i) data[length++] = conv(text[i]);
    if (width > 0)
        for (int i = 0; i < blanks; ++i) data[length++] = C(' ');
    data[length] = 0;
    return length;
}

} // namespace kzstr
