// Checksums over byte runs: bit reversal, CRC-32 (the common one of zlib and Ethernet),
// CRC-16/XMODEM, CRC-64 (Jones polynomial, reflected, start 0), an 8-bit XOR and a 64-bit
// hash of a 16-bit string. The CRC-32 table is built at first use and is the only state.
#pragma once

#include <cstdint>

#include "strings/kz_string.h"

// The low `bits` bits of `value` in reversed order; 0 for `bits` below 1.
uint64_t kzBitReverse(uint64_t value, signed char bits);

void kzCrc32BuildTable();
uint32_t kzCrc32(const uint8_t* data, const uint32_t& length);
// Runs the table over the bytes with no start or end step: the caller starts `crc` at
// 0xFFFFFFFF, inverts the end, and has built the table (kzCrc32 or kzCrc32BuildTable).
void kzCrc32Update(uint32_t& crc, const uint8_t* data, uint32_t length);

uint16_t kzCrc16(const uint8_t* data, uint64_t length);
// The CRC-16 folded to 8 bits: high byte XOR low byte.
uint8_t kzCrc16Fold(const uint8_t* data, uint64_t length);
uint64_t kzCrc64(const uint8_t* data, int64_t length);

// XOR of `length` bytes in a row, or with `everySecondByte` of the low bytes of a 16-bit
// text of `length` characters (so 2 * length bytes are read).
int kzXorChecksum(const uint8_t* data, uint64_t length, bool everySecondByte);

// The hash of a 16-bit text: its CRC-64 through one xorshift* round.
uint64_t kzHashText16(const unsigned short* chars, int length);
template <int N>
uint64_t kzHashText(const _kzString<N>& text) {
    return kzHashText16(text.data, text.length);
}
