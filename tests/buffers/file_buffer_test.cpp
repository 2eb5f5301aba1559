// The file buffer: growth rules and the 1500 MiB limit, the error texts, the text envelope and
// the radix-85 groups at their exact bytes. Operations, searches and round trips on arbitrary
// bytes are checked against a model by fuzz/buffers_fuzz.cpp.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "buffers/file_buffer.h"
#include "buffers/radix85.h"
#include "tests/support/text_of.h"

namespace {

std::string content(const _kzFileBuffer& b) { return std::string(reinterpret_cast<const char*>(b.data), b.header.size); }

// Appends, insertions, the read cursor, clones and searches against a model: fuzz/buffers_fuzz.cpp.
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
    char read[4] = {};
    EXPECT_TRUE(b.readNext(read, 3));
    _kzFileHeader copied;
    copied = b.header;
    EXPECT_EQ(copied.readPos, 0); // the cursor starts again
    EXPECT_EQ(copied.size, 7);
    struct Case { int code; const char* text; };
    for (const Case& c : {Case{0, "No Error"}, Case{-100, "Unable to allocate memory"}, Case{-104, "Unable to read data from file!"},
                          Case{-107, "File does not exists!"},
                          Case{-1000, "File error: End of file reached!"}, Case{-1001, "File error 1."},
                          Case{-50, "unknown error -50."}})
        EXPECT_STREQ(_kzFileBuffer::errorText(c.code).asChar(), c.text);
    EXPECT_EQ(std::string(_kzFileBuffer::errorText(-101).asChar()).substr(0, 14), "System error: ");
}

TEST(FileBuffer, TheTextEnvelopeAndRadix85Groups) {
    _kzFileBuffer b;
    const std::string hundred(100, 'A');
    b.append(hundred.data(), 100);
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
    EXPECT_EQ(decodeDigit85("~"), 0);
}

} // namespace
