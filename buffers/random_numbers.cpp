#include "buffers/random_numbers.h"

namespace {

constexpr uint64_t kDefaultState = 0x5B6A6A55544C46B7ull;
constexpr uint64_t kBbsModulus = 0xF2FED3C5ull;
constexpr uint64_t kBbsParityMask = 0x634A74ABull;

// One Park-Miller step (modulus 2^31 - 1) in Schrage's form; a seed of 0 counts as 1.
uint32_t parkMillerStep(uint32_t seed) {
    if (seed == 0) seed = 1;
    int32_t next = static_cast<int32_t>((seed % 127773u) * 16807u - (seed / 127773u) * 2836u);
    if (next <= 0) next += 0x7FFFFFFF;
    return static_cast<uint32_t>(next);
}

int parity(uint64_t v) { return __builtin_parityll(v); }

template <typename Output>
uint64_t bbs64(uint64_t& state, Output bitOf) {
    kzBbsCheckSeed(state);
    uint64_t x = state, result = 0;
    for (int i = 0; i < 64; ++i) {
        x = (x * x) % kBbsModulus;
        result = (result << 1) | static_cast<uint64_t>(bitOf(x));
    }
    state = x;
    return result;
}

template <int N>
_kzString8_allSize<N> randomText(uint32_t seed, int kind, int count) {
    static const char kText[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890_!/()=abcdefghijklmnopqrstuvwxyz";
    static const char kDigits[] = "1234567890";
    _kzString8_allSize<N> text;
    if (kind < 0 || kind > 2) return text;
    for (int i = 0; i < count; ++i) {
        seed = parkMillerStep(seed);
        text += kind == 0 ? static_cast<char>(seed & 0xFF) : kind == 1 ? kText[seed % 68] : kDigits[seed % 10];
    }
    return text;
}

} // namespace

float kzRandomParkMiller(uint32_t& seed) {
    seed = parkMillerStep(seed);
    return static_cast<float>(seed) * 4.656613e-10f;
}

uint64_t kzRandom64(uint64_t& state) {
    if (state == 0) state = kDefaultState;
    return kzXorshiftStarRound(state);
}

uint32_t kzRandom32(uint64_t& state) { return static_cast<uint32_t>(kzRandom64(state) >> 32); }

float kzRandomFloat(uint64_t& state) { return static_cast<float>(kzRandom64(state)) * 5.421011e-20f; }

double kzRandomDouble(uint64_t& state) { return static_cast<double>(kzRandom64(state)) * 5.421010862427522e-20; }

void kzBbsCheckSeed(uint64_t& state) {
    const int zeros = 64 - __builtin_popcountll(state);
    if (zeros < 5 || zeros > 55) state ^= 0xAA55AA55AA55AA55ull;
}

int kzBbsStepLowBit(uint64_t& state, uint64_t modulus) {
    state = (state * state) % modulus;
    return static_cast<int>(state & 1);
}

int kzBbsStepParity(uint64_t& state, uint64_t modulus, uint64_t mask) {
    state = (state * state) % modulus;
    return parity(state & mask);
}

uint64_t kzBbsParity64(uint64_t& state) {
    return bbs64(state, [](uint64_t x) { return parity(x & kBbsParityMask); });
}

uint64_t kzBbsLowBits64(uint64_t& state) {
    return bbs64(state, [](uint64_t x) { return static_cast<int>(x & 1); });
}

_kzString8_allSize<10> kzRandomText9(uint32_t seed, int kind) { return randomText<10>(seed, kind, 9); }

_kzString8_allSize<20> kzRandomText20(uint32_t seed, int kind) { return randomText<20>(seed, kind, 20); }
