// Texts of string records for tests: the text of a record of any template, each character
// narrowed to a byte, and a 16-bit path record made from a std::string.
#pragma once

#include <string>

#include "strings/kz_string.h"

template <typename S>
std::string textOf(const S& s) {
    std::string out;
    for (int i = 0; i < s.length; ++i) out += static_cast<char>(s.data[i]);
    return out;
}

inline _kzString<500> wide(const std::string& text) { return _kzString<500>(text.c_str()); }
inline _kzString8_allSize<500> narrow(const std::string& text) {
    return _kzString8_allSize<500>(text.c_str());
}
