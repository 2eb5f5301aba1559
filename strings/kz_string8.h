// _kzString8_allSize<N>: a fixed-capacity string of 8-bit characters.
//
// Record: `length` (u16), then `data` with N characters and the terminator, packed, so that
// the record takes exactly 2 + N + 1 bytes at every capacity. Text that does not fit is cut
// without a word; no operation allocates memory. Case is ignored by the unmarked names
// (indexOf, isEqual, replace, ...) and respected by those marked CaseSen or SameCase.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "strings/kz_string8_old.h"
#include "strings/kz_string_views.h"
#include "strings/string_operations.h"

template <int N>
struct __attribute__((packed)) _kzString8_allSize {
    static_assert(N > 0 && N < 65536, "the length of a string record is a 16-bit count");
    using T = _kzString8_allSize<N>;
    using C = char;
    static constexpr int capacity = N;

    uint16_t length;
    char data[N + 1];

    // --- construction -------------------------------------------------------------------

    _kzString8_allSize() { zeroRecord(); }
    _kzString8_allSize(const T& other) {
        length = other.length;
        std::memcpy(data, other.data, N + 1);
    }
    // A NUL-terminated 16-bit text, measured by the bounded scan, each character narrowed.
    _kzString8_allSize(const unsigned short* text) {
        zeroRecord();
        if (text) length = uint16_t(kzstr::assign(data, N, text, kzstr::length16(text), kzstr::Narrow()));
    }
    _kzString8_allSize(const _kzString8_Uni_pointer* view) {
        zeroRecord();
        if (view) length = uint16_t(kzstr::assign(data, N, view->chars(), view->length));
    }
    _kzString8_allSize(const _kzString8_evenSize_old<N>& older) {
        zeroRecord();
        takeOver(older.data, older.length);
    }
    _kzString8_allSize(const _kzString8_UnevenSize_old<N>& older) {
        zeroRecord();
        takeOver(older.data, older.length);
    }

    KZ_STRING8_RECORD(_kzString8_allSize)
    KZ_STRING_OPERATIONS()

    // --- assignment and state -----------------------------------------------------------

    T& operator=(const std::string& text) {
        const int n = int(text.size() > size_t(N) ? size_t(N) : text.size());
        length = uint16_t(kzstr::assign(data, N, text.data(), n));
        return *this;
    }
    T& operator=(_kzString8_Uni_pointer* view) {
        length = view ? uint16_t(kzstr::assign(data, N, view->chars(), view->length))
                      : uint16_t(kzstr::setLength(data, N, 0));
        return *this;
    }
    T& operator=(const _kzString8_evenSize_old<N>& older) { return takeOver(older.data, older.length); }
    T& operator=(const _kzString8_UnevenSize_old<N>& older) { return takeOver(older.data, older.length); }
    // The counted assignment: like the counted constructor, without clearing `data` first.
    T& fromChar(const char* text, const int& count) {
        length = text ? uint16_t(kzstr::assign(data, N, text, count & 0xFFFF)) : 0;
        return *this;
    }
    void clear() { zeroRecord(); }
    _kzString8_Uni_pointer* asUni() { return reinterpret_cast<_kzString8_Uni_pointer*>(this); }
    const _kzString8_Uni_pointer* asUni() const {
        return reinterpret_cast<const _kzString8_Uni_pointer*>(this);
    }
    char* toChar() { return data; }
    char* asChar() { return data; }
    const char* asChar() const { return data; }

    // Keeps the low 8 bits of the character.
    T& operator+=(const unsigned short& c) { return *this += kzstr::Narrow()(c); }

    // --- comparison forms of this template only -----------------------------------------

    // The low 8 bits of `c` against the bytes, exactly.
    int indexOf(const unsigned short& c, int start) const {
        return kzstr::indexOfLowByte(data, length, c, start);
    }
    int lastIndexOf(const unsigned short& c, int start) const {
        return lastIndexOf(kzstr::Narrow()(c), start);
    }
    // A null pointer is unequal.
    bool operator!=(const char* text) const { return !(*this == text); }
    bool operator==(const _kzString8_evenSize_old<N>& older) const { return *this == T(older); }
    bool operator==(const _kzString8_UnevenSize_old<N>& older) const { return *this == T(older); }

    // --- numbers ------------------------------------------------------------------------

