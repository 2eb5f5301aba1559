// _kzString<N>: a fixed-capacity string of 16-bit characters.
//
// Record: `length` (u16), `reserved` (u16, no meaning; zero after the constructors that
// clear the whole record, never copied), then `data` with N characters and the terminator.
// Text that does not fit is cut without a word; no operation allocates memory. Case is
// ignored by the unmarked names (indexOf, isEqual, replace, ...) and respected by those
// marked CaseSen or SameCase.
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
#include "strings/kz_string_old.h"
#include "strings/kz_string_views.h"
#include "strings/string_operations.h"

template <int N>
struct _kzString {
    static_assert(N > 0 && N < 65536, "the length of a string record is a 16-bit count");
    using T = _kzString<N>;
    using C = unsigned short;
    static constexpr int capacity = N;

    uint16_t length;
    uint16_t reserved;
    unsigned short data[N + 1];

    KZ_STRING16_RECORD(_kzString)
    KZ_STRING_OPERATIONS()

    // --- views, the older layout and std::string ----------------------------------------

    _kzString(const _kzString_Uni_pointer* view) {
        zeroRecord();
        if (view) length = uint16_t(kzstr::assign(data, N, view->chars(), view->length));
    }
    // An 8-bit record comes in sign-extended.
    _kzString(const _kzString8_Uni_pointer* view) {
        zeroRecord();
        if (view) length = uint16_t(kzstr::assign(data, N, view->chars(), view->length, kzstr::SignExtend()));
    }
    _kzString(const _kzString_old<N>& older) {
        zeroRecord();
        takeOver(older);
    }
    T& operator=(const _kzString_old<N>& older) { return takeOver(older); }
    T& operator=(_kzString_Uni_pointer* view) {
        length = view ? uint16_t(kzstr::assign(data, N, view->chars(), view->length))
                      : uint16_t(kzstr::setLength(data, N, 0));
        return *this;
    }
    T& operator=(const std::string& text) {
        const int n = int(text.size() > size_t(N) ? size_t(N) : text.size());
        length = uint16_t(kzstr::assign(data, N, text.data(), n, kzstr::SignExtend()));
        return *this;
    }
    _kzString_Uni_pointer* asUni() { return reinterpret_cast<_kzString_Uni_pointer*>(this); }
    const _kzString_Uni_pointer* asUni() const {
        return reinterpret_cast<const _kzString_Uni_pointer*>(this);
    }

    // A null pointer compares unequal and not-unequal alike.
    bool operator!=(const char* text) const { return text && !(*this == text); }

    // --- numbers of this template only --------------------------------------------------

    T& addNr(const int& v) { return addNr(static_cast<long long>(v)); }
    T& addNr(const unsigned int& v) { return addNr(static_cast<unsigned long long>(v)); }
    // The byte is the number to print, not a width.
    T& addNr(const unsigned char& v) { return addNr(static_cast<unsigned long long>(v)); }
    T& addNr(const unsigned long long& v) {
        length = uint16_t(kzstr::appendUnsigned(data, length, N, v));
        return *this;
    }

private:
    // Length and the first N characters, then the terminator.
    T& takeOver(const _kzString_old<N>& older) {
        std::memcpy(data, older.data, N * sizeof(C));
        length = uint16_t(kzstr::minInt(older.length, N));
        data[length] = 0;
        return *this;
    }

public:
};
