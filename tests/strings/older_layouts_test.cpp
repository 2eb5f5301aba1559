#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

namespace {

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

} // namespace
