// _kzString<N>: a fixed-capacity string of 16-bit characters.
//
// Record: `length` (u16), `reserved` (u16, no meaning; zero after the constructors that
// clear the whole record, never copied), then `data` with N characters and the terminator.
// Text that does not fit is cut without a word; no operation allocates memory.
//
// Bytes become 16-bit characters in one of two ways, and the difference shows for bytes
// above 0x7F: the constructors, operator+= and operator=(std::string) sign-extend
// (0xE4 -> 0xFFE4), while operator=(char const*), add(char const*) and combined(char const*)
// zero-extend (0xE4 -> 0x00E4).
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "strings/kz_string8.h"
#include "strings/kz_string_views.h"
#include "strings/string_core.h"
#include "strings/text_length.h"

template <int N>
struct _kzString {
    static_assert(N > 0 && N < 65536, "the length of a string record is a 16-bit count");
    using T = _kzString<N>;
    static constexpr int capacity = N;

    uint16_t length;
    uint16_t reserved;
    unsigned short data[N + 1];

    // --- construction -------------------------------------------------------------------

    _kzString() { clearRecord(); }
    // Copies length and all of data; `reserved` does not travel.
    _kzString(const T& other) : length(other.length), reserved(0) {
        std::memcpy(data, other.data, sizeof data);
    }
    _kzString(const char& c) {
        clearRecord();
        length = 1;
        data[0] = kzstr::SignExtend()(c);
    }
    // A null pointer gives an empty record; everything behind the terminator is zero.
    _kzString(const char* text) {
        clearRecord();
        if (text) length = uint16_t(kzstr::assign(data, N, text, kzstr::length8(text), kzstr::SignExtend()));
    }
    // Takes min(count mod 65536, N) bytes without looking for a 0 among them.
    _kzString(const char* text, int count) {
        clearRecord();
        if (text) length = uint16_t(kzstr::assign(data, N, text, count & 0xFFFF, kzstr::SignExtend()));
    }
    // A NUL-terminated 16-bit text, measured by the bounded scan.
    _kzString(const unsigned short* text) {
        clearRecord();
        if (text) length = uint16_t(kzstr::assign(data, N, text, kzstr::length16(text)));
    }
    // The pointer is trusted, like the count.
    _kzString(const unsigned short* text, int count) {
        clearRecord();
        length = uint16_t(kzstr::assign(data, N, text, count & 0xFFFF));
    }
    _kzString(const _kzString_Uni_pointer* view) {
        clearRecord();
        if (view) length = uint16_t(kzstr::assign(data, N, view->chars(), view->length));
    }
    _kzString(const _kzString8_Uni_pointer* view) {
        clearRecord();
        if (view) length = uint16_t(kzstr::assign(data, N, view->chars(), view->length, kzstr::SignExtend()));
    }

    // --- assignment ---------------------------------------------------------------------

    // Length and all of data; `reserved` stays.
    T& operator=(const T& other) {
        length = other.length;
        std::memmove(data, other.data, sizeof data);
        return *this;
    }
    // A null pointer changes nothing at all.
    T& operator=(const char* text) {
        if (text) length = uint16_t(kzstr::assign(data, N, text, kzstr::length8(text), kzstr::ZeroExtend()));
        return *this;
    }
    // A null pointer empties the length and leaves the old characters in `data`.
    T& operator=(const unsigned short* text) {
        length = text ? uint16_t(kzstr::assign(data, N, text, kzstr::length16(text))) : 0;
        return *this;
    }
    // One character, of which only the low 8 bits are kept.
    T& operator=(const unsigned short& c) {
        length = 1;
        data[0] = c & 0xFF;
        data[1] = 0;
        return *this;
    }
    T& operator=(const std::string& text) {
        const int n = int(text.size() > size_t(N) ? size_t(N) : text.size());
        length = uint16_t(kzstr::assign(data, N, text.data(), n, kzstr::SignExtend()));
        return *this;
    }
    T& operator=(_kzString_Uni_pointer* view) {
        length = view ? uint16_t(kzstr::assign(data, N, view->chars(), view->length))
                      : uint16_t(kzstr::setLength(data, N, 0));
        return *this;
    }

