#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "strings/kz_string.h"

namespace {

template <int N>
std::u16string text(const _kzString<N>& s) {
    return std::u16string(reinterpret_cast<const char16_t*>(s.data), s.length);
}

template <int N>
void expectSound(const _kzString<N>& s) {
    ASSERT_LE(s.length, N);
    EXPECT_EQ(s.data[s.length], 0);
}

TEST(String16, RecordLayoutAndView) {
    EXPECT_EQ(sizeof(_kzString<10>), 4u + 2 * 11);
    EXPECT_EQ(offsetof(_kzString<10>, reserved), 2u);
    EXPECT_EQ(offsetof(_kzString<10>, data), 4u);
    _kzString<10> s("abc");
    const _kzString_Uni_pointer* view = s.asUni();
    EXPECT_EQ(static_cast<const void*>(view), static_cast<const void*>(&s));
    EXPECT_EQ(view->length, 3);
    EXPECT_EQ(view->chars()[2], 'c');
    // Different capacities meet through the view, cut to the smaller one.
    _kzString<5> small(_kzString<500>("abcdefgh").asUni());
    EXPECT_EQ(text(small), u"abcde");
    small = _kzString<500>("xyz").asUni();
    EXPECT_EQ(text(small), u"xyz");
}

TEST(String16, BytesAboveAsciiWidenBySignOrByZeroDependingOnTheRoute) {
    const char byte[] = "\xE4";
    const char c = '\xE4';
    // Sign extension: the constructors, operator+= and std::string assignment.
    EXPECT_EQ(_kzString<10>(byte).data[0], 0xFFE4);
    EXPECT_EQ(_kzString<10>(byte, 1).data[0], 0xFFE4);
    EXPECT_EQ(_kzString<10>(c).data[0], 0xFFE4);
    EXPECT_EQ(_kzString<10>(_kzString8_allSize<10>(byte).asUni()).data[0], 0xFFE4);
    _kzString<10> s;
    s += c;
    s += byte;
    EXPECT_EQ(s.data[0], 0xFFE4);
    EXPECT_EQ(s.data[1], 0xFFE4);
    s = std::string(byte);
    EXPECT_EQ(s.data[0], 0xFFE4);
    EXPECT_EQ((_kzString<10>() + c).data[0], 0xFFE4);

    // Zero extension: assignment, add and combined of char const*.
    s = byte;
    EXPECT_EQ(s.data[0], 0x00E4);
    s.clear();
    s.add(byte);
    EXPECT_EQ(s.data[0], 0x00E4);
    EXPECT_EQ(_kzString<10>().combined(byte).data[0], 0x00E4);

    // Narrowing back keeps the low byte either way.
    char out[4];
    EXPECT_EQ(_kzString<10>(byte).toChar(out, sizeof out), 1);
    EXPECT_EQ(static_cast<unsigned char>(out[0]), 0xE4);
}

TEST(String16, NarrowingConversionsKeepOneLessThanTheirCapacity) {
    const std::string t600(600, 'n');
    _kzString<1000> s(t600.c_str());
    EXPECT_EQ(s.to_kzString8_500().length, 499);
    EXPECT_EQ(s.to_kzString8_250().length, 249);
    const _kzString8_allSize<500> viaOperator = s;
    EXPECT_EQ(viaOperator.length, 499);
    EXPECT_EQ(viaOperator.data[499], 0);

    _kzString<250> full(std::string(250, 'f').c_str());
    const _kzString8_allSize<250> narrowed = full;
    EXPECT_EQ(narrowed.length, 249);
    _kzString<10> high;
    high += static_cast<unsigned short>(0x1234);
    EXPECT_EQ(high.to_kzString8_250().data[0], 0x34);
}

} // namespace