    T& addNr(const int& v) { return addNr(static_cast<long long>(v)); }
    T& addNr(const long long& v) {
        length = uint16_t(kzstr::appendNumber(data, length, N, v));
        return *this;
    }
    T& addNr(const unsigned long long& v) {
        length = uint16_t(kzstr::appendUnsigned(data, length, N, v));
        return *this;
    }
    // Zero-padded to at least `width` characters; the zeros stand before a minus sign.
    T& addNr(const int& v, const unsigned char& width) { return addNr(static_cast<long long>(v), width); }
    T& addNr(const long long& v, const unsigned char& width) {
        length = uint16_t(kzstr::appendNumberZeroPadded(data, length, N, v, width));
        return *this;
    }
    static T fromNr(const long long& v) {
        T result;
        result.addNr(v);
        return result;
    }
    // With `ok` given, the text must be digits with an optional leading minus; an invalid
    // text gives 0 and *ok false. Without `ok`, the C parser's own rules apply.
    int toInt(bool* ok) const { return validDecimal(ok) ? std::atoi(data) : 0; }
    long long toInt64(bool* ok) const { return validDecimal(ok) ? std::atoll(data) : 0; }
    unsigned long long toUInt64(bool* ok) const {
        return validDecimal(ok) ? std::strtoull(data, nullptr, 10) : 0;
    }

    // --- hexadecimal --------------------------------------------------------------------

    // A signed byte is formatted as an int ("FFFFFFFF" for -1) and its last two digits go.
    T& addHexCode(const signed char& v) { return addHexTail(v, kzstr::HexWidth::Byte, 2); }
    T& addHexCode(const unsigned char& v) { return addHexTail(v, kzstr::HexWidth::Byte, 2); }
    // A negative short gives all eight digits of its int form.
    T& addHexCode(const short& v) { return addHexTail(v, kzstr::HexWidth::Short, 0); }
    T& addHexCode(const unsigned short& v) { return addHexTail(v, kzstr::HexWidth::Short, 0); }
    T& addHexCode(const int& v) { return addHexTail(v, kzstr::HexWidth::Int, 0); }
    T& addHexCode(const unsigned int& v) { return addHexTail(v, kzstr::HexWidth::Int, 0); }
    T& addHexCode(const long long& v) { return addHexTail(v, kzstr::HexWidth::LongLong, 0); }
    T& addHexCode(const unsigned long long& v) { return addHexTail(v, kzstr::HexWidth::LongLong, 0); }

    // Two upper-case digits per byte, cut at the capacity.
    T asHexString() const {
        T result;
        for (int i = 0; i < length && result.length < N; ++i)
            result.addHexCode(static_cast<signed char>(data[i]));
        return result;
    }

    // Reads a field of bits/4 hexadecimal digits from the start of the string and, with
    // `cut`, removes them from it. With `narrow` the field is read into 32 bits and
    // sign-extended from `bits` (32, 16 or 8); without it, it is read whole by strtoll.
    long long toIntFromHex(const int& bits, const bool& narrow, const bool& cut, bool* ok) {
        T field(*this);
        const int digits = kzstr::minInt(bits / 4 < 0 ? 0 : bits / 4, length);
        field.setLength(static_cast<short>(digits));
        if (cut) remove(0, digits);
        long long result = 0;
        bool valid = true;
        if (!narrow) {
            result = kzstr::parseHex64(field.data);
        } else {
            unsigned int value = 0;
            valid = kzstr::parseHex32(field.data, &value) && kzstr::signExtendField(value, bits, &result);
            if (!valid) result = 0;
        }
        if (ok) *ok = valid;
        return result;
    }

private:
    void zeroRecord() { std::memset(static_cast<void*>(this), 0, sizeof(T)); }

    // An older record comes over with its length and the first N bytes of its text.
    T& takeOver(const char* text, uint16_t olderLength) {
        std::memcpy(data, text, N);
        length = uint16_t(kzstr::minInt(olderLength, N));
        data[length] = 0;
        return *this;
    }

    bool validDecimal(bool* ok) const {
        if (!ok) return true;
        *ok = kzstr::isDecimalText(data, length);
        return *ok;
    }

    // The formatted text, of which `tail` last digits (0: all) go on, at most N of them,
    // appended until the string is full.
    T& appendHex(const char* text, int n, int tail) {
        if (tail > 0 && n > tail) {
            text += n - tail;
            n = tail;
        }
        length = uint16_t(kzstr::append(data, length, N, text, kzstr::minInt(n, N)));
        return *this;
    }
    T& addHexTail(unsigned long long v, kzstr::HexWidth width, int tail) {
        char text[24];
        return appendHex(text, kzstr::formatHex(text, v, width), tail);
    }

public:
};
