// The file buffer: growth rules and the 1500 MiB limit, the error texts, insertions, the read
// cursor and clones, both searches against std::string's on generated texts, the text
// envelope and the radix-85 groups at their exact bytes and as round trips.
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "buffers/file_buffer.h"
#include "buffers/radix85.h"
#include "tests/support/text_of.h"

namespace {

std::string content(const _kzFileBuffer& b) { return std::string(reinterpret_cast<const char*>(b.data), b.header.size); }

TEST(FileBuffer, GrowthTheLimitTheCursorOfACopyAndErrorTexts) {
    _kzFileBuffer b;
    EXPECT_TRUE(b.append("abc", 0)); // nothing to do
    EXPECT_TRUE(b.append("abcdef", 6));
    EXPECT_EQ(b.capacity, 6); // exactly the new size
    EXPECT_TRUE(b.reserveKeep(6, 1));
    EXPECT_FALSE(b.reserveKeep(1048577, 1));
    b.error = 7;
    EXPECT_FALSE(b.append("x", _kzFileBuffer::maxBufferSize)); // above the limit: unchanged, error 0
    EXPECT_EQ(content(b), "abcdef");
    EXPECT_EQ(b.error, 0);
    b.appendChunked("!", 1);
    EXPECT_EQ(b.capacity, 7 + 10240);
    EXPECT_EQ(content(b), "abcdef!");
    // Data set goes to the start, over what was there, and the size stays the caller's.
    _kzFileBuffer set;
    ASSERT_TRUE(set.append("abc", 3));
    EXPECT_TRUE(set.setData("x", 1));
    EXPECT_FALSE(set.setData("y", -1));
    EXPECT_EQ(content(set), "xbc");
    char start[2] = {};
    set.getData(start, 2);
    EXPECT_EQ(std::string(start, 2), "xb");
    // A chunked append grows by 10240 bytes behind what it needs, up to the limit exactly
    // (the data in front is taken as it stands; only the last page is touched).
    constexpr int32_t limit = _kzFileBuffer::maxBufferSize;
    for (const auto& [before, capacity] : {std::pair<int32_t, int32_t>{limit - 10241, limit}, {limit - 10240, 0}}) {
        _kzFileBuffer edge;
        edge.header.size = before;
        edge.appendChunked("!", 1);
        EXPECT_EQ(edge.capacity, capacity) << "after " << before << " bytes";
    }
    // A new header is zero but for its version, 1; assigned, it copies every byte but the
    // read cursor's, which starts again.
    const auto bytesOf = [](const _kzFileHeader& h) { return std::string(reinterpret_cast<const char*>(&h), sizeof h); };
    EXPECT_EQ(bytesOf(_kzFileHeader()), std::string(29, '\0') + '\1' + std::string(2, '\0'));
    _kzFileHeader source, assigned;
    for (size_t i = 0; i < sizeof source; ++i) reinterpret_cast<unsigned char*>(&source)[i] = static_cast<unsigned char>(i + 1);
    assigned = source;
    EXPECT_EQ(bytesOf(assigned), bytesOf(source).replace(24, 4, 4, '\0'));
    struct Case { int code; const char* text; };
    for (const Case& c : {Case{0, "No Error"}, Case{-100, "Unable to allocate memory"}, Case{-102, "Wrong File Header"}, Case{-104, "Unable to read data from file!"},
                          Case{-107, "File does not exists!"},
                          Case{-1000, "File error: End of file reached!"}, Case{-1001, "File error 1."},
                          Case{-50, "unknown error -50."}})
        EXPECT_STREQ(_kzFileBuffer::errorText(c.code).asChar(), c.text);
    EXPECT_EQ(std::string(_kzFileBuffer::errorText(-101).asChar()).substr(0, 14), "System error: ");
}

// A place before the start inserts at the start, one at or behind the end appends; a read
// that would pass the end reads nothing; a clone keeps the cursor and starts behind a gap.
TEST(FileBuffer, InsertionsReadsAndClones) {
    _kzFileBuffer b;
    const struct {
        int at;
        const char* bytes;
        const char* expected;
    } insertions[] = {{0, "cd", "cd"}, {-3, "a", "acd"}, {3, "ef", "acdef"}, {9, "g", "acdefg"}, {1, "b", "abcdefg"}};
    for (const auto& row : insertions) {
        EXPECT_TRUE(b.insertAt(row.at, row.bytes, static_cast<int>(std::strlen(row.bytes)))) << row.expected;
        EXPECT_EQ(content(b), row.expected);
    }
    char got[8] = {};
    EXPECT_TRUE(b.readNext(got, 1));
    EXPECT_EQ(got[0], 'a');
    EXPECT_TRUE(b.readNext(got, 1));
    EXPECT_FALSE(b.readNext(got, 6)); // one more than is left
    EXPECT_FALSE(b.readNext(got, -1));
    EXPECT_TRUE(b.readNext(got, 5)); // exactly to the end
    EXPECT_EQ(std::string(got, 5), "cdefg");
    EXPECT_TRUE(b.readNext(got, 0));
    EXPECT_TRUE(_kzFileBuffer().readNext(got, 0)); // an empty buffer has no data to read from
    b.header.readPos = 3;
    _kzFileBuffer clone;
    clone.error = 5;
    b.cloneWithGap(clone, 2);
    EXPECT_EQ(clone.error, 0);
    EXPECT_EQ(clone.header.size, 9);
    EXPECT_EQ(clone.header.readPos, 3);
    EXPECT_EQ(content(clone).substr(2), "abcdefg");
    char untouched = 'u';
    _kzFileBuffer().getData(&untouched, 1); // an empty buffer gives nothing
    EXPECT_EQ(untouched, 'u');
}

// Both searches on generated texts of few letters, with the needle often standing right at
// the end of the data: the exact one finds what std::string finds, the other what it finds
// with ASCII letters folded.
TEST(FileBuffer, SearchesFindWhatStdStringFinds) {
    std::mt19937 random(2026);
    const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto text = [&](int maxLength) {
        std::string t;
        for (int n = pick(maxLength + 1); n > 0; --n) t += "abAB~zZ\xE4\xC4"[pick(9)];
        return t;
    };
    const auto upper = [](std::string t) {
        for (char& c : t)
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
        return t;
    };
    const auto expected = [](const std::string& data, const std::string& needle, int start) {
        const size_t at = needle.empty() ? std::string::npos : data.find(needle, static_cast<size_t>(start < 0 ? 0 : start));
        return at == std::string::npos ? -1 : static_cast<int>(at);
    };
    for (int round = 0; round < 3000; ++round) {
        const std::string needle = text(pick(2) ? 4 : 70);
        const std::string data = text(300) + (pick(2) ? needle : "");
        const int start = pick(320) - 10;
        _kzFileBuffer b;
        b.append(data.data(), static_cast<int>(data.size()));
        const _kzString8_allSize<250> n(needle.c_str(), static_cast<int>(needle.size()));
        ASSERT_EQ(b.find(n, start), expected(data, needle, start)) << "round " << round;
        ASSERT_EQ(b.findIgnoreCase(n, start), expected(upper(data), upper(needle), start)) << "round " << round;
    }
}

TEST(FileBuffer, TheTextEnvelopeAndRadix85Groups) {
    _kzFileBuffer b;
    const std::string hundred(100, 'A');
    b.append(hundred.data(), 100);
    b.header.version = 3;
    b.wrapText(false); // not in text mode: nothing happens
    EXPECT_EQ(b.header.size, 100);
    b.header.textMode = 1;
    b.header.version = 3;
    b.wrapText(false);
    EXPECT_EQ(content(b), hundred + "\r\n");
    b.unwrapText(false);
    b.wrapText(true);
    const std::string wrapped = "\r\n~~~~~~~~~~~\r\n" + hundred + "\r\n\r\n~~~~~~~~~~~\r\n";
    EXPECT_EQ(content(b), wrapped);
    b.wrapText(true); // markers there already
    EXPECT_EQ(content(b), wrapped);
    b.unwrapText(true);
    EXPECT_EQ(content(b), hundred);
    // The way back with markers takes what stands between them, wherever they start. A marker
    // is found at every tenth offset, by five more tildes right before or right behind it: a
    // run of five is none, a run of six at such an offset is one. Without markers only the
    // bytes the envelope drops go, tildes among them.
    const auto unwrapped = [](const std::string& text, bool markers) {
        _kzFileBuffer f;
        f.header.textMode = 1;
        f.header.version = 4;
        f.append(text.data(), static_cast<int>(text.size()));
        f.unwrapText(markers);
        return content(f);
    };
    const std::string marker(11, '~');
    EXPECT_EQ(unwrapped("h" + marker + "inner" + marker + "t", false), "hinnert");
    std::vector<std::pair<std::string, std::string>> heads = {
        {"~~~~~hhhhhhh", "inner"}, {"hhhhhh~~~~~hhhh", "inner"}, {"hhhh~~~~~h~hhhhh", "inner"}, {"~~~~~~hhhh", "hhhh"}};
    for (int offset = 0; offset < 12; ++offset) heads.emplace_back(std::string(static_cast<size_t>(offset), 'h'), "inner");
    for (const auto& [head, inner] : heads)
        EXPECT_EQ(unwrapped(head + marker + "inner" + marker + "tail", true), inner) << "behind " << head;
    // Every byte that the envelope keeps comes through a round trip; unwrapped, the others go.
    std::string all, kept;
    for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
    for (int c = 33; c <= 125; ++c)
        if (std::string("\"'<>\\`").find(static_cast<char>(c)) == std::string::npos) kept += static_cast<char>(c);
    for (const bool markers : {false, true}) {
        _kzFileBuffer trip;
        trip.header.textMode = 1;
        trip.header.version = 3;
        trip.append(kept.data(), static_cast<int>(kept.size()));
        trip.wrapText(markers);
        trip.unwrapText(markers);
        EXPECT_EQ(content(trip), kept) << "markers " << markers;
    }
    EXPECT_EQ(unwrapped(all, false), kept);

    char out[6] = {};
    EXPECT_EQ(encodeGroup85(1, out), 5);
    EXPECT_STREQ(out, "#!!!!");
    unsigned int value = 7;
    EXPECT_EQ(decodeGroup85(out, value, 5), 5);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(encodeGroup85(0, out), 1);              // a zero group is one "z"
    EXPECT_EQ(encodeGroup85(0xFFFFFFFF, out + 1), 1); // and the highest one "^"
    EXPECT_EQ(std::string(out, 2), "z^");
    EXPECT_EQ(decodeDigit85("}"), 84);
    EXPECT_EQ(decodeDigit85("\xFF"), 0); // the last byte, outside the alphabet
    for (const unsigned int v : {0x00000001u, 0x12345678u, 0x80000000u, 0xFFFFFFFEu, 0u, 0xFFFFFFFFu}) {
        char group[5];
        const int written = encodeGroup85(v, group);
        unsigned int back = ~v;
        EXPECT_EQ(decodeGroup85(group, back, written), written) << v;
        EXPECT_EQ(back, v) << v;
    }
    unsigned int untouched = 7;
    EXPECT_EQ(decodeGroup85("#!!!!", untouched, 4), 0); // a group cut short decodes nothing
    EXPECT_EQ(decodeGroup85("z", untouched, 0), 0);
    EXPECT_EQ(untouched, 7u);
}

} // namespace
