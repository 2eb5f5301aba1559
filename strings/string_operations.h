// The member functions that the string templates have in common.
//
// There are five string templates (two current layouts and three older ones) with the same
// operations and different records. Without inheritance, the shared members are written
// once here, as macros that each template expands inside its own body; every member is a
// one-line call into the algorithms of string_core.h, string_search.h, string_edit.h and
// string_numbers.h, which is where the work is done.
//
// A template that expands these macros provides: the type names `T` (itself) and `C` (its
// character type), the constant `N` (its capacity), the fields `data` and `length`, and a
// private `zeroRecord()` that zeroes the whole record.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "strings/string_core.h"
#include "strings/string_edit.h"
#include "strings/string_numbers.h"
#include "strings/string_search.h"
#include "strings/text_length.h"

// ------------------------------------------------------------------------------------------
// All five templates.

#define KZ_STRING_OPERATIONS()                                                                               \
    /* --- state ---------------------------------------------------------------------- */                   \
    void clearUnused() { kzstr::clearUnused(data, length, N); }                                              \
    void setLength(const short& n) { length = uint16_t(kzstr::setLength(data, N, n)); }                      \
    void calcLength() { length = uint16_t(kzstr::calcLength(data, N)); }                                     \
    bool hasData() const { return length != 0; }                                                             \
    bool isEmpty() const { return length == 0; }                                                             \
                                                                                                             \
    /* --- concatenation of records --------------------------------------------------- */                   \
    T& add(const T& other) {                                                                                 \
        length = uint16_t(kzstr::append(data, length, N, other.data, other.length));                         \
        return *this;                                                                                        \
    }                                                                                                        \
    T& operator+=(const T& other) { return add(other); }                                                     \
    T operator+(const T& other) const { return combined(other); }                                            \
    T operator+(const char& c) const {                                                                       \
        T result(*this);                                                                                     \
        result += c;                                                                                         \
        return result;                                                                                       \
    }                                                                                                        \
    T combined(const T& other) const {                                                                       \
        T result(*this);                                                                                     \
        result.add(other);                                                                                   \
        return result;                                                                                       \
    }                                                                                                        \
    T combined(const char* text) const {                                                                     \
        T result(*this);                                                                                     \
        result.add(text);                                                                                    \
        return result;                                                                                       \
    }                                                                                                        \
                                                                                                             \
    /* --- single characters: unmarked names ignore case, CaseSen compares exactly ----- */                  \
    int indexOf(const C& c, int start) const {                                                               \
        return kzstr::indexOfChar(data, length, kzstr::compareValue(c, true), start, true);                  \
    }                                                                                                        \
    int indexOfCaseSen(const C& c, int start) const {                                                        \
        return kzstr::indexOfChar(data, length, kzstr::charValue(c), start, false);                          \
    }                                                                                                        \
    int lastIndexOf(const C& c, int start) const {                                                           \
        return kzstr::lastIndexOfChar(data, length, kzstr::charValue(c), start);                             \
    }                                                                                                        \
    /* A byte is compared as a sign-extended value: on 16-bit strings a byte above 0x7F    */                \
    /* meets no character.                                                                 */                \
    int count(char c) const { return kzstr::countChar(data, length, kzstr::compareValue(c, true), true); }   \
    int countCaseSen(const char& c) const {                                                                  \
        return kzstr::countChar(data, length, kzstr::charValue(c), false);                                   \
    }                                                                                                        \
    bool contains(const char& c) const {                                                                     \
        return kzstr::indexOfChar(data, length, kzstr::compareValue(c, true), 0, true) >= 0;                 \
    }                                                                                                        \
    bool startsWith(const char& c) const {                                                                   \
        return length > 0 && kzstr::charValue(data[0]) == kzstr::charValue(c);                               \
    }                                                                                                        \
    bool startsWith(const unsigned short& c) const {                                                         \
        return length > 0 && kzstr::charValue(data[0]) == int(c);                                            \
    }                                                                                                        \
    bool endsWith(const char& c) const {                                                                     \
        return length > 0 && kzstr::charValue(data[length - 1]) == kzstr::charValue(c);                      \
    }                                                                                                        \
    bool endsWith(const unsigned short& c) const {                                                           \
        return length > 0 && kzstr::charValue(data[length - 1]) == int(c);                                   \
    }                                                                                                        \
                                                                                                             \
    /* --- patterns: a char const* argument becomes a record of this template first ---- */                  \
    int indexOf(const T& pattern, int start) const {                                                         \
        return kzstr::indexOfPattern(data, length, pattern.data, pattern.length, start, true);               \
    }                                                                                                        \
    int indexOfCaseSen(const T& pattern, int start) const {                                                  \
        return kzstr::indexOfPattern(data, length, pattern.data, pattern.length, start, false);              \
    }                                                                                                        \
    int indexOfFirstOcc(const T& a, const T& b, int* which) const {                                          \
        const C* patterns[] = {a.data, b.data};                                                              \
        const int lengths[] = {a.length, b.length};                                                          \
        return kzstr::indexOfFirstOcc(data, length, patterns, lengths, 2, which);                            \
    }                                                                                                        \
    int indexOfFirstOcc(const T& a, const T& b, const T& c, const T& d, const T& e, const T& f, int* which)  \
        const {                                                                                              \
        const C* patterns[] = {a.data, b.data, c.data, d.data, e.data, f.data};                              \
        const int lengths[] = {a.length, b.length, c.length, d.length, e.length, f.length};                  \
        return kzstr::indexOfFirstOcc(data, length, patterns, lengths, 6, which);                            \
    }                                                                                                        \
    bool contains(const char* text) const { return contains(T(text)); }                                      \
    bool contains(const T& pattern) const { return indexOf(pattern, 0) >= 0; }                               \
    bool containsCaseSen(const char* text) const { return containsCaseSen(T(text)); }                        \
    bool containsCaseSen(const T& pattern) const { return indexOfCaseSen(pattern, 0) >= 0; }                 \
    bool containsCaseSen(const char* text, const int& count) const {                                         \
        return text && containsCaseSen(T(text, count));                                                      \
    }                                                                                                        \
    bool containsUpperCaseInput(const char* text) const { return containsUpperCaseInput(T(text)); }          \
    bool containsUpperCaseInput(const T& pattern) const {                                                    \
        T upper(*this);                                                                                      \
        upper.makeUpper();                                                                                   \
        return upper.indexOfCaseSen(pattern, 0) >= 0;                                                        \
    }                                                                                                        \
    bool startsWith(const char* text) const { return startsWithText(text, true); }                           \
    bool startsWith(const char* text, int count) const {                                                     \
        if (!text || length == 0 || count <= 0 || count > length) return false;                              \
        const T pattern(text, count);                                                                        \
        return kzstr::startsWithPattern(data, length, pattern.data, pattern.length, true);                   \
    }                                                                                                        \
    bool startsWith(T pattern) const {                                                                       \
        return kzstr::startsWithPattern(data, length, pattern.data, pattern.length, true);                   \
    }                                                                                                        \
    bool startsWithCaseSen(const char* text) const { return startsWithText(text, false); }                   \
    bool startsWithCaseSen(T pattern) const {                                                                \
        return kzstr::startsWithPattern(data, length, pattern.data, pattern.length, false);                  \
    }                                                                                                        \
    bool endsWith(const char* text) const {                                                                  \
        return text && kzstr::length8(text) <= length && endsWith(T(text));                                  \
    }                                                                                                        \
    bool endsWith(const T& pattern) const {                                                                  \
        return kzstr::endsWithPattern(data, length, pattern.data, pattern.length, true);                     \
    }                                                                                                        \
    bool endsWith(const char* text, int count) const {                                                       \
        if (!text || length == 0 || count <= 0 || count > length) return false;                              \
        return endsWith(T(text));                                                                            \
    }                                                                                                        \
                                                                                                             \
    /* --- equality and order ---------------------------------------------------------- */                  \
    bool isEqual(const T& other) const {                                                                     \
        return kzstr::isEqualFolded(data, length, other.data, other.length);                                 \
    }                                                                                                        \
    /* `text` is not measured: `count` is its length. Bytes enter sign-extended.          */                 \
    bool isEqual(const char* text, int count) const {                                                        \
        if (length != count || (count > 0 && !text)) return false;                                           \
        for (int i = 0; i < count; ++i)                                                                      \
            if (kzstr::compareValue(data[i], true) != kzstr::compareValue(text[i], true)) return false;      \
        return true;                                                                                         \
    }                                                                                                        \
    bool isEqualSameCase(const T& other) const { return *this == other; }                                    \
    bool isEqualUpperCaseInput(const T& other) const {                                                       \
        T folded(*this);                                                                                     \
        folded.makeUpper();                                                                                  \
        return folded == other;                                                                              \
    }                                                                                                        \
    bool isEqualLowerCaseInput(const T& other) const {                                                       \
        T folded(*this);                                                                                     \
        folded.makeLower();                                                                                  \
        return folded == other;                                                                              \
    }                                                                                                        \
    int compare(const T& other) const {                                                                      \
        return kzstr::compareFolded(data, length, other.data, other.length);                                 \
    }                                                                                                        \
    int compareSameCase(const T& other) const {                                                              \
        return kzstr::comparePrefix(data, length, other.data, other.length);                                 \
    }                                                                                                        \
    bool operator<(const T& other) const { return kzstr::lessThan(data, length, other.data, other.length); } \
    bool operator>(const T& other) const { return kzstr::lessThan(other.data, other.length, data, length); } \
    bool operator==(const T& other) const {                                                                  \
        return kzstr::sameText(data, length, other.data, other.length);                                      \
    }                                                                                                        \
    bool operator!=(const T& other) const { return !(*this == other); }                                      \
                                                                                                             \
    /* --- editing ---------------------------------------------------------------------- */                 \
    T& replace(const C& from, const C& to) {                                                                 \
        kzstr::replaceChar(data, length, from, to);                                                          \
        return *this;                                                                                        \
    }                                                                                                        \
    T& replace(const T& from, const T& to) { return replacePattern(from, to, true); }                        \
    T& replaceCaseSen(const T& from, const T& to) { return replacePattern(from, to, false); }                \
    /* Takes one `c` off the end if the text ends in it.                                  */                 \
    void dropEnd(const char& c) {                                                                            \
        if (endsWith(c)) setLength(short(length - 1));                                                       \
    }                                                                                                        \
    /* Appends `c` unless the text ends in it already or is full.                         */                 \
    T& endWith(const char& c) {                                                                              \
        if (!endsWith(c) && length < N) *this += c;                                                          \
        return *this;                                                                                        \
    }                                                                                                        \
    /* Removes every `ch`, ignoring case; returns a copy of the result as well.           */                 \
    T remove(const C& ch) {                                                                                  \
        length = uint16_t(kzstr::removeChar(data, length, kzstr::compareValue(ch, true)));                   \
        return *this;                                                                                        \
    }                                                                                                        \
    T& remove(const int& start, const int& count) {                                                          \
        length = uint16_t(kzstr::removeRange(data, length, start, count));                                   \
        return *this;                                                                                        \
    }                                                                                                        \
    T& remove(const T& pattern) { return removePattern(pattern, true); }                                     \
    T& removeCaseSens(const T& pattern) { return removePattern(pattern, false); }                            \
    /* The old tail is cut first when room runs out, then the inserted text.             */                  \
    T& insert(const int& pos, const T& text) {                                                               \
        const T copy(text);                                                                                  \
        const int at = pos < 0 ? 0 : (pos > length ? length : pos);                                          \
        length = uint16_t(kzstr::splice(data, length, N, at, 0, copy.data, copy.length));                    \
        return *this;                                                                                        \
    }                                                                                                        \
    /* count characters from data[start], behind the terminator too, inside the record.  */                  \
    T mid(const int& start, const int& count) const {                                                        \
        T result;                                                                                            \
        if (count == 0 || start < 0 || start >= N) return result;                                            \
        const int n = kzstr::minInt(count < 0 ? N : count, N - start);                                       \
        result.length = uint16_t(kzstr::assign(result.data, N, data + start, n));                            \
        return result;                                                                                       \
    }                                                                                                        \
    T left(int n) const {                                                                                    \
        T result;                                                                                            \
        if (n > 0) result.length = uint16_t(kzstr::assign(result.data, N, data, kzstr::minInt(n, length)));  \
        return result;                                                                                       \
    }                                                                                                        \
    /* Up to the first `delimiter` (ignoring case), with it for `flag` true. A delimiter   */                \
    /* at 0 gives the empty string for true and the delimiter alone for false.            */                 \
    T left(const C& delimiter, const bool& flag) const {                                                     \
        const int i = length > 0 ? indexOf(delimiter, 0) : -1;                                               \
        if (i < 0) return *this;                                                                             \
        if (i > 0) return left(flag ? i + 1 : i);                                                            \
        T result;                                                                                            \
        if (!flag) result += delimiter;                                                                      \
        return result;                                                                                       \
    }                                                                                                        \
    /* As left, and the string keeps only what stands behind the delimiter; without a     */                 \
    /* delimiter the whole string goes to the result and the string is cleared.           */                 \
    T leftNCut(const C& delimiter, const bool& flag) {                                                       \
        const T result = left(delimiter, flag);                                                              \
        const int i = length > 0 ? indexOf(delimiter, 0) : -1;                                               \
        if (i < 0)                                                                                           \
            zeroRecord();                                                                                    \
        else                                                                                                 \
            remove(0, i + 1);                                                                                \
        return result;                                                                                       \
    }                                                                                                        \
    T& trim() {                                                                                              \
        length = uint16_t(kzstr::trim(data, length));                                                        \
        return *this;                                                                                        \
    }                                                                                                        \
    T& makeUpper() {                                                                                         \
        kzstr::makeUpper(data, length);                                                                      \
        return *this;                                                                                        \
    }                                                                                                        \
    T& makeLower() {                                                                                         \
        kzstr::makeLower(data, length);                                                                      \
        return *this;                                                                                        \
    }                                                                                                        \
    /* `text` in a field of abs(width) blanks: behind it for width > 0, in front for < 0. */                 \
    T& addSpacingC(const char* text, const int& width) {                                                     \
        length = uint16_t(kzstr::appendInField(data, length, N, text, text ? kzstr::length8(text) : 0,       \
                                               width, kzstr::FromByte<C>()));                                \
        return *this;                                                                                        \
    }                                                                                                        \
    /* The same with a text in the record's own characters. */                                               \
    T& addSpacing(const C* text, const int& width) {                                                         \
        length = uint16_t(kzstr::appendInField(data, length, N, text, text ? kzstr::textLength(text) : 0,    \
                                               width, kzstr::Keep()));                                       \
        return *this;                                                                                        \
    }                                                                                                        \
    T& addNrSpacing(const long long& v, const signed char& width) {                                          \
        length = uint16_t(kzstr::appendNumberInField(data, length, N, v, width));                            \
        return *this;                                                                                        \
    }                                                                                                        \
    static T createCharString(const C& ch, const int& n) {                                                   \
        T result;                                                                                            \
        for (int i = 0; i < n && i < N; ++i) result.data[i] = ch;                                            \
        result.length = uint16_t(n < 1 ? 0 : kzstr::minInt(n, N));                                           \
        return result;                                                                                       \
    }                                                                                                        \
                                                                                                             \
