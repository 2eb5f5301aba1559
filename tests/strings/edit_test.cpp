#include <string>

#include <gtest/gtest.h>

#include "tests/support/text_of.h"

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

namespace {

using S8 = _kzString8_allSize<50>;

TEST(Edit, ReplaceGoesOnBehindWhatItPutIn) {
    S8 s("banana");
    EXPECT_EQ(textOf(s.replace(S8("a"), S8("aa"))), "baanaanaa");
    _kzString8_allSize<6> small("banana");
    EXPECT_EQ(textOf(small.replace(_kzString8_allSize<6>("a"), _kzString8_allSize<6>("aa"))), "baanaa");
    EXPECT_EQ(small.data[6], 0);
    s = "abab";
    EXPECT_EQ(textOf(s.replace(S8("AB"), S8("ab"))), "abab"); // from equal to to ends
    s = "x.txt";
    EXPECT_EQ(textOf(s.replace(S8(".TXT"), S8("__copy.txt"))), "x__copy.txt"); // at the very end
    s = "abc";
    EXPECT_EQ(textOf(s.replace(S8(""), S8("z"))), "abc");
    s = "aAa";
    EXPECT_EQ(textOf(s.replaceCaseSen(S8("a"), S8("b"))), "bAb");
    s = "aXa";
    EXPECT_EQ(textOf(s.replace(s, S8("y"))), "y"); // the pattern may be the string itself
    // The same text on the 16-bit template.
    _kzString<50> w("a.TXT.txt");
    w.replace(_kzString<50>(".txt"), _kzString<50>("__c.txt"));
    EXPECT_EQ(textOf(w), "a__c.txt__c.txt");
}

TEST(Edit, RemoveCharactersPatternsAndRanges) {
    S8 s("Banana");
    const S8 copy = s.remove('a');
    EXPECT_EQ(textOf(s), "Bnn");
    EXPECT_EQ(textOf(copy), "Bnn");
    s = "Banana";
    EXPECT_EQ(textOf(s.remove('B')), "anana");
    EXPECT_EQ(textOf(S8().remove('a')), "");

    s = "aabb";
    EXPECT_EQ(textOf(s.remove(S8("ab"))), "ab"); // the occurrence across the joint stays
    s = "abab";
    EXPECT_EQ(textOf(s.remove(S8("AB"))), "");
    s = "abAB";
    EXPECT_EQ(textOf(s.removeCaseSens(S8("ab"))), "AB");

    s = "abcdef";
    EXPECT_EQ(textOf(s.remove(1, 2)), "adef");
    EXPECT_EQ(textOf(s.remove(0, 4)), "");
    s = "abc";
    EXPECT_EQ(textOf(s.remove(2, 99)), "ab"); // a range past the end is held to the text
}

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
                          Case{longer, 3, "xabcde"}, Case{longer, -9, "x     "}, Case{nullptr, 0, "x"}}) {
        _kzString<6> wide("x");
        EXPECT_EQ(textOf(wide.addSpacing(c.text, c.width)), c.expected) << c.width;
        std::string narrowText;
        for (const unsigned short* p = c.text; p && *p; ++p) narrowText += static_cast<char>(*p);
        _kzString8_allSize<6> narrow("x");
        EXPECT_EQ(textOf(narrow.addSpacing(c.text ? narrowText.c_str() : nullptr, c.width)), c.expected);
    }
}
} // namespace
