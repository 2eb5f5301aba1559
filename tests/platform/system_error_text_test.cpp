#include <cerrno>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "platform/system_error_text.h"

namespace {

TEST(SystemErrorText, KnownUnknownAndNoError) {
    EXPECT_STREQ(kzSystemErrorText(0).asChar(), "No Error.");
    EXPECT_STREQ(kzSystemErrorText(ENOENT).asChar(), "No such file or directory");
    EXPECT_STREQ(kzSystemErrorText(99999).asChar(), "Error 99999.");
    EXPECT_STREQ(kzSystemErrorText(-5).asChar(), "Error -5.");
}

TEST(SystemErrorText, MinusOneReadsErrnoAndLeavesIt) {
    errno = EACCES;
    EXPECT_STREQ(kzSystemErrorText(-1).asChar(), "Permission denied");
    EXPECT_EQ(errno, EACCES);
    errno = 0;
    EXPECT_STREQ(kzSystemErrorText(-1).asChar(), "No Error.");
}

TEST(SystemErrorText, NoLineEndsAndAWideForm) {
    for (int code = 1; code < 140; ++code) {
        const _kzString8_allSize<250> text = kzSystemErrorText(code);
        EXPECT_TRUE(text.hasData()) << code;
        EXPECT_EQ(std::strpbrk(text.asChar(), "\r\n"), nullptr) << code;
    }
    const _kzString<500> wide = kzSystemErrorTextWide(ENOENT);
    const std::string expected = "No such file or directory";
    ASSERT_EQ(wide.length, expected.size());
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(wide.data[i], expected[i]);
}

} // namespace