private:                                                                                                     \
    bool startsWithText(const char* text, bool fold) const {                                                 \
        if (!text) return false;                                                                             \
        const int textLength = kzstr::length8(text);                                                         \
        if (textLength > length) return false;                                                               \
        const T pattern(text);                                                                               \
        return kzstr::startsWithPattern(data, length, pattern.data, pattern.length, fold);                   \
    }                                                                                                        \
    T& replacePattern(const T& from, const T& to, bool fold) {                                               \
        if (&from == this || &to == this) return replacePattern(T(from), T(to), fold); /* keep them apart */ \
        length =                                                                                             \
            uint16_t(kzstr::replaceAll(data, length, N, from.data, from.length, to.data, to.length, fold));  \
        return *this;                                                                                        \
    }                                                                                                        \
    T& removePattern(const T& pattern, bool fold) {                                                          \
        if (&pattern == this) return removePattern(T(pattern), fold);                                        \
        length = uint16_t(kzstr::removeAll(data, length, pattern.data, pattern.length, fold));               \
        return *this;                                                                                        \
    }                                                                                                        \
                                                                                                             \
public:

// ------------------------------------------------------------------------------------------
// The 16-bit templates: construction, assignment and appending with the widening rules of
// 16-bit records (constructors and += sign-extend bytes, = and add zero-extend them),
// narrowing to 8-bit records, and the 16-bit forms of comparison and numbers.

