#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "strings/kz_string8.h"

namespace {

template <int N>
std::string text(const _kzString8_allSize<N>& s) {
    return std::string(s.data, s.length);
}

// The record invariants: length within capacity and a terminator behind the text.
template <int N>
void expectSound(const _kzString8_allSize<N>& s) {
    ASSERT_LE(s.length, N);
    EXPECT_EQ(s.data[s.length], 0);
}

TEST(String8, EveryWayInCutsAtCapacity) {
    const char* const longText = "abcdefghij"; // 10 characters into a capacity of 6
    const unsigned short wideText[] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 0};
    _kzString8_allSize<6> assigned, appended("abcd");
    assigned = std::string(longText);
    appended.add("xyz");
    for (const _kzString8_allSize<6>& r :
         {_kzString8_allSize<6>(longText), _kzString8_allSize<6>(longText, 10), assigned,
          _kzString8_allSize<6>(_kzString8_allSize<20>(longText).asUni()), _kzString8_allSize<6>(wideText)}) {
        expectSound(r);
        EXPECT_EQ(text(r), "abcdef");
    }
    EXPECT_EQ(text(appended), "abcdxy");
    appended += 'q';
    appended.addNr(7);
    EXPECT_EQ(text(appended + _kzString8_allSize<6>("z")), "abcdxy"); // a full string stays full
}

TEST(String8, FullRecordOf250TakesNoMore) {
    _kzString8_allSize<250> s(std::string(250, 'x').c_str());
    ASSERT_EQ(s.length, 250);
    s += 'y';
    s += "y";
    EXPECT_EQ(s.length, 250);
    EXPECT_EQ(s.data[250], 0);
    EXPECT_EQ(s.data[249], 'x');
}

TEST(String8, TextLengthIsReducedTo16Bits) {
    const std::string exactly64k(65536, 'a');
    _kzString8_allSize<10> empty(exactly64k.c_str());
    EXPECT_EQ(empty.length, 0);
    EXPECT_EQ(empty.data[0], 0);

    std::string over64k(65540, 'a');
    over64k.replace(0, 5, "wxyzq");
    _kzString8_allSize<10> four(over64k.c_str());
    EXPECT_EQ(text(four), "wxyz");

    // The counted forms reduce the count the same way.
    _kzString8_allSize<10> counted(over64k.c_str(), 65540);
    EXPECT_EQ(text(counted), "wxyz");
    _kzString8_allSize<10> appended("a");
    appended += over64k.c_str();
    EXPECT_EQ(text(appended), "awxyz");
}

TEST(String8, WideTextIsScannedAtMost1024Characters) {
    std::vector<unsigned short> wide(2000, 'w');
    wide.push_back(0);
    _kzString8_allSize<2000> s(wide.data());
    EXPECT_EQ(s.length, 1024);
    EXPECT_EQ(s.data[1024], 0);
    // A 16-bit character keeps its low byte.
    const unsigned short high[] = {0x1234, 0x41, 0};
    _kzString8_allSize<10> narrowed(high);
    EXPECT_EQ(narrowed.length, 2);
    EXPECT_EQ(static_cast<unsigned char>(narrowed.data[0]), 0x34);
}

TEST(String8, SetLengthAndCalcLengthStayInsideTheRecord) {
    _kzString8_allSize<250> s("abcdef");
    s.setLength(32767);
    EXPECT_EQ(s.length, 250);
    EXPECT_EQ(s.data[250], 0);
    _kzString8_allSize<8> full;
    std::memset(full.data, 'x', sizeof full.data);
    full.calcLength();
    EXPECT_EQ(full.length, 8);
    EXPECT_EQ(full.data[8], 0);
}

TEST(String8, IsEqualIgnoresCaseOnlyForAsciiLetters) {
    const _kzString8_allSize<500> option("-LoG");
    EXPECT_TRUE(option.isEqual("-log"));
    EXPECT_FALSE(option.isEqual("-lo"));
    EXPECT_FALSE(option.isEqual("-logs"));
    EXPECT_TRUE(_kzString8_allSize<10>().isEqual(""));
    // Bytes above 0x7F are not folded: 0xE4 and 0xC4 differ.
    EXPECT_FALSE(_kzString8_allSize<10>("\xE4").isEqual("\xC4"));
    EXPECT_TRUE(_kzString8_allSize<10>("\xE4").isEqual("\xE4"));
}

TEST(String8, EndsWithReplaceAndMakeUpper) {
    _kzString8_allSize<20> s("FILE.TXT");
    EXPECT_TRUE(s.endsWith('T'));
    EXPECT_FALSE(s.endsWith('t')); // one character compares exactly
    EXPECT_FALSE(_kzString8_allSize<20>().endsWith('\0'));

    s = "aAbBa";
    s.replace('a', '-');
    EXPECT_EQ(text(s), "--bB-"); // both cases found, the replacement taken as given
    s.replace('B', 'x');
    EXPECT_EQ(text(s), "--xx-");

    s = "kzServer\xE4sole-1";
    s.makeUpper();
    EXPECT_EQ(text(s), "KZSERVER\xE4SOLE-1");
    s.makeLower();
    EXPECT_EQ(text(s), "kzserver\xE4sole-1");
}

TEST(String8, NumbersAppendUnderTheCapacity) {
    _kzString8_allSize<30> s("n=");
    s.addNr(-42);
    s += ' ';
    s.addNr(static_cast<long long>(-9223372036854775807LL - 1));
    EXPECT_EQ(text(s), "n=-42 -9223372036854775808");

    s.clear();
    s.addNr(7, static_cast<unsigned char>(3));
    s += ' ';
    s.addNr(1234, static_cast<unsigned char>(3));
    s += ' ';
    s.addNr(-5, static_cast<unsigned char>(4)); // the zeros stand before the sign
    EXPECT_EQ(text(s), "007 1234 00-5");

    _kzString8_allSize<6> small("abc");
    small.addNr(123456);
    EXPECT_EQ(text(small), "abc123");
    small = "abcd";
    small.addNr(5LL, static_cast<unsigned char>(5));
    EXPECT_EQ(text(small), "abcd00");
}

} // namespace
