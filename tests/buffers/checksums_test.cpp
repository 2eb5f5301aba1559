// Checksums at public check values, CRC-32 against zlib's on runs whole and in pieces, and
// the random number families at values computed independently from their definitions
// (Python's integers, the same seeds).
#include <zlib.h>

#include <algorithm>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "buffers/checksums.h"
#include "buffers/random_numbers.h"
#include "tests/support/text_of.h"

namespace {

const uint8_t* bytes(const char* text) { return reinterpret_cast<const uint8_t*>(text); }

struct Row {
    const char* what;
    uint64_t got, expected;
};

TEST(Checksums, PublicCheckValuesAndTheSmallHelpers) {
    const uint8_t run[] = {1, 2, 4, 8};
    const Row rows[] = {{"CRC-32", kzCrc32(bytes("123456789"), 9), 0xCBF43926},
                        {"CRC-32 of nothing", kzCrc32(bytes(""), 0), 0},
                        {"CRC-16", kzCrc16(bytes("123456789"), 9), 0x31C3},
                        {"CRC-16 folded", kzCrc16Fold(bytes("123456789"), 9), 0x31 ^ 0xC3},
                        {"CRC-64", kzCrc64(bytes("123456789"), 9), 0xE9C6D914C4B8D9CA},
                        {"4 bits reversed", kzBitReverse(0b1101, 4), 0b1011},
                        {"64 bits reversed", kzBitReverse(1, 64), 0x8000000000000000},
                        {"no bits", kzBitReverse(0xFF, 0), 0},
                        {"XOR of every second byte", static_cast<uint64_t>(kzXorChecksum(run, 2, true)), 1 ^ 4},
                        {"XOR of a run", static_cast<uint64_t>(kzXorChecksum(run, 4, false)), 15},
                        {"hash of the empty text", kzHashText(_kzString<10>()), 0xC141B36A5F42296D},
                        {"hash of \"ab\"", kzHashText(_kzString<10>("ab")), 0x31F50AF77A529F13}};
    for (const Row& r : rows) EXPECT_EQ(r.got, r.expected) << r.what;
}

// Runs of every length up to 4000 bytes, past the lengths where the folding path takes over,
// whole and split at arbitrary points.
TEST(Checksums, Crc32AsZlibComputesIt) {
    std::mt19937 random(7);
    std::string data;
    for (uint32_t length = 0; length <= 4000; ++length) {
        const auto* run = reinterpret_cast<const uint8_t*>(data.data());
        const uint32_t expected = static_cast<uint32_t>(crc32(0, run, length));
        ASSERT_EQ(kzCrc32(run, length), expected) << length << " bytes";
        uint32_t running = 0xFFFFFFFFu;
        for (uint32_t done = 0; done < length;) {
            const uint32_t piece = std::min<uint32_t>(length - done, 1 + random() % 600);
            kzCrc32Update(running, run + done, piece);
            done += piece;
        }
        ASSERT_EQ(~running, expected) << length << " bytes in pieces";
        data += static_cast<char>(random());
    }
}

TEST(RandomNumbers, EachFamilyAtItsDefinedValues) {
    uint32_t seed = 0; // counts as 1
    EXPECT_FLOAT_EQ(kzRandomParkMiller(seed), 7.826369e-06f);
    EXPECT_FLOAT_EQ(kzRandomParkMiller(seed), 0.13153779f);
    uint64_t state64 = 42, state32 = 42, stateFloat = 42, stateDouble = 42, unset = 0;
    uint64_t five = 0xFFFFFFFFFFFFFFE0, four = 0xFFFFFFFFFFFFFFF0, many = 0x1FF, tooMany = 0xFF;
    for (uint64_t* state : {&five, &four, &many, &tooMany}) kzBbsCheckSeed(*state);
    uint64_t low = 12345, parity = 12345;
    const Row rows[] = {{"xorshift64*", kzRandom64(state64), 0x56CE4AB7719BA3A0},
                        {"its next value", kzRandom64(state64), 0xC841EB53EBBB2DDA},
                        {"a state of 0", kzRandom64(unset), 0xC141B36A5F42296D},
                        {"32 bits", kzRandom32(state32), 0x56CE4AB7},
                        {"5 zero bits stay", five, 0xFFFFFFFFFFFFFFE0},
                        {"4 zero bits are mixed", four, 0x55AA55AA55AA55A5},
                        {"55 zero bits stay", many, 0x1FF},
                        {"56 zero bits are mixed", tooMany, 0xAA55AA55AA55AAAA},
                        {"64 low bits", kzBbsLowBits64(low), 0x34C3481A20D0C39B},
                        {"the state they leave", low, 0xB0BC5B3D},
                        {"64 parities", kzBbsParity64(parity), 0x2738809C2769C7D5}};
    for (const Row& r : rows) EXPECT_EQ(r.got, r.expected) << r.what;
    EXPECT_FLOAT_EQ(kzRandomFloat(stateFloat), 0.33908528f);
    EXPECT_DOUBLE_EQ(kzRandomDouble(stateDouble), 0.339085264001922);
    struct Text {
        uint32_t seed;
        int kind;
        std::string expected;
    };
    const Text texts[] = {{5, 1, "ntkEsZsty"}, {5, 2, "665774105"}, {0, 2, "804913594"}, {1, 2, "804913594"},
                          {5, 3, ""},          {5, -1, ""}};
    for (const Text& t : texts) EXPECT_EQ(textOf(kzRandomText9(t.seed, t.kind)), t.expected) << t.seed << "/" << t.kind;
    EXPECT_EQ(textOf(kzRandomText9(5, 0)), "C\xB5@\xD4\x8C\xE9" "8\xF9R"); // raw low bytes
    EXPECT_EQ(textOf(kzRandomText20(5, 1)), "ntkEsZsty!x2_OjlGVto");
}

} // namespace
