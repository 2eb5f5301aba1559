// CRC-32 by carry-less multiplication: four 128-bit lanes fold 64 bytes a step, then one
// lane, then a Barrett reduction to 32 bits (the method of Intel's "Fast CRC Computation for
// Generic Polynomials Using PCLMULQDQ"). On x86-64 processors with PCLMULQDQ and SSE4.1 only;
// elsewhere, and on shorter runs, the tables do the work.
#include "buffers/crc32_folding.h"

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#include <immintrin.h>

namespace {

// Folding constants for the reflected polynomial 0xEDB88320: x^(4*128+32), x^(4*128-32),
// x^(128+32), x^(128-32), x^64 mod P, and the Barrett pair (P and its quotient).
alignas(16) const uint64_t kFold4[2] = {0x0154442bd4, 0x01c6e41596};
alignas(16) const uint64_t kFold1[2] = {0x01751997d0, 0x00ccaa009e};
alignas(16) const uint64_t kFold64[2] = {0x0163cd6124, 0x0000000000};
alignas(16) const uint64_t kBarrett[2] = {0x01db710641, 0x01f7011641};

__attribute__((target("pclmul,sse4.1"))) inline __m128i fold(__m128i lane, __m128i constants, __m128i next) {
    const __m128i low = _mm_clmulepi64_si128(lane, constants, 0x00);
    const __m128i high = _mm_clmulepi64_si128(lane, constants, 0x11);
    return _mm_xor_si128(_mm_xor_si128(high, low), next);
}

__attribute__((target("pclmul,sse4.1"))) uint32_t foldRun(uint32_t crc, const uint8_t* p, uint64_t n) {
    const auto load = [](const uint8_t* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); };
    __m128i x1 = _mm_xor_si128(load(p), _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i x2 = load(p + 16), x3 = load(p + 32), x4 = load(p + 48);
    __m128i k = _mm_load_si128(reinterpret_cast<const __m128i*>(kFold4));
    for (p += 64, n -= 64; n >= 64; p += 64, n -= 64) {
        x1 = fold(x1, k, load(p));
        x2 = fold(x2, k, load(p + 16));
        x3 = fold(x3, k, load(p + 32));
        x4 = fold(x4, k, load(p + 48));
    }
    k = _mm_load_si128(reinterpret_cast<const __m128i*>(kFold1));
    x1 = fold(fold(fold(x1, k, x2), k, x3), k, x4);
    for (; n >= 16; p += 16, n -= 16) x1 = fold(x1, k, load(p));
    // 128 bits to 64, then to 32 by Barrett reduction.
    const __m128i mask32 = _mm_setr_epi32(~0, 0, ~0, 0);
    x2 = _mm_clmulepi64_si128(x1, k, 0x10);
    x1 = _mm_xor_si128(_mm_srli_si128(x1, 8), x2);
    k = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kFold64));
    x2 = _mm_srli_si128(x1, 4);
    x1 = _mm_xor_si128(_mm_clmulepi64_si128(_mm_and_si128(x1, mask32), k, 0x00), x2);
    k = _mm_load_si128(reinterpret_cast<const __m128i*>(kBarrett));
    x2 = _mm_and_si128(_mm_clmulepi64_si128(_mm_and_si128(x1, mask32), k, 0x10), mask32);
    x2 = _mm_clmulepi64_si128(x2, k, 0x00);
    return static_cast<uint32_t>(_mm_extract_epi32(_mm_xor_si128(x1, x2), 1));
}

} // namespace

uint64_t kzCrc32Folded(uint32_t& crc, const uint8_t* data, uint64_t length) {
    static const bool available = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    if (!available || length < 64) return 0;
    const uint64_t folded = length & ~uint64_t{15};
    crc = foldRun(crc, data, folded);
    return folded;
}

#else

uint64_t kzCrc32Folded(uint32_t&, const uint8_t*, uint64_t) { return 0; }

#endif
