// Every capacity the system uses must compile, hold exactly N characters and keep its
// record size.
#include <string>

#include <gtest/gtest.h>

#include "strings/kz_string.h"
#include "strings/kz_string8.h"

namespace {

template <int N>
void checkWide() {
    static_assert(sizeof(_kzString<N>) == 4 + 2 * (N + 1), "16-bit record: length, reserved, text");
    const std::string fill(N + 3, 'a');
    _kzString<N> s(fill.c_str());
    EXPECT_EQ(s.length, N) << "capacity " << N;
    s += 'b';
    EXPECT_EQ(s.length, N);
    EXPECT_EQ(s.data[N], 0);
    EXPECT_EQ(s.data[N - 1], 'a');
    _kzString<N> copy(s.asUni());
    EXPECT_TRUE(copy.isEqual(s));
}

template <int N>
void checkNarrow() {
    static_assert(sizeof(_kzString8_allSize<N>) == 2 + N + 1, "8-bit record is packed");
    const std::string fill(N + 3, 'a');
    _kzString8_allSize<N> s(fill.c_str());
    EXPECT_EQ(s.length, N) << "capacity " << N;
    s += 'b';
    EXPECT_EQ(s.length, N);
    EXPECT_EQ(s.data[N], 0);
    _kzString8_allSize<N> copy(s.asUni());
    EXPECT_TRUE(copy.isEqual(s));
}

template <int... N>
void checkAllWide() {
    (checkWide<N>(), ...);
}

template <int... N>
void checkAllNarrow() {
    (checkNarrow<N>(), ...);
}

TEST(Capacities, SixteenBitRecords) {
    checkAllWide<10, 15, 25, 30, 48, 50, 75, 100, 125, 150, 200, 225, 250, 500, 1000, 2500>();
}

TEST(Capacities, EightBitRecords) {
    checkAllNarrow<6, 7, 8, 10, 12, 14, 15, 16, 20, 25, 29, 30, 40, 50, 75, 100, 125, 150, 200, 250, 500,
                   1000, 2000, 3000, 5000>();
}

} // namespace
