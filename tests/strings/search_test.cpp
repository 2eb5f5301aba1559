#include <gtest/gtest.h>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

namespace {

using S8 = _kzString8_allSize<50>;
using S16 = _kzString<50>;

TEST(Search, CharacterSearchesRestartButPatternSearchesDoNot) {
    const S8 s("abcabc");
    EXPECT_EQ(s.indexOf('a', 6), 0); // at or behind the end: from the beginning
    EXPECT_EQ(s.indexOf('a', -4), 0);
    EXPECT_EQ(s.indexOf('A', 1), 3);
    EXPECT_EQ(s.indexOfCaseSen('A', 1), -1);
    EXPECT_EQ(s.indexOf(S8("a"), 6), -1);
    EXPECT_EQ(s.indexOf(S8("a"), 4), -1);
    EXPECT_EQ(s.indexOf(S8("BC"), 2), 4);
    EXPECT_EQ(S8().indexOf('a', 0), -1);
    // The 8-bit form with a 16-bit character compares its low byte exactly.
    EXPECT_EQ(s.indexOf(static_cast<unsigned short>(0x163), 0), 2);
    EXPECT_EQ(s.indexOf(static_cast<unsigned short>('C'), 0), -1);

    const S16 w("abcabc");
    EXPECT_EQ(w.indexOf(static_cast<unsigned short>('C'), 0), 2); // the 16-bit form ignores case
    EXPECT_EQ(w.indexOf("CA"), 2);
}

TEST(Search, LastIndexOfIsExactAndStartsAtTheEndWhenOutside) {
    const S8 s("a/b/c");
    EXPECT_EQ(s.lastIndexOf('/', -1), 3);
    EXPECT_EQ(s.lastIndexOf('/', 99), 3);
    EXPECT_EQ(s.lastIndexOf('/', 2), 1);
    EXPECT_EQ(s.lastIndexOf('A', -1), -1);
    EXPECT_EQ(S8().lastIndexOf('/', -1), -1);
    EXPECT_EQ(s.lastIndexOf(static_cast<unsigned short>(0x12F), -1), 3); // low byte '/'
    EXPECT_EQ(S16("a/b/c").lastIndexOf(static_cast<unsigned short>('/'), 2), 1);
}

TEST(Search, PrefixesAndSuffixesWithTheirCountsAndCaseRules) {
    const S8 file("FILE.TXT");
    EXPECT_TRUE(file.endsWith("txt"));
    EXPECT_FALSE(file.endsWith('t')); // one character compares exactly
    EXPECT_FALSE(file.startsWith(static_cast<const char*>(nullptr)));
    EXPECT_TRUE(file.startsWith("fiXXX", 2));
    EXPECT_FALSE(file.startsWith("fi", 0));
    EXPECT_FALSE(file.startsWith("file.txt.", 9)); // count beyond the string
    // endsWith with a count: the count only gates, the pattern is the whole text.
    EXPECT_TRUE(file.endsWith(".txt", 1));
    EXPECT_FALSE(file.endsWith(".txt", 9));
    // A text longer than the capacity never matches, even where its cut form would.
    EXPECT_FALSE(_kzString8_allSize<6>("abcdef").startsWith("abcdefg"));
}

TEST(Search, OrderingAndOperators) {
    EXPECT_EQ(S8("abc").compare(S8("ABCD")), -1);
    EXPECT_EQ(S8("abc").compareSameCase(S8("abcd")), 0);
    EXPECT_TRUE(S8("abc") < S8("abcd"));
    EXPECT_TRUE(S8("abd") > S8("abcd"));
    EXPECT_TRUE(S8("a") < S8("\xE4")); // bytes order as unsigned, 16-bit characters low byte first
    S16 low, high;
    low += static_cast<unsigned short>(0x0201);
    high += static_cast<unsigned short>(0x0102);
    EXPECT_TRUE(low < high);
    const char* none = nullptr;
    EXPECT_TRUE(S8("") != none);   // the 8-bit form: a null pointer is unequal
    EXPECT_FALSE(S16("") == none); // the 16-bit form: neither equal nor unequal
    EXPECT_FALSE(S16("") != none);
    S16 zeroExtended;
    zeroExtended = "\xE4";
    EXPECT_TRUE(zeroExtended == "\xE4");
    EXPECT_FALSE(S16("\xE4") == "\xE4");
}

} // namespace
