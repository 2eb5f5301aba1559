#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

namespace {

TEST(OlderLayouts, LengthStandsBehindTheText) {
    EXPECT_EQ(offsetof(_kzString_old<10>, length), 22u);
    EXPECT_EQ(offsetof(_kzString_old<10>, reserved), 24u);
    EXPECT_EQ(offsetof(_kzString8_evenSize_old<250>, length), 252u);
    EXPECT_EQ(offsetof(_kzString8_UnevenSize_old<25>, length), 26u);
}

TEST(OlderLayouts, TakeOverIntoTheCurrentTemplates) {
    _kzString8_evenSize_old<250> even("even text");
    even.data[251] = 'F'; // the filler byte, which never travels
    _kzString8_UnevenSize_old<25> uneven("uneven text");
    const _kzString8_allSize<250> fromEven(even);
    const _kzString8_allSize<25> fromUneven(uneven);
    EXPECT_STREQ(fromEven.asChar(), "even text");
    EXPECT_EQ(fromEven.length, 9);
    EXPECT_STREQ(fromUneven.asChar(), "uneven text");
    EXPECT_TRUE(fromEven == even);
    EXPECT_FALSE(fromUneven == _kzString8_UnevenSize_old<25>("other"));

    _kzString8_allSize<25> assigned("x");
    assigned = uneven;
    EXPECT_EQ(assigned.length, 11);

    _kzString_old<10> older(std::string(10, 'o').c_str());
    EXPECT_EQ(older.length, 10);
    const _kzString<10> current(older);
    EXPECT_EQ(current.length, 10);
    EXPECT_EQ(current.data[10], 0);
    EXPECT_EQ(current.data[9], 'o');
}

TEST(OlderLayouts, StateOperationsAndWhatTravels) {
    _kzString8_evenSize_old<6> even("abc");
    even.data[7] = 'F';
    even.clear();
    EXPECT_EQ(even.data[7], 'F'); // clear leaves the filler
    EXPECT_EQ(even.length, 0);
    even = "xy";
    _kzString8_evenSize_old<6> copy(even);
    EXPECT_EQ(copy.data[7], 0);
    EXPECT_EQ(copy.length, 2);

    _kzString_old<10> old("abc");
    old.reserved = 9;
    old.clear();
    EXPECT_EQ(old.reserved, 9);
    EXPECT_EQ(old.length, 0);
}

TEST(OlderLayouts, NarrowingFromTheOlder16BitLayout) {
    _kzString_old<500> older(std::string(300, 'n').c_str());
    EXPECT_EQ(older.to_kzString8_250().length, 249);
    const _kzString8_allSize<500> viaOperator = older;
    EXPECT_EQ(viaOperator.length, 300);
    bool ok = false;
    EXPECT_EQ(_kzString_old<10>("-31").toInt(&ok), -31);
    EXPECT_TRUE(ok);
}

TEST(OlderLayouts, OperationsBehaveAsOnTheCurrentTemplates) {
    _kzString8_UnevenSize_old<15> s("Banana.TXT");
    EXPECT_EQ(s.indexOf(_kzString8_UnevenSize_old<15>(".txt"), 0), 6);
    s.replace(_kzString8_UnevenSize_old<15>("AN"), _kzString8_UnevenSize_old<15>("-"));
    EXPECT_STREQ(s.data, "B--a.TXT");
    s.addNrSpacing(7, static_cast<signed char>(-3));
    EXPECT_STREQ(s.data, "B--a.TXT  7");
    _kzString_old<25> w("a/b/c");
    EXPECT_EQ(w.lastIndexOf(static_cast<unsigned short>('/'), -1), 3);
    EXPECT_TRUE(w.startsWith('a'));
    EXPECT_TRUE(w.endsWith("B/C"));
}

} // namespace
