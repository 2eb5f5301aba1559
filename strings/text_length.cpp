#include "strings/text_length.h"

#include <cstring>

namespace kzstr {

int length8(const char* text) { return static_cast<int>(std::strlen(text) & 0xFFFF); }

int length16(const unsigned short* text) {
    int n = 0;
    while (n < kWideScanLimit && text[n] != 0) ++n;
    return n;
}

} // namespace kzstr