#define KZ_STRING16_RECORD(NAME)                                                                             \
    NAME() { zeroRecord(); }                                                                                 \
    NAME(const T& other) : length(other.length), reserved(0) { std::memcpy(data, other.data, sizeof data); } \
    NAME(const char& c) {                                                                                    \
        zeroRecord();                                                                                        \
        length = 1;                                                                                          \
        data[0] = kzstr::SignExtend()(c);                                                                    \
    }                                                                                                        \
    NAME(const char* text) {                                                                                 \
        zeroRecord();                                                                                        \
        if (text)                                                                                            \
            length = uint16_t(kzstr::assign(data, N, text, kzstr::length8(text), kzstr::SignExtend()));      \
    }                                                                                                        \
    /* min(count mod 65536, N) bytes, without looking for a 0 among them */                                  \
    NAME(const char* text, int count) {                                                                      \
        zeroRecord();                                                                                        \
        if (text) length = uint16_t(kzstr::assign(data, N, text, count & 0xFFFF, kzstr::SignExtend()));      \
    }                                                                                                        \
    NAME(const unsigned short* text) {                                                                       \
        zeroRecord();                                                                                        \
        if (text) length = uint16_t(kzstr::assign(data, N, text, kzstr::length16(text)));                    \
    }                                                                                                        \
    /* the pointer is trusted, like the count */                                                             \
    NAME(const unsigned short* text, int count) {                                                            \
        zeroRecord();                                                                                        \
        length = uint16_t(kzstr::assign(data, N, text, count & 0xFFFF));                                     \
    }                                                                                                        \
                                                                                                             \
    /* `reserved` stays */                                                                                   \
    T& operator=(const T& other) {                                                                           \
        length = other.length;                                                                               \
        std::memmove(data, other.data, sizeof data);                                                         \
        return *this;                                                                                        \
    }                                                                                                        \
    /* a null pointer changes nothing at all */                                                              \
    T& operator=(const char* text) {                                                                         \
        if (text)                                                                                            \
            length = uint16_t(kzstr::assign(data, N, text, kzstr::length8(text), kzstr::ZeroExtend()));      \
        return *this;                                                                                        \
    }                                                                                                        \
    /* a null pointer empties the length and leaves the characters */                                        \
    T& operator=(const unsigned short* text) {                                                               \
        length = text ? uint16_t(kzstr::assign(data, N, text, kzstr::length16(text))) : 0;                   \
        return *this;                                                                                        \
    }                                                                                                        \
    /* one character, of which only the low 8 bits are kept */                                               \
    T& operator=(const unsigned short& c) {                                                                  \
        length = 1;                                                                                          \
        data[0] = c & 0xFF;                                                                                  \
        data[1] = 0;                                                                                         \
        return *this;                                                                                        \
    }                                                                                                        \
    /* length 0 and all of data zero; `reserved` stays */                                                    \
    void clear() {                                                                                           \
        length = 0;                                                                                          \
        std::memset(data, 0, sizeof data);                                                                   \
    }                                                                                                        \
    /* narrows min(length, size - 1) characters into dst and terminates them */                              \
    int toChar(char* dst, unsigned short size) const {                                                       \
        return size == 0 ? 0 : kzstr::assign(dst, size - 1, data, length, kzstr::Narrow());                  \
    }                                                                                                        \
                                                                                                             \
    T& add(const char* text) {                                                                               \
        if (text && text[0])                                                                                 \
            length =                                                                                         \
                uint16_t(kzstr::append(data, length, N, text, kzstr::length8(text), kzstr::ZeroExtend()));   \
        return *this;                                                                                        \
    }                                                                                                        \
    T& add(const unsigned short* text, unsigned int count) {                                                 \
        if (text && count) length = uint16_t(kzstr::append(data, length, N, text, count));                   \
        return *this;                                                                                        \
    }                                                                                                        \
    T& operator+=(const char& c) {                                                                           \
        length = uint16_t(kzstr::appendChar(data, length, N, kzstr::SignExtend()(c)));                       \
        return *this;                                                                                        \
    }                                                                                                        \
    T& operator+=(const char* text) {                                                                        \
        if (text)                                                                                            \
            length =                                                                                         \
                uint16_t(kzstr::append(data, length, N, text, kzstr::length8(text), kzstr::SignExtend()));   \
        return *this;                                                                                        \
    }                                                                                                        \
    T& operator+=(const unsigned short* text) {                                                              \
        if (text) length = uint16_t(kzstr::append(data, length, N, text, kzstr::length16(text)));            \
        return *this;                                                                                        \
    }                                                                                                        \
    /* all 16 bits */                                                                                        \
    T& operator+=(const unsigned short& c) {                                                                 \
        length = uint16_t(kzstr::appendChar(data, length, N, c));                                            \
        return *this;                                                                                        \
    }                                                                                                        \
                                                                                                             \
    /* narrowing to 8-bit records keeps one character less than their capacity */                            \
    _kzString8_allSize<250> to_kzString8_250() const { return narrowed<250>(); }                             \
    _kzString8_allSize<500> to_kzString8_500() const { return narrowed<500>(); }                             \
    operator _kzString8_allSize<250>() const { return narrowed<250>(); }                                     \
    operator _kzString8_allSize<500>() const { return narrowed<500>(); }                                     \
                                                                                                             \
    int indexOf(const char* text) const { return indexOf(T(text), 0); }                                      \
    bool isEqual(const unsigned short* text, int count) const {                                              \
        return text && kzstr::isEqualFolded(data, length, text, count);                                      \
    }                                                                                                        \
    bool isEqualSameCase(const unsigned short* text, int count) const {                                      \
        return text && length == count && kzstr::equalRange(data, text, count, false);                       \
    }                                                                                                        \
    /* the lengths, then each character against the zero-extended byte */                                    \
    bool operator==(const char* text) const {                                                                \
        if (!text || length != kzstr::length8(text)) return false;                                           \
        for (int i = 0; i < length; ++i)                                                                     \
            if (data[i] != kzstr::ZeroExtend()(text[i])) return false;                                       \
        return true;                                                                                         \
    }                                                                                                        \
    bool operator==(const unsigned short* text) const {                                                      \
        if (!text) return false;                                                                             \
        const int n = kzstr::length16(text);                                                                 \
        return n == length && kzstr::equalRange(data, text, n, false);                                       \
    }                                                                                                        \
                                                                                                             \
    T& addNr(const long long& v) {                                                                           \
        length = uint16_t(kzstr::appendNumber(data, length, N, v));                                          \
        return *this;                                                                                        \
    }                                                                                                        \
    /* zeros and digits are joined in 20 places first: a width above 20 gives 20 zeros */                    \
    T& addNr(const long long& v, const unsigned char& width) {                                               \
        char padded[21];                                                                                     \
        const int n = kzstr::appendNumberZeroPadded(padded, 0, 20, v, width);                                \
        length = uint16_t(kzstr::appendText(data, length, N, padded, n));                                    \
        return *this;                                                                                        \
    }                                                                                                        \
    static T fromNr(const long long& v) {                                                                    \
        T result;                                                                                            \
        result.addNr(v);                                                                                     \
        return result;                                                                                       \
    }                                                                                                        \
    /* digits and a leading minus only, when `ok` is given; parsed by atoi from the text  */                 \
    /* narrowed to 249 characters                                                          */                \
    int toInt(bool* ok) const {                                                                              \
        if (ok) {                                                                                            \
            *ok = kzstr::isDecimalText(data, length);                                                        \
            if (!*ok) return 0;                                                                              \
        }                                                                                                    \
        return std::atoi(to_kzString8_250().data);                                                           \
    }                                                                                                        \
                                                                                                             \
