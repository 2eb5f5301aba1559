// _kzString8_allSize<N>: a fixed-capacity string of 8-bit characters.
//
// Record: `length` (u16), then `data` with N characters and the terminator, packed, so that
// the record takes exactly 2 + N + 1 bytes at every capacity. Text that does not fit is cut
// without a word; no operation allocates memory.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "strings/kz_string_views.h"
#include "strings/string_core.h"
#include "strings/text_length.h"

template <int N>
struct __attribute__((packed)) _kzString8_allSize {
    static_assert(N > 0 && N < 65536, "the length of a string record is a 16-bit count");
    using T = _kzString8_allSize<N>;
    static constexpr int capacity = N;

    uint16_t length;
    char data[N + 1];

    // --- construction -------------------------------------------------------------------

    _kzString8_allSize() { clear(); }
    _kzString8_allSize(const T& other) {
        length = other.length;
        std::memcpy(data, other.data, N + 1);
    }
    // A null pointer gives an empty record; everything behind the terminator is zero.
    _kzString8_allSize(const char* text) {
        clear();
        if (text) length = uint16_t(kzstr::assign(data, N, text, kzstr::length8(text)));
    }
    // Takes min(count mod 65536, N) bytes without looking for a 0 among them.
    _kzString8_allSize(const char* text, int count) {
        std::memset(data, 0, N + 1);
        length = uint16_t(kzstr::assign(data, N, text, count & 0xFFFF));
    }
    _kzString8_allSize(const unsigned short* text) {
        clear();
        if (text) length = uint16_t(kzstr::assign(data, N, text, kzstr::length16(text), kzstr::Narrow()));
    }
    _kzString8_allSize(const _kzString8_Uni_pointer* view) {
        clear();
        if (view) length = uint16_t(kzstr::assign(data, N, view->chars(), view->length));
    }

    // --- assignment ---------------------------------------------------------------------

    T& operator=(const T& other) {
        length = other.length;
        std::memmove(data, other.data, N + 1);
        return *this;
    }
    // A null pointer empties the length and leaves the old bytes in `data`.
    T& operator=(const char* text) {
        length = text ? uint16_t(kzstr::assign(data, N, text, kzstr::length8(text))) : 0;
        return *this;
    }
    // One character; a 0 character still counts as length 1.
    T& operator=(const char& c) {
        length = 1;
        data[0] = c;
        data[1] = 0;
        return *this;
    }
    T& operator=(const std::string& text) {
        length = uint16_t(
            kzstr::assign(data, N, text.data(), int(text.size() > size_t(N) ? size_t(N) : text.size())));
        return *this;
    }
    T& operator=(_kzString8_Uni_pointer* view) {
        length = view ? uint16_t(kzstr::assign(data, N, view->chars(), view->length))
                      : uint16_t(kzstr::setLength(data, N, 0));
        return *this;
    }
    // The counted assignment: like the counted constructor, without clearing `data` first.
    T& fromChar(const char* text, const int& count) {
        length = text ? uint16_t(kzstr::assign(data, N, text, count & 0xFFFF)) : 0;
        return *this;
    }

    // --- state --------------------------------------------------------------------------

    void clear() { std::memset(static_cast<void*>(this), 0, sizeof(T)); }
    void clearUnused() { kzstr::clearUnused(data, length, N); }
    void setLength(const short& n) { length = uint16_t(kzstr::setLength(data, N, n)); }
    void calcLength() { length = uint16_t(kzstr::calcLength(data, N)); }
    bool hasData() const { return length != 0; }
    bool isEmpty() const { return length == 0; }
    _kzString8_Uni_pointer* asUni() { return reinterpret_cast<_kzString8_Uni_pointer*>(this); }
    const _kzString8_Uni_pointer* asUni() const {
        return reinterpret_cast<const _kzString8_Uni_pointer*>(this);
    }
    char* toChar() { return data; }
    char* asChar() { return data; }
    const char* asChar() const { return data; }

    // --- concatenation ------------------------------------------------------------------

    T& add(const T& other) {
        length = uint16_t(kzstr::append(data, length, N, other.data, other.length));
        return *this;
    }
    // A null pointer or an empty text leaves the record untouched.
    T& add(const char* text) {
        if (text && text[0]) length = uint16_t(kzstr::append(data, length, N, text, kzstr::length8(text)));
        return *this;
    }
    // The count is trusted: no 0 is looked for.
    T& add(const char* text, unsigned int count) {
        if (text && count) length = uint16_t(kzstr::append(data, length, N, text, count));
        return *this;
    }
    T& operator+=(const char& c) {
        length = uint16_t(kzstr::appendChar(data, length, N, c));
        return *this;
    }
    T& operator+=(const char* text) {
        if (text) length = uint16_t(kzstr::append(data, length, N, text, kzstr::length8(text)));
        return *this;
    }
    T& operator+=(const T& other) { return add(other); }
    // Keeps the low 8 bits of the character.
    T& operator+=(const unsigned short& c) { return *this += kzstr::Narrow()(c); }

    T operator+(const char& c) const {
        T result(*this);
        result += c;
        return result;
    }
    T operator+(const T& other) const { return combined(other); }
    T combined(const char* text) const {
        T result(*this);
        result.add(text);
        return result;
    }
    T combined(const T& other) const {
        T result(*this);
        result.add(other);
        return result;
    }

    // --- search, comparison and editing used throughout the system ---------------------

    // Equal lengths and equal characters, ignoring case.
    bool isEqual(const T& other) const {
        return kzstr::isEqualFolded(data, length, other.data, other.length);
    }
    // The last character equals c exactly; false for an empty string.
    bool endsWith(const char& c) const { return length > 0 && data[length - 1] == c; }
    // Every character equal to `from`, ignoring case, becomes `to` as given.
    T& replace(const char& from, const char& to) {
        kzstr::replaceChar(data, length, from, to);
        return *this;
    }
    T& makeUpper() {
        kzstr::makeUpper(data, length);
        return *this;
    }
    T& makeLower() {
        kzstr::makeLower(data, length);
        return *this;
    }

    // --- numbers ------------------------------------------------------------------------

    T& addNr(const int& v) { return addNr(static_cast<long long>(v)); }
    T& addNr(const long long& v) {
        length = uint16_t(kzstr::appendNumber(data, length, N, v));
        return *this;
    }
    // Zero-padded to at least `width` characters; the zeros stand before a minus sign.
    T& addNr(const int& v, const unsigned char& width) { return addNr(static_cast<long long>(v), width); }
    T& addNr(const long long& v, const unsigned char& width) {
        length = uint16_t(kzstr::appendNumberZeroPadded(data, length, N, v, width));
        return *this;
    }
};
