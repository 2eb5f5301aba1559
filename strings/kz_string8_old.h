// The older 8-bit string layouts, with the length behind the text.
//
// The length must stand on an even offset, so there are two templates:
// _kzString8_evenSize_old<N> has N+2 bytes of text room (one filler byte behind the
// terminator's place for an even N), _kzString8_UnevenSize_old<N> has N+1. Both carry the
// operations of _kzString8_allSize<N> except those that came later (views, numbers, hex,
// 16-bit input); _kzString8_allSize<N> takes either of them over.
#pragma once

#include <cstdint>
#include <cstring>

#include "strings/string_operations.h"

template <int N>
struct _kzString8_evenSize_old {
    static_assert(N > 0 && N < 65536, "the length of a string record is a 16-bit count");
    using T = _kzString8_evenSize_old<N>;
    using C = char;
    static constexpr int capacity = N;

    char data[N + 2];
    uint16_t length;

    _kzString8_evenSize_old() { zeroRecord(); }
    // Length and N+1 bytes of text travel; the filler byte does not.
    _kzString8_evenSize_old(const T& other) {
        zeroRecord();
        *this = other;
    }
    // Length 0 and the N+1 places of the text zero; the filler byte stays.
    void clear() {
        length = 0;
        std::memset(data, 0, N + 1);
    }

    KZ_STRING8_RECORD(_kzString8_evenSize_old)
    KZ_STRING_OPERATIONS()

private:
    void zeroRecord() { std::memset(static_cast<void*>(this), 0, sizeof(T)); }
};

template <int N>
struct _kzString8_UnevenSize_old {
    static_assert(N > 0 && N < 65536, "the length of a string record is a 16-bit count");
    using T = _kzString8_UnevenSize_old<N>;
    using C = char;
    static constexpr int capacity = N;

    char data[N + 1];
    uint16_t length;

    _kzString8_UnevenSize_old() { zeroRecord(); }
    _kzString8_UnevenSize_old(const T& other) {
        zeroRecord();
        *this = other;
    }
    void clear() { zeroRecord(); }

    KZ_STRING8_RECORD(_kzString8_UnevenSize_old)
    KZ_STRING_OPERATIONS()

private:
    void zeroRecord() { std::memset(static_cast<void*>(this), 0, sizeof(T)); }
};
