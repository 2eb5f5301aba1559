#include "buffers/checksums.h"

#include <array>
#include <cstring>

#include "buffers/crc32_folding.h"
#include "buffers/random_numbers.h"

namespace {

// CRC-32 folds long runs by carry-less multiplication where the processor can; otherwise it
// runs sixteen bytes a step through sixteen tables ("slicing by 16"). Table 0 is the classic
// byte table and gives the same result a byte at a time. All are built at first use.
uint32_t crc32Tables[16][256];
bool crc32TableBuilt = false;

// CRC-16/XMODEM, most significant bit first.
constexpr std::array<uint16_t, 256> makeCrc16Table() {
    std::array<uint16_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i) {
        unsigned crc = i << 8;
        for (int round = 0; round < 8; ++round) crc = (crc & 0x8000) ? (crc << 1) ^ 0x1021 : crc << 1;
        table[i] = static_cast<uint16_t>(crc);
    }
    return table;
}
constexpr std::array<uint16_t, 256> kCrc16Table = makeCrc16Table();

// CRC-64 with the Jones polynomial, reflected: 0x0, 0x7AD870C830358979, 0xF5B0E190606B12F2, ...
constexpr std::array<uint64_t, 256> makeCrc64Table() {
    std::array<uint64_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i) {
        uint64_t crc = i;
        for (int round = 0; round < 8; ++round) crc = (crc & 1) ? (crc >> 1) ^ 0x95AC9329AC4BC9B5ull : crc >> 1;
        table[i] = crc;
    }
    return table;
}
constexpr std::array<uint64_t, 256> kCrc64Table = makeCrc64Table();

uint32_t load32(const uint8_t* p) {
    uint32_t v;
    std::memcpy(&v, p, sizeof v);
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    v = __builtin_bswap32(v);
#endif
    return v;
}

uint32_t crc32Run(uint32_t crc, const uint8_t* p, uint64_t n) {
    const uint64_t folded = kzCrc32Folded(crc, p, n);
    p += folded;
    n -= folded;
    const auto& t = crc32Tables;
    for (; n >= 16; n -= 16, p += 16) {
        const uint32_t a = crc ^ load32(p), b = load32(p + 4), c = load32(p + 8), d = load32(p + 12);
        crc = t[15][a & 0xFF] ^ t[14][(a >> 8) & 0xFF] ^ t[13][(a >> 16) & 0xFF] ^ t[12][a >> 24] ^
              t[11][b & 0xFF] ^ t[10][(b >> 8) & 0xFF] ^ t[9][(b >> 16) & 0xFF] ^ t[8][b >> 24] ^
              t[7][c & 0xFF] ^ t[6][(c >> 8) & 0xFF] ^ t[5][(c >> 16) & 0xFF] ^ t[4][c >> 24] ^
              t[3][d & 0xFF] ^ t[2][(d >> 8) & 0xFF] ^ t[1][(d >> 16) & 0xFF] ^ t[0][d >> 24];
    }
    for (; n > 0; --n, ++p) crc = (crc >> 8) ^ t[0][(crc ^ *p) & 0xFF];
    return crc;
}

} // namespace

uint64_t kzBitReverse(uint64_t value, signed char bits) {
    uint64_t result = 0;
    for (int i = 0; i < bits; ++i) {
        result = (result << 1) | (value & 1);
        value >>= 1;
    }
    return result;
}

void kzCrc32BuildTable() {
    std::memset(crc32Tables, 0, sizeof crc32Tables);
    for (unsigned i = 0; i < 256; ++i) {
        // From the unreflected polynomial: reverse the byte, shift it through eight rounds,
        // reverse the result; the same as the usual table for 0xEDB88320.
        uint32_t crc = static_cast<uint32_t>(kzBitReverse(i, 8)) << 24;
        for (int round = 0; round < 8; ++round) crc = (crc & 0x80000000u) ? (crc << 1) ^ 0x04C11DB7u : crc << 1;
        crc32Tables[0][i] = static_cast<uint32_t>(kzBitReverse(crc, 32));
    }
    for (unsigned i = 0; i < 256; ++i)
        for (int k = 1; k < 16; ++k)
            crc32Tables[k][i] = (crc32Tables[k - 1][i] >> 8) ^ crc32Tables[0][crc32Tables[k - 1][i] & 0xFF];
    crc32TableBuilt = true;
}

uint32_t kzCrc32(const uint8_t* data, const uint32_t& length) {
    if (!crc32TableBuilt) kzCrc32BuildTable();
    if (length == 0) return 0;
    return ~crc32Run(0xFFFFFFFFu, data, length);
}

void kzCrc32Update(uint32_t& crc, const uint8_t* data, uint32_t length) { crc = crc32Run(crc, data, length); }

uint16_t kzCrc16(const uint8_t* data, uint64_t length) {
    unsigned crc = 0;
    for (uint64_t i = 0; i < length; ++i) crc = ((crc << 8) & 0xFFFF) ^ kCrc16Table[(data[i] ^ (crc >> 8)) & 0xFF];
    return static_cast<uint16_t>(crc);
}

uint8_t kzCrc16Fold(const uint8_t* data, uint64_t length) {
    const uint16_t crc = kzCrc16(data, length);
    return static_cast<uint8_t>((crc >> 8) ^ (crc & 0xFF));
}

uint64_t kzCrc64(const uint8_t* data, int64_t length) {
    uint64_t crc = 0;
    for (int64_t i = 0; i < length; ++i) crc = (crc >> 8) ^ kCrc64Table[(crc & 0xFF) ^ data[i]];
    return crc;
}

int kzXorChecksum(const uint8_t* data, uint64_t length, bool everySecondByte) {
    const uint64_t step = everySecondByte ? 2 : 1;
    uint8_t x = 0;
    for (uint64_t i = 0; i < length; ++i) x ^= data[i * step];
    return x;
}

uint64_t kzHashText16(const unsigned short* chars, int length) {
    // One xorshift* round applied to the default state of kzRandom64.
    constexpr uint64_t kEmpty = 0xC141B36A5F42296Dull;
    if (length <= 0) return kEmpty;
    uint8_t bytes[2];
    uint64_t x = 0;
    for (int i = 0; i < length; ++i) {
        bytes[0] = static_cast<uint8_t>(chars[i] & 0xFF); // as stored: low byte first
        bytes[1] = static_cast<uint8_t>(chars[i] >> 8);
        for (uint8_t b : bytes) x = (x >> 8) ^ kCrc64Table[(x & 0xFF) ^ b];
    }
    return x == 0 ? kEmpty : kzXorshiftStarRound(x);
}