    // --- state --------------------------------------------------------------------------

    // Length 0 and all of data zero; `reserved` stays.
    void clear() {
        length = 0;
        std::memset(data, 0, sizeof data);
    }
    void clearUnused() { kzstr::clearUnused(data, length, N); }
    void setLength(const short& n) { length = uint16_t(kzstr::setLength(data, N, n)); }
    void calcLength() { length = uint16_t(kzstr::calcLength(data, N)); }
    bool hasData() const { return length != 0; }
    bool isEmpty() const { return length == 0; }
    _kzString_Uni_pointer* asUni() { return reinterpret_cast<_kzString_Uni_pointer*>(this); }
    const _kzString_Uni_pointer* asUni() const {
        return reinterpret_cast<const _kzString_Uni_pointer*>(this);
    }

    // Narrows min(length, size - 1) characters into dst, adds a 0 and returns the count.
    // `size` is the size of dst including its terminator.
    int toChar(char* dst, unsigned short size) const {
        if (size == 0) return 0;
        return kzstr::assign(dst, size - 1, data, length, kzstr::Narrow());
    }

    // --- concatenation ------------------------------------------------------------------

    T& add(const T& other) {
        length = uint16_t(kzstr::append(data, length, N, other.data, other.length));
        return *this;
    }
    // A null pointer or an empty text leaves the record untouched. Zero extension.
    T& add(const char* text) {
        if (text && text[0])
            length =
                uint16_t(kzstr::append(data, length, N, text, kzstr::length8(text), kzstr::ZeroExtend()));
        return *this;
    }
    // The count is trusted: no 0 is looked for.
    T& add(const unsigned short* text, unsigned int count) {
        if (text && count) length = uint16_t(kzstr::append(data, length, N, text, count));
        return *this;
    }
    T& operator+=(const char& c) {
        length = uint16_t(kzstr::appendChar(data, length, N, kzstr::SignExtend()(c)));
        return *this;
    }
    T& operator+=(const char* text) {
        if (text)
            length =
                uint16_t(kzstr::append(data, length, N, text, kzstr::length8(text), kzstr::SignExtend()));
        return *this;
    }
    T& operator+=(const T& other) { return add(other); }
    T& operator+=(const unsigned short* text) {
        if (text) length = uint16_t(kzstr::append(data, length, N, text, kzstr::length16(text)));
        return *this;
    }
    // Keeps all 16 bits of the character.
    T& operator+=(const unsigned short& c) {
        length = uint16_t(kzstr::appendChar(data, length, N, c));
        return *this;
    }

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

    // --- narrowing to 8-bit records: at most capacity - 1 characters --------------------

    _kzString8_allSize<250> to_kzString8_250() const { return narrowed<250>(); }
    _kzString8_allSize<500> to_kzString8_500() const { return narrowed<500>(); }
    operator _kzString8_allSize<250>() const { return narrowed<250>(); }
    operator _kzString8_allSize<500>() const { return narrowed<500>(); }

    // --- search, comparison and editing used throughout the system ---------------------

    bool isEqual(const T& other) const {
        return kzstr::isEqualFolded(data, length, other.data, other.length);
    }
    // The last character equals c exactly; false for an empty string.
    bool endsWith(const unsigned short& c) const { return length > 0 && data[length - 1] == c; }
    bool endsWith(const char& c) const { return endsWith(kzstr::SignExtend()(c)); }
    // Every character equal to `from`, ignoring case, becomes `to` as given.
    T& replace(const unsigned short& from, const unsigned short& to) {
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

private:
    void clearRecord() { std::memset(static_cast<void*>(this), 0, sizeof(T)); }

    template <int M>
    _kzString8_allSize<M> narrowed() const {
        _kzString8_allSize<M> result;
        result.length = uint16_t(kzstr::assign(result.data, M - 1, data, length, kzstr::Narrow()));
        return result;
    }
};
