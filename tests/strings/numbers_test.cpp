#include <string>

#include <gtest/gtest.h>

#include "tests/support/text_of.h"

#include "strings/kz_string.h"
#include "strings/kz_string8.h"
#include "strings/number_text.h"

namespace {

using S8 = _kzString8_allSize<50>;

TEST(Numbers, ZeroPaddingOnEachTemplate) {
    // The 8-bit template pads one zero at a time; the 16-bit one joins zeros and digits in
    // 20 places first, so a wide field loses the digits.
    S8 narrow;
    narrow.addNr(5LL, static_cast<unsigned char>(25));
    EXPECT_EQ(textOf(narrow), std::string(24, '0') + "5");
    _kzString<50> wide;
    wide.addNr(5LL, static_cast<unsigned char>(25));
    EXPECT_EQ(textOf(wide), std::string(20, '0'));
    wide.clear();
    wide.addNr(-42LL, static_cast<unsigned char>(6));
    EXPECT_EQ(textOf(wide), "000-42");
    _kzString_old<50> older;
    older.addNr(7LL, static_cast<unsigned char>(3));
    EXPECT_EQ(textOf(older), "007");
}

TEST(Numbers, ParsingWithAndWithoutTheValidityFlag) {
    struct Case {
        const char* text;
        bool valid;
        int value;
    };
    for (const Case& c : {Case{"12", true, 12}, Case{"-12", true, -12}, Case{"1-2", false, 0},
                          Case{"+12", false, 0}, Case{"12a", false, 0}, Case{"", true, 0}, Case{"-", true, 0},
                          Case{" 1", false, 0}, Case{"1.5", false, 0}, Case{"\xB2", false, 0}}) {
        bool ok = !c.valid;
        EXPECT_EQ(S8(c.text).toInt(&ok), c.value) << c.text;
        EXPECT_EQ(ok, c.valid) << c.text;
        ok = !c.valid;
        EXPECT_EQ(_kzString<50>(c.text).toInt(&ok), c.value) << c.text;
        EXPECT_EQ(ok, c.valid) << c.text;
    }
    EXPECT_EQ(S8("12a").toInt(nullptr), 12);
    EXPECT_EQ(S8(" 7").toInt(nullptr), 7);
    bool ok = false;
    EXPECT_EQ(S8("-9000000000").toInt64(&ok), -9000000000LL);
    EXPECT_TRUE(ok);
    EXPECT_EQ(S8("18446744073709551615").toUInt64(&ok), 18446744073709551615ull);
    EXPECT_EQ(S8("-1").toUInt64(&ok), 18446744073709551615ull); // the parser wraps it
    EXPECT_TRUE(ok);
    _kzString<10> high;
    high += static_cast<unsigned short>(0x131); // narrows to '1', but is no digit
    EXPECT_EQ(high.toInt(&ok), 0);
    EXPECT_FALSE(ok);
}

TEST(Numbers, HexadecimalText) {
    S8 s;
    s.addHexCode(static_cast<short>(-1));
    s += ' ';
    s.addHexCode(static_cast<unsigned short>(0xFFFF));
    s += ' ';
    s.addHexCode(static_cast<signed char>(-1));
    s += ' ';
    s.addHexCode(static_cast<unsigned char>(10));
    s += ' ';
    s.addHexCode(-2);
    s += ' ';
    s.addHexCode(0xABCDEF12u);
    EXPECT_EQ(textOf(s), "FFFFFFFF FFFF FF 0A FFFFFFFE ABCDEF12");
    s.clear();
    s.addHexCode(-1LL);
    s += ' ';
    s.addHexCode(0x1234ull);
    EXPECT_EQ(textOf(s), "FFFFFFFFFFFFFFFF 0000000000001234");
    _kzString8_allSize<6> small("ab");
    small.addHexCode(0x12345678);
    EXPECT_EQ(textOf(small), "ab1234"); // only the first N digits, then up to the capacity

    EXPECT_EQ(textOf(S8("\xE4"
                        "A")
                         .asHexString()),
              "E441");
    EXPECT_EQ(S8().asHexString().length, 0);
    EXPECT_EQ(textOf(_kzString8_allSize<6>("abcdef").asHexString()), "616263");
}

} // namespace
