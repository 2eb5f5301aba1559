#include "buffers/radix85.h"

const char kzRadix85Alphabet[86] = "!#$%()*+,-./0123456789:;=?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]_abcdefghijklmnopqrstuvwxy&{|}";

namespace {

// The digit of each byte, -1 for bytes outside the alphabet.
struct DigitTable {
    signed char digit[256];
    DigitTable() {
        for (signed char& d : digit) d = -1;
        for (int i = 0; i < 85; ++i) digit[static_cast<unsigned char>(kzRadix85Alphabet[i])] = static_cast<signed char>(i);
    }
};
const DigitTable kDigits;

} // namespace

int decodeDigit85(const char* p) {
    const int d = kDigits.digit[static_cast<unsigned char>(*p)];
    return d < 0 ? 0 : d;
}

int encodeGroup85(unsigned int value, char* out) {
    if (value == 0xFFFFFFFFu || value == 0) {
        out[0] = value ? '^' : 'z';
        return 1;
    }
    for (int i = 0; i < 5; ++i) {
        out[i] = kzRadix85Alphabet[value % 85];
        value /= 85;
    }
    return 5;
}

int decodeGroup85(const char* in, unsigned int& value, const int& available) {
    if (available < 1) return 0;
    if (in[0] == 'z' || in[0] == '^') {
        value = in[0] == 'z' ? 0 : 0xFFFFFFFFu;
        return 1;
    }
    if (available < 5) return 0;
    unsigned int v = 0;
    for (int i = 4; i >= 0; --i) v = v * 85 + static_cast<unsigned int>(decodeDigit85(in + i));
    value = v;
    return 5;
}

bool isRadix85Character(unsigned char c) { return c == 'z' || c == '^' || kDigits.digit[c] >= 0; }
