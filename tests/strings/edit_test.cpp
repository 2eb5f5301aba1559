#include <string>

#include <gtest/gtest.h>

#include "tests/support/text_of.h"

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

namespace {

using S8 = _kzString8_allSize<50>;

TEST(Edit, SlicesAndTheDelimiterRules) {
    const S8 abc("abc");
    EXPECT_EQ(textOf(abc.mid(1, 2)), "bc");
    EXPECT_EQ(textOf(abc.mid(1, 0)), "");
    EXPECT_EQ(abc.mid(0, -1).length, 50); // a negative count takes the whole record
    EXPECT_EQ(textOf(abc.left(2)), "ab");
    EXPECT_EQ(textOf(abc.left(0)), "");
    EXPECT_EQ(textOf(abc.left(9)), "abc");

    const S8 usr("/usr");
    EXPECT_EQ(textOf(usr.left('/', true)), "");
    EXPECT_EQ(textOf(usr.left('/', false)), "/");
    const S8 path("a/B/c");
    EXPECT_EQ(textOf(path.left('/', true)), "a/");
    EXPECT_EQ(textOf(path.left('/', false)), "a");
    EXPECT_EQ(textOf(path.left('b', false)), "a/"); // the delimiter ignores case
    EXPECT_EQ(textOf(path.left('x', true)), "a/B/c");

    S8 s("a/b");
    EXPECT_EQ(textOf(s.leftNCut('/', false)), "a");
    EXPECT_EQ(textOf(s), "b");
    s = "a/b";
    EXPECT_EQ(textOf(s.leftNCut('/', true)), "a/");
    EXPECT_EQ(textOf(s), "b");
    s = "/b";
    EXPECT_EQ(textOf(s.leftNCut('/', false)), "/");
    EXPECT_EQ(textOf(s), "b");
    s = "abc";
    EXPECT_EQ(textOf(s.leftNCut('/', true)), "abc");
    EXPECT_TRUE(s.isEmpty());
    EXPECT_EQ(s.data[1], 0); // the whole record is cleared
}

TEST(Edit, TrimKnowsFiveWhitespaceCodes) {
    S8 s(" \t\r\nab c\t ");
    EXPECT_EQ(textOf(s.trim()), "ab c");
    s = " \t \t";
    EXPECT_EQ(s.trim().length, 0);
    EXPECT_EQ(s.data[0], 0);
    s = "\fab\v";
    EXPECT_EQ(textOf(s.trim()), "\fab\v"); // form feed and vertical tab stay
    S8 withNul("ab", 2);
    withNul += '\0';
    EXPECT_EQ(textOf(withNul.trim()), "ab");
}

// A field of abs(width) blanks, behind the text for a positive width and in front for a
// negative one; the text itself is cut only by the capacity.
TEST(Edit, SpacedFieldsInEitherCharacterWidth) {
    const unsigned short ab[] = {'a', 'b', 0}, longer[] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 0};
    struct Case {
        const unsigned short* text;
        int width;
        const char* expected;
    };
    for (const Case& c : {Case{ab, 5, "xab   "}, Case{ab, -5, "x   ab"}, Case{ab, 1, "xab"}, Case{nullptr, 3, "x   "},
                          Case{longer, 3, "xabcde"}, Case{ab, -9, "x   ab"}, Case{nullptr, 0, "x"}}) {
        _kzString<6> wide("x");
        EXPECT_EQ(textOf(wide.addSpacing(c.text, c.width)), c.expected) << c.width;
        std::string narrowText;
        for (const unsigned short* p = c.text; p && *p; ++p) narrowText += static_cast<char>(*p);
        _kzString8_allSize<6> narrow("x");
        EXPECT_EQ(textOf(narrow.addSpacing(c.text ? narrowText.c_str() : nullptr, c.width)), c.expected);
    }
}
} // namespace
