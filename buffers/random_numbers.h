// Pseudo-random numbers from seeds and state words the caller owns: Park-Miller's minimal
// standard generator, xorshift64* with its float forms, Blum Blum Shub steps, and random
// texts. None of them keeps state of its own.
#pragma once

#include <cstdint>

#include "strings/kz_string8.h"

// Park-Miller in Schrage's form: the new seed (a seed of 0 counts as 1) as a float in (0, 1).
float kzRandomParkMiller(uint32_t& seed);

// One xorshift* round: the state word shifted three times, and the output from it.
inline uint64_t kzXorshiftStarRound(uint64_t& x) {
    x ^= x >> 12;
    x ^= x << 25;
    x ^= x >> 27;
    return x * 0x2545F4914F6CDD1Dull;
}

// xorshift64*: a state of 0 is first replaced by 0x5B6A6A55544C46B7.
uint64_t kzRandom64(uint64_t& state);
uint32_t kzRandom32(uint64_t& state); // the upper 32 bits of the same output
float kzRandomFloat(uint64_t& state); // in [0, 1]
double kzRandomDouble(uint64_t& state);

// Blum Blum Shub, x <- x^2 mod m.
void kzBbsCheckSeed(uint64_t& state); // fewer than 5 or more than 55 zero bits: mixed with 0xAA55...
int kzBbsStepLowBit(uint64_t& state, uint64_t modulus);
int kzBbsStepParity(uint64_t& state, uint64_t modulus, uint64_t mask);
uint64_t kzBbsParity64(uint64_t& state);
uint64_t kzBbsLowBits64(uint64_t& state);

// Texts of 9 or 20 characters from a seed. `kind` 0: raw low bytes, 1: letters, digits and
// a few signs, 2: digits; any other kind gives an empty text.
_kzString8_allSize<10> kzRandomText9(uint32_t seed, int kind);
_kzString8_allSize<20> kzRandomText20(uint32_t seed, int kind);
