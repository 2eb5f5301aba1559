// Every capacity the system uses, of all five templates, holds exactly N characters, keeps
// its layout and works.
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

#include "tests/strings/capacity_lists.h"

namespace {

// The length of an older record stands on the first even offset behind its text.
template <int N>
constexpr size_t olderLengthOffset(size_t textBytes) {
    return (textBytes + 1) / 2 * 2;
}

template <typename S>
void smoke(int n) {
    const std::string fill(static_cast<size_t>(n) + 3, 'a');
    S s(fill.c_str());
    EXPECT_EQ(s.length, n) << "capacity " << n;
    s += 'b';
    EXPECT_EQ(s.length, n);
    EXPECT_EQ(s.data[n], 0);
    EXPECT_EQ(s.indexOf("aab", 0), -1);
    S copy(s);
    EXPECT_TRUE(copy == s);
    copy.replace(S("a"), S("bc"));
    EXPECT_EQ(copy.length, n);
    EXPECT_EQ(copy.indexOf("cbc", 0), 1);
    copy.trim().makeUpper();
    EXPECT_TRUE(copy.startsWith("BCBC"));
    copy.addNrSpacing(5, -3);
    EXPECT_EQ(copy.length, n);
}

#define KZ_SMOKE_WIDE(n)                                                                                     \
    static_assert(sizeof(_kzString<n>) == 4 + 2 * (n + 1), "16-bit record: length, reserved, text");         \
    static_assert(offsetof(_kzString_old<n>, length) == 2 * (n + 1), "older 16-bit: length behind");         \
    smoke<_kzString<n>>(n);                                                                                  \
    smoke<_kzString_old<n>>(n);
#define KZ_SMOKE_NARROW(n)                                                                                   \
    static_assert(sizeof(_kzString8_allSize<n>) == 2 + n + 1, "8-bit record is packed");                     \
    smoke<_kzString8_allSize<n>>(n);
#define KZ_SMOKE_EVEN_OLD(n)                                                                                 \
    static_assert(offsetof(_kzString8_evenSize_old<n>, length) == olderLengthOffset<n>(n + 2), "");          \
    smoke<_kzString8_evenSize_old<n>>(n);
#define KZ_SMOKE_UNEVEN_OLD(n)                                                                               \
    static_assert(offsetof(_kzString8_UnevenSize_old<n>, length) == olderLengthOffset<n>(n + 1), "");        \
    smoke<_kzString8_UnevenSize_old<n>>(n);

TEST(Capacities, SixteenBitRecords){KZ_WIDE_CAPACITIES(KZ_SMOKE_WIDE)}

TEST(Capacities, EightBitRecords){KZ_NARROW_CAPACITIES(KZ_SMOKE_NARROW)}

TEST(Capacities, OlderEightBitRecords) {
    KZ_EVEN_OLD_CAPACITIES(KZ_SMOKE_EVEN_OLD)
    KZ_UNEVEN_OLD_CAPACITIES(KZ_SMOKE_UNEVEN_OLD)
    // The other parity too, as _kzString8_allSize takes both over at every capacity.
    static_assert(offsetof(_kzString8_evenSize_old<25>, length) == 25 + 3, "");
    static_assert(offsetof(_kzString8_UnevenSize_old<250>, length) == 250 + 2, "");
}

} // namespace
