#include <cstdio>
#include <cstdlib>

#include "strings/number_text.h"
#include "strings/string_numbers.h"

namespace kzstr {

int formatInt(char* buf, long long v) { return std::snprintf(buf, 24, "%lld", v); }

int formatUnsigned(char* buf, unsigned long long v) { return std::snprintf(buf, 24, "%llu", v); }

int formatHex(char* buf, unsigned long long v, HexWidth width) {
    // The narrow widths print the low 32 bits, which is how printf shows a negative int.
    const unsigned low = static_cast<unsigned>(v);
    switch (width) {
    case HexWidth::Byte:
        return std::snprintf(buf, 24, "%02X", low);
    case HexWidth::Short:
        return std::snprintf(buf, 24, "%04X", low);
    case HexWidth::Int:
        return std::snprintf(buf, 24, "%08X", low);
    case HexWidth::LongLong:
        return std::snprintf(buf, 24, "%016llX", v);
    }
    return 0;
}

long long parseHex64(const char* text) { return std::strtoll(text, nullptr, 16); }

bool parseHex32(const char* text, unsigned int* value) { return std::sscanf(text, "%X", value) == 1; }

bool signExtendField(unsigned int value, int bits, long long* result) {
    switch (bits) {
    case 32:
        *result = static_cast<int32_t>(value);
        return true;
    case 16:
        *result = static_cast<int16_t>(value & 0xFFFF);
        return true;
    case 8:
        *result = static_cast<int8_t>(value & 0xFF);
        return true;
    default:
        *result = 0;
        return false;
    }
}

} // namespace kzstr

_kzString<25> kzIntToText(const int& v) {
    char text[24];
    std::snprintf(text, sizeof text, "%d", v);
    _kzString<25> result;
    kzstr::assign(result.data, 25, text, kzstr::length8(text), kzstr::ZeroExtend());
    result.calcLength();
    return result;
}

_kzString<25> kzFloatToText(const int& decimals, const unsigned short& separator, float value) {
    float scale = 1.0f;
    for (int i = 0; i < decimals; ++i) scale *= 10.0f;
    const int whole = static_cast<int>(value);
    const float fraction = (value - static_cast<float>(whole)) * scale;
    const int rounded = static_cast<int>(static_cast<double>(fraction) + (fraction < 0 ? -0.5 : 0.5));

    _kzString<25> result;
    result.addNr(whole);
    result += separator;
    // The fraction's digits keep their own sign and may have grown by the rounding.
    char digits[24];
    const int n = kzstr::formatInt(digits, rounded);
    for (int i = n; i < decimals; ++i) result += '0';
    result.add(digits);
    return result;
}
