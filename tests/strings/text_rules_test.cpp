// The exact rules of searching, slicing, padding and numbers that a model of the operations
// does not state: where searches start again, how counts gate, how delimiters cut, how fields
// and numbers are laid out. The broad behaviour is checked by string_model_test.cpp.
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"
#include "strings/number_text.h"
#include "tests/support/text_of.h"

namespace {

using S8 = _kzString8_allSize<50>;
using S16 = _kzString<50>;

// Searches of characters and patterns, counted prefixes and suffixes, and the ordering of
// records: string_model_test.cpp. Here what the model leaves out.
TEST(TextRules, LowBytesOneCharacterAndNullPointers) {
    EXPECT_EQ(S8("abcabc").indexOf(static_cast<unsigned short>(0x163), 0), 2); // low byte, exactly
    EXPECT_EQ(S8("a/b/c").lastIndexOf(static_cast<unsigned short>(0x12F), -1), 3);
    EXPECT_EQ(S8("abc").lastIndexOf('\0', -1), -1); // from the last character, not the terminator
    EXPECT_FALSE(S8("FILE.TXT").endsWith('t')); // one character compares exactly
    EXPECT_FALSE(_kzString8_allSize<6>("abcdef").startsWith("abcdefg"));
    EXPECT_EQ(S8("abc").compare(S8("AB")), 1); // equal prefixes: exactly 1 for the longer
    EXPECT_EQ(S8("ab").compare(S8("ABC")), -1); // and -1 for the shorter
    const char* none = nullptr;
    EXPECT_TRUE(S8("") != none);                      // the 8-bit form: a null pointer is unequal
    EXPECT_FALSE(S16("") == none); // the 16-bit form: neither equal
    EXPECT_FALSE(S16("") != none); // nor unequal
}

// Delimiters, left, leftNCut and the parsing of decimal numbers: string_model_test.cpp.
TEST(TextRules, MidTrimFieldsParsingAndHex) {
    EXPECT_EQ(S8("abc").mid(0, -1).length, 50); // a negative count takes the whole record
    S8 s("\fab\v\r\n");
    EXPECT_EQ(textOf(s.trim()), "\fab\v"); // form feed and vertical tab stay
    _kzString<6> wide("x");
    EXPECT_EQ(textOf(wide.addSpacingC("ab", -4)), "x  ab"); // 8-bit text into a 16-bit record
    S8 numbers;
    numbers.addNrSpacing(42, static_cast<signed char>(-6));
    EXPECT_EQ(textOf(numbers), "    42");
    bool ok = true;
    EXPECT_EQ(S16("\xB2").toInt(&ok), 0); // a byte above ASCII is no digit
    EXPECT_FALSE(ok);
    // Hex digits by the value's type: a byte 2, a short 8 sign-extended, an unsigned short 4.
    const auto hexOf = [](auto value) {
        S8 hex;
        hex.addHexCode(value);
        return textOf(hex);
    };
    const std::pair<std::string, std::string> hexes[] = {{hexOf(static_cast<signed char>(-1)), "FF"},
                                                         {hexOf(static_cast<short>(-1)), "FFFFFFFF"},
                                                         {hexOf(static_cast<unsigned short>(0xFFFF)), "FFFF"},
                                                         {hexOf(0x1234LL), "0000000000001234"},
                                                         {textOf(S8("a\xE4").asHexString()), "61E4"}};
    for (const auto& [got, expected] : hexes) EXPECT_EQ(got, expected);
    S8 field("FFFE12");
    EXPECT_EQ(field.toIntFromHex(16, true, true, &ok), -2);
    EXPECT_EQ(textOf(field), "12");
    EXPECT_EQ(S8("80").toIntFromHex(8, true, false, &ok), -128); // a byte, sign-extended
    EXPECT_EQ(S8("FFFFFFFF").toIntFromHex(32, false, false, &ok), 0xFFFFFFFFLL); // read whole, not narrowed
    EXPECT_EQ(S8("12x").toInt64(&ok), 0);
    EXPECT_FALSE(ok);
    EXPECT_EQ(S8("12x").toInt(nullptr), 12); // without an answer asked for, as the C parser reads it
}

// The fraction's digits keep their own sign and may grow by the rounding; zeros fill up to
// the decimals, and the separator stands even without any.
TEST(TextRules, FloatAndIntegerTexts) {
    const struct {
        int decimals;
        unsigned short separator;
        float value;
        const char* text;
    } rows[] = {{2, '.', 3.5f, "3.50"}, {2, '.', 1.999f, "1.100"}, {2, '.', -1.5f, "-1.-50"},
                {0, '.', 5.7f, "5.1"},  {3, ',', 2.05f, "2,050"}};
    for (const auto& row : rows) EXPECT_EQ(textOf(kzFloatToText(row.decimals, row.separator, row.value)), row.text) << row.text;
    EXPECT_EQ(textOf(kzIntToText(-42)), "-42");
}

} // namespace
