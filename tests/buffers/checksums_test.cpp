// Checksums against public check values (fuzz/buffers_fuzz.cpp compares CRC-32 with zlib's on
// arbitrary runs), and the random number families at the values their definitions give.
#include <string>

#include <gtest/gtest.h>

#include "buffers/checksums.h"
#include "buffers/random_numbers.h"
#include "tests/support/text_of.h"

namespace {

const uint8_t* bytes(const std::string& text) { return reinterpret_cast<const uint8_t*>(text.data()); }

TEST(Checksums, PublicCheckValuesAndTheSmallHelpers) {
    const std::string check = "123456789";
    EXPECT_EQ(kzCrc32(bytes(check), 9), 0xCBF43926u);
    EXPECT_EQ(kzCrc32(bytes(check), 0), 0u);
    EXPECT_EQ(kzCrc16(bytes(check), 9), 0x31C3);
    EXPECT_EQ(kzCrc16Fold(bytes(check), 9), 0x31 ^ 0xC3);
    EXPECT_EQ(kzCrc64(bytes(check), 9), 0xE9C6D914C4B8D9CAull);
    EXPECT_EQ(kzBitReverse(0b1101, 4), 0b1011u);
    EXPECT_EQ(kzBitReverse(1, 64) + kzBitReverse(0xFF, 0), 0x8000000000000000ull);
    const uint8_t run[] = {1, 2, 4, 8};
    EXPECT_EQ(kzXorChecksum(run, 2, true), 1 ^ 4);
    EXPECT_EQ(kzXorChecksum(run, 4, false), 15);
    EXPECT_EQ(kzHashText(_kzString<10>()), 0xC141B36A5F42296Dull);
    uint64_t state = 0;
    EXPECT_EQ(kzRandom64(state), kzHashText(_kzString<10>())); // the same round on the default state
    const _kzString<10> text("ab");
    const uint8_t stored[] = {'a', 0, 'b', 0};
    uint64_t x = kzCrc64(stored, 4);
    x ^= x >> 12;
    x ^= x << 25;
    x ^= x >> 27;
    EXPECT_EQ(kzHashText(text), x * 0x2545F4914F6CDD1Dull);
}

TEST(RandomNumbers, EachFamilyAtItsDefinedValues) {
    uint32_t seed = 0;
    EXPECT_NEAR(kzRandomParkMiller(seed) + kzRandomParkMiller(seed), 7.826e-06f + 282475249.0f * 4.656613e-10f, 1e-7f);
    EXPECT_EQ(seed, 282475249u); // 16807 squared, below the modulus
    uint64_t a = 42, b = 42, c = 42, d = 42;
    EXPECT_EQ(kzRandom32(a), static_cast<uint32_t>(kzRandom64(b) >> 32));
    EXPECT_FLOAT_EQ(kzRandomFloat(c), static_cast<float>(static_cast<double>(kzRandom64(d)) * 5.421010862427522e-20));
    uint64_t five = 0xFFFFFFFFFFFFFFE0ull, four = 0xFFFFFFFFFFFFFFF0ull; // zero bits: five stay, four are mixed
    kzBbsCheckSeed(five);
    kzBbsCheckSeed(four);
    EXPECT_EQ(five ^ four, 0x10ull ^ 0xAA55AA55AA55AA55ull);
    uint64_t low = 12345, stepped = 12345 ^ 0xAA55AA55AA55AA55ull; // the seed has too many zero bits
    const uint64_t bits = kzBbsLowBits64(low);
    for (int i = 63; i >= 0; --i) EXPECT_EQ((bits >> i) & 1, static_cast<uint64_t>(kzBbsStepLowBit(stepped, 0xF2FED3C5)));
    EXPECT_EQ(low, stepped);
    EXPECT_EQ(textOf(kzRandomText9(0, 1)), textOf(kzRandomText9(1, 1))); // a state of 0 counts as 1
    EXPECT_EQ(textOf(kzRandomText9(0, 2)), "804913594"); // computed independently
    EXPECT_EQ(kzRandomText20(7, 1).length + kzRandomText20(7, 3).length, 20); // kind 3 is empty
}

} // namespace
