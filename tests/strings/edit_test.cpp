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

TEST(Edit, InsertCutsTheOldTailFirst) {
    _kzString8_allSize<5> s("abcde");
    s.insert(0, _kzString8_allSize<5>("xy"));
    EXPECT_EQ(textOf(s), "xyabc");
    s = "abc";
    s.insert(99, _kzString8_allSize<5>("xyz"));
    EXPECT_EQ(textOf(s), "abcxy");
    s = "ab";
    s.insert(1, _kzString8_allSize<5>("12345"));
    EXPECT_EQ(textOf(s), "a1234");
    s = "ab";
    s.insert(1, s);
    EXPECT_EQ(textOf(s), "aabb");
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

TEST(Edit, PaddedAppendsAndCharacterStrings) {
    S8 s;
    EXPECT_EQ(textOf(s.addSpacingC("ab", 5)), "ab   ");
    s.clear();
    EXPECT_EQ(textOf(s.addSpacingC("ab", -5)), "   ab");
    s.clear();
    EXPECT_EQ(textOf(s.addSpacingC("ab", 1)), "ab");
    s.clear();
    EXPECT_EQ(textOf(s.addSpacingC(nullptr, 3)), "   ");
    _kzString8_allSize<6> small("abcd");
    EXPECT_EQ(textOf(small.addSpacingC("xyz", -5)), "abcdxy"); // the field is held to the free room
    _kzString<20> w("[");
    w.addSpacingC("\xE4", 2);
    EXPECT_EQ(w.data[1], 0xFFE4);
    EXPECT_EQ(w.length, 3);

    EXPECT_EQ(textOf(S8::createCharString('x', 3)), "xxx");
    EXPECT_EQ(_kzString8_allSize<6>::createCharString('x', 10).length, 6);
    EXPECT_EQ(S8::createCharString('x', 0).length, 0);
    const auto dashes = _kzString<10>::createCharString(static_cast<unsigned short>('-'), 4);
    EXPECT_EQ(textOf(dashes), "----");
}

} // namespace