private:                                                                                                     \
    void zeroRecord() { std::memset(static_cast<void*>(this), 0, sizeof(T)); }                               \
    template <int M>                                                                                         \
    _kzString8_allSize<M> narrowed() const {                                                                 \
        _kzString8_allSize<M> result;                                                                        \
        result.length = uint16_t(kzstr::assign(result.data, M - 1, data, length, kzstr::Narrow()));          \
        return result;                                                                                       \
    }                                                                                                        \
                                                                                                             \
public:

// ------------------------------------------------------------------------------------------
// The 8-bit templates: construction from text, assignment, appending, and the 8-bit forms
// of comparison. The default and copy constructors and clear() differ in what they do with
// a filler byte, and stand in each template.

#define KZ_STRING8_RECORD(NAME)                                                                              \
    /* a null pointer gives an empty record; everything behind the terminator is zero */                     \
    NAME(const char* text) {                                                                                 \
        zeroRecord();                                                                                        \
        if (text) length = uint16_t(kzstr::assign(data, N, text, kzstr::length8(text)));                     \
    }                                                                                                        \
    /* min(count mod 65536, N) bytes without looking for a 0; the pointer is trusted */                      \
    NAME(const char* text, int count) {                                                                      \
        zeroRecord();                                                                                        \
        length = uint16_t(kzstr::assign(data, N, text, count & 0xFFFF));                                     \
    }                                                                                                        \
    T& operator=(const T& other) {                                                                           \
        length = other.length;                                                                               \
        std::memmove(data, other.data, N + 1);                                                               \
        return *this;                                                                                        \
    }                                                                                                        \
    /* a null pointer empties the length and leaves the old bytes */                                         \
    T& operator=(const char* text) {                                                                         \
        length = text ? uint16_t(kzstr::assign(data, N, text, kzstr::length8(text))) : 0;                    \
        return *this;                                                                                        \
    }                                                                                                        \
    /* one character; a 0 character still counts as length 1 */                                              \
    T& operator=(const char& c) {                                                                            \
        length = 1;                                                                                          \
        data[0] = c;                                                                                         \
        data[1] = 0;                                                                                         \
        return *this;                                                                                        \
    }                                                                                                        \
    T& add(const char* text) {                                                                               \
        if (text && text[0]) length = uint16_t(kzstr::append(data, length, N, text, kzstr::length8(text)));  \
        return *this;                                                                                        \
    }                                                                                                        \
    /* the count is trusted: no 0 is looked for */                                                           \
    T& add(const char* text, unsigned int count) {                                                           \
        if (text && count) length = uint16_t(kzstr::append(data, length, N, text, count));                   \
        return *this;                                                                                        \
    }                                                                                                        \
    T& operator+=(const char& c) {                                                                           \
        length = uint16_t(kzstr::appendChar(data, length, N, c));                                            \
        return *this;                                                                                        \
    }                                                                                                        \
    T& operator+=(const char* text) {                                                                        \
        if (text) length = uint16_t(kzstr::append(data, length, N, text, kzstr::length8(text)));             \
        return *this;                                                                                        \
    }                                                                                                        \
    bool isEqualSameCase(const char* text, int count) const {                                                \
        return text && length == count && kzstr::equalRange(data, text, count, false);                       \
    }                                                                                                        \
    /* a NUL-ended text, ignoring case, without building a record for it */                              \
    int indexOf(const char* text, int start) const {                                                     \
        return text ? kzstr::indexOfPattern(data, length, text, kzstr::length8(text), start, true) : -1; \
    }                                                                                                    \
    /* the first byte, then the length against strlen mod 65536, then the bytes */                           \
    bool operator==(const char* text) const {                                                                \
        if (!text || data[0] != text[0]) return false;                                                       \
        return length == kzstr::length8(text) && kzstr::equalRange(data, text, length, false);               \
    }
