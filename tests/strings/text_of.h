// The text of a string record of any template, each character narrowed to a byte, for
// comparing with a literal in a test.
#pragma once

#include <string>

template <typename S>
std::string textOf(const S& s) {
    std::string out;
    for (int i = 0; i < s.length; ++i) out += static_cast<char>(s.data[i]);
    return out;
}
