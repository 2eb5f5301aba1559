// _kzString_old<N>: the older layout of the 16-bit string, with the length behind the text.
//
// Record: `data` with N characters and the terminator, then `length` (u16) and `reserved`
// (u16). It carries the operations of _kzString<N> except the later ones (views, the
// std::string assignment, the int and unsigned forms of addNr, operator!=(char const*));
// _kzString<N> takes it over.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "strings/kz_string8.h"
#include "strings/string_operations.h"

template <int N>
struct _kzString_old {
    static_assert(N > 0 && N < 65536, "the length of a string record is a 16-bit count");
    using T = _kzString_old<N>;
    using C = unsigned short;
    static constexpr int capacity = N;

    unsigned short data[N + 1];
    uint16_t length;
    uint16_t reserved;

    KZ_STRING16_RECORD(_kzString_old)
    KZ_STRING_OPERATIONS()
};
