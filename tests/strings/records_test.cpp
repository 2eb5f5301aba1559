// The string records themselves: where text is cut, how outside text is measured, how bytes
// above ASCII widen and narrow, case rules, numbers, and the older layouts. The broad
// behaviour of the operations is checked against a model by string_model_test.cpp.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"
#include "strings/kz_string8_old.h"
#include "tests/support/text_of.h"

namespace {

// Appending, adding numbers and setting the length at the capacity: string_model_test.cpp.
TEST(Records, EveryWayInCutsAtCapacityAndAFullRecordTakesNoMore) {
    const char* const longText = "abcdefghij"; // 10 characters into a capacity of 6
    const unsigned short wideText[] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 0};
    _kzString8_allSize<6> assigned;
    assigned = std::string(longText);
    for (const _kzString8_allSize<6>& r :
         {_kzString8_allSize<6>(longText), _kzString8_allSize<6>(longText, 10), assigned,
          _kzString8_allSize<6>(_kzString8_allSize<20>(longText).asUni()), _kzString8_allSize<6>(wideText)}) {
        EXPECT_EQ(textOf(r), "abcdef");
        EXPECT_EQ(r.data[6], 0);
    }
    EXPECT_EQ(textOf(_kzString<5>(_kzString<500>("abcdefgh").asUni())), "abcde"); // capacities meet by views
    assigned = static_cast<_kzString8_Uni_pointer*>(nullptr);
    EXPECT_EQ(textOf(assigned), ""); // no view at all: empty
    assigned.fromChar(nullptr, 3);
    EXPECT_EQ(assigned.length, 0); // nor any text
    _kzString8_allSize<8> unterminated;
    std::memset(unterminated.data, 'x', sizeof unterminated.data);
    unterminated.calcLength();
    EXPECT_EQ(unterminated.length, 8);
    EXPECT_EQ(unterminated.data[8], 0);
}

TEST(Records, OutsideTextIsMeasuredIn16BitsAndWideTextAtMost1024Characters) {
    EXPECT_EQ(_kzString8_allSize<10>(std::string(65536, 'a').c_str()).length, 0);
    std::string over64k(65540, 'a');
    over64k.replace(0, 5, "wxyzq");
    EXPECT_EQ(textOf(_kzString8_allSize<10>(over64k.c_str())), "wxyz");
    EXPECT_EQ(textOf(_kzString8_allSize<10>(over64k.c_str(), 65540)), "wxyz");
    std::vector<unsigned short> wide(2000, 'w');
    wide.push_back(0);
    EXPECT_EQ(_kzString8_allSize<2000>(wide.data()).length, 1024);
    EXPECT_EQ(_kzString<2000>(wide.data()).length, 1024);
}

TEST(Records, BytesAboveAsciiWidenBySignOrByZeroDependingOnTheRoute) {
    const char byte[] = "\xE4";
    _kzString<10> sign(byte), zero;
    sign += '\xE4';
    zero = byte;
    zero.add(byte);
    EXPECT_EQ(sign.data[0], 0xFFE4); // the constructor
    EXPECT_EQ(sign.data[1], 0xFFE4); // and +=
    EXPECT_EQ(zero.data[0], 0x00E4); // assignment
    EXPECT_EQ(zero.data[1], 0x00E4); // and add of char const*
    // Narrowing keeps the low byte, and a 500 record narrows to 499 characters.
    const unsigned short high[] = {0x1234, 0x41, 0};
    EXPECT_EQ(static_cast<unsigned char>(_kzString8_allSize<10>(high).data[0]), 0x34);
    const _kzString<1000> t600(std::string(600, 'n').c_str());
    EXPECT_EQ(t600.to_kzString8_500().length, 499);
    EXPECT_EQ(t600.to_kzString8_250().length, 249);
}

// Folding records and comparing them: string_model_test.cpp.
TEST(Records, CaseRulesAreAsciiOnly) {
    EXPECT_TRUE(_kzString8_allSize<10>("-LoG").isEqual("-log")); // a record against plain text
    EXPECT_FALSE(_kzString8_allSize<10>("\xE4").isEqual("\xC4"));
    _kzString8_allSize<30> s("aAbBa");
    s.replace('a', '-');
    EXPECT_EQ(textOf(s), "--bB-"); // both cases found, the replacement taken as given
    EXPECT_EQ(s.count('-'), 3);
    EXPECT_EQ(s.countCaseSen('b'), 1);
    EXPECT_FALSE(_kzString<10>("\xE4").isEqual("\xE4", 1)); // a sign-extended byte meets no character
}

// The older layouts keep `length` behind the text, on the first even offset at or behind
// its end; clearing an even-size record leaves its filler byte.
TEST(Records, WhereTheOlderLayoutsKeepTheirLength) {
    _kzString8_evenSize_old<6> even6;
    _kzString8_evenSize_old<7> even7;
    _kzString8_UnevenSize_old<7> uneven7;
    _kzString8_UnevenSize_old<8> uneven8;
    _kzString_old<6> wide6; // 16-bit characters: right behind the terminator
    const auto offset = [](const auto& r) { return reinterpret_cast<const char*>(&r.length) - reinterpret_cast<const char*>(&r); };
    EXPECT_EQ(offset(even6), 8);
    EXPECT_EQ(offset(even7), 10);
    EXPECT_EQ(offset(uneven7), 8);
    EXPECT_EQ(offset(uneven8), 10);
    EXPECT_EQ(offset(wide6), 14);
    even6.data[7] = 'f'; // the filler
    even6 = _kzString8_evenSize_old<6>("abc");
    even6.clear();
    EXPECT_EQ(even6.data[7], 'f');
    EXPECT_EQ(even6.data[0], 0);
    // A current record takes an older one over, its text ended behind the length.
    const _kzString8_allSize<6> current(_kzString8_UnevenSize_old<6>("abc"));
    EXPECT_STREQ(current.asChar(), "abc");
    EXPECT_TRUE(current == _kzString8_UnevenSize_old<6>("abc"));
    const _kzString<6> current16(_kzString_old<6>("abc"));
    EXPECT_EQ(textOf(current16), "abc");
    EXPECT_EQ(current16.data[3], 0);
}

TEST(Records, NumbersPadBeforeTheSignAndStopAtTheCapacity) {
    _kzString8_allSize<30> s;
    s.addNr(-9223372036854775807LL - 1);
    s += ' ';
    s.addNr(-5, static_cast<unsigned char>(4));
    EXPECT_EQ(textOf(s), "-9223372036854775808 00-5");
    _kzString8_allSize<6> small("abcd");
    small.addNr(5LL, static_cast<unsigned char>(5));
    EXPECT_EQ(textOf(small), "abcd00");
    // The 16-bit template joins zeros and digits in 20 places first: a wide field loses the digits.
    _kzString<50> wide;
    wide.addNr(5LL, static_cast<unsigned char>(25));
    EXPECT_EQ(textOf(wide), std::string(20, '0'));
}

} // namespace
