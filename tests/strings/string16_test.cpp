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

TEST(String16, EveryWayInCutsAtCapacity) {
    const char* const longText = "abcdefghij";
    const unsigned short wideText[] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 0};
    std::vector<_kzString<6>> results;
    results.emplace_back(longText);
    results.emplace_back(longText, 10);
    results.emplace_back(wideText);
    results.emplace_back(wideText, 7);
    results.emplace_back(_kzString8_allSize<20>(longText).asUni());
    _kzString<6> s;
    s = longText;
    results.push_back(s);
    s = wideText;
    results.push_back(s);
    s = std::string(longText);
    results.push_back(s);
    for (const auto& r : results) {
        expectSound(r);
        EXPECT_EQ(text(r), u"abcdef");
    }

    _kzString<6> a("abcd");
    a.add("xyz");
    EXPECT_EQ(text(a), u"abcdxy");
    a += 'q';
    a += "q";
    a += wideText;
    a += static_cast<unsigned short>('q');
    a.add(wideText, 3);
    a.add(_kzString<6>("q"));
    a.addNr(5);
    EXPECT_EQ(text(a), u"abcdxy");
    expectSound(a);
    EXPECT_EQ(text(_kzString<6>("abcd").combined("xyz")), u"abcdxy");
    EXPECT_EQ(text(_kzString<6>("abcd") + _kzString<6>("xyz")), u"abcdxy");
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

TEST(String16, SingleCharacterForms) {
    _kzString<10> s("abc");
    s = static_cast<unsigned short>(0x1234); // assignment keeps only the low 8 bits
    EXPECT_EQ(s.length, 1);
    EXPECT_EQ(s.data[0], 0x34);
    EXPECT_EQ(s.data[1], 0);
    s += static_cast<unsigned short>(0x1234); // appending keeps all 16
    EXPECT_EQ(s.data[1], 0x1234);
    EXPECT_TRUE(s.endsWith(static_cast<unsigned short>(0x1234)));
    // A byte is compared as a sign-extended number, which no 16-bit character equals.
    EXPECT_FALSE(_kzString<10>("a\xE4").endsWith('\xE4'));
    EXPECT_TRUE(_kzString<10>("a\xE4").endsWith(static_cast<unsigned short>(0xFFE4)));
    EXPECT_FALSE(_kzString<10>().endsWith('/'));
}

TEST(String16, LengthLimitsOfOutsideText) {
    const std::string exactly64k(65536, 'a');
    EXPECT_EQ(_kzString<10>(exactly64k.c_str()).length, 0);
    std::vector<unsigned short> wide(2000, 'w');
    wide.push_back(0);
    _kzString<2500> big(wide.data());
    EXPECT_EQ(big.length, 1024);
    big = wide.data();
    EXPECT_EQ(big.length, 1024);
    big.clear();
    big += wide.data();
    EXPECT_EQ(big.length, 1024);
    // The count forms trust their count instead.
    big.clear();
    big.add(wide.data(), 2000);
    EXPECT_EQ(big.length, 2000);
}

TEST(String16, NullPointersFollowEachOperationsRule) {
    const char* none = nullptr;
    const unsigned short* noWide = nullptr;
    EXPECT_EQ(_kzString<10>(none).length, 0);
    EXPECT_EQ(_kzString<10>(none, 5).length, 0);
    EXPECT_EQ(_kzString<10>(noWide).length, 0);

    // A null char pointer changes nothing at all; a null 16-bit pointer empties the length
    // and keeps the characters.
    _kzString<10> s("hello");
    s = none;
    EXPECT_EQ(text(s), u"hello");
    s = noWide;
    EXPECT_EQ(s.length, 0);
    EXPECT_EQ(s.data[0], 'h');

    s = "hi";
    s.add(none);
    s.add(noWide, 3);
    s += none;
    s += noWide;
    EXPECT_EQ(text(s), u"hi");
    EXPECT_EQ(text(s.combined(none)), u"hi");
}

TEST(String16, ReservedWordIsNeverCopied) {
    _kzString<10> s("abc");
    EXPECT_EQ(s.reserved, 0);
    s.reserved = 0x5A5A;
    s.clear();
    EXPECT_EQ(s.reserved, 0x5A5A);
    _kzString<10> copy(s);
    EXPECT_EQ(copy.reserved, 0);
    copy.reserved = 7;
    copy = s;
    EXPECT_EQ(copy.reserved, 7);
}

TEST(String16, ToCharNarrowsIntoTheGivenSize) {
    const _kzString<10> s("abcdef");
    char out[8];
    std::memset(out, 'x', sizeof out);
    EXPECT_EQ(s.toChar(out, 1), 0);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[1], 'x');
    EXPECT_EQ(s.toChar(out, 4), 3);
    EXPECT_STREQ(out, "abc");
    EXPECT_EQ(s.toChar(out, sizeof out), 6);
    EXPECT_STREQ(out, "abcdef");
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

TEST(String16, SetLengthCalcLengthAndEditing) {
    _kzString<8> s;
    for (auto& c : s.data) c = 'x';
    s.calcLength();
    EXPECT_EQ(s.length, 8);
    EXPECT_EQ(s.data[8], 0);
    s.setLength(-3);
    EXPECT_EQ(s.length, 0);
    s.setLength(100);
    EXPECT_EQ(s.length, 8);

    _kzString<50> path("c:\\x\\Y\\z");
    path.replace('\\', '/');
    EXPECT_EQ(text(path), u"c:/x/Y/z");
    path.makeUpper();
    EXPECT_EQ(text(path), u"C:/X/Y/Z");
    EXPECT_TRUE(path.isEqual("c:/x/y/z"));
    EXPECT_FALSE(path.isEqual("c:/x/y/"));
    path.clear();
    path.addNr(-12);
    path.addNr(3000000000LL);
    EXPECT_EQ(text(path), u"-123000000000");
}

} // namespace
