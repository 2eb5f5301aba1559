// The platform glue: where this program lies, the environment, the buffer size rule, kind
// names, system error texts and sleeping.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/executable_folder.h"
#include "platform/owners.h"
#include "platform/platform_os.h"
#include "platform/sleep.h"
#include "platform/system_error_text.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

using Folder = _kzString8_allSize<250>;

// The folder from argv[0] and one folder up: fuzz/path_fuzz.cpp, against a model of the rules.
TEST(PlatformGlue, TheExecutableFolderFromTheSystemOrFromArgv0) {
    Folder folder;
    ASSERT_TRUE(kzFindExecutableFolder(folder, nullptr));
    const std::string text = textOf(folder);
    ASSERT_GE(text.size(), 16u);
    EXPECT_EQ(text.substr(text.size() - 16), "/tests/platform/");
    Folder bundle("/Applications/App.app/Contents/MacOS/app"); // a system answer is kept
    EXPECT_TRUE(kzResolveExecutableFolder(bundle, "ignored"));
    EXPECT_EQ(textOf(bundle), "/Applications/App.app/Contents/MacOS/");
}

TEST(PlatformGlue, EnvironmentBufferSizesKindNamesAndErrorTexts) {
    ::setenv("KZ_GLUE_TEST", std::string(6000, 'v').c_str(), 1);
    EXPECT_EQ(kzGetEnv("KZ_GLUE_TEST").length, 250);
    EXPECT_EQ(kzGetEnvLong("KZ_GLUE_TEST").length, 5000);
    ::unsetenv("KZ_GLUE_TEST");
    EXPECT_TRUE(kzGetEnv("KZ_GLUE_TEST").isEmpty());
    const uint64_t sizes[][2] = {{0, 211},           {1, 212},           {52428799, 52445008},
                                 {52428800, 34952533}, {104857599, 69905066}, {104857600, 52428800}};
    for (const auto& [size, buffer] : sizes) EXPECT_EQ(kzBufferSizeFor(size), buffer) << "for " << size;
    // Kind names at both ends of the table, rights letters, an id without an account by its
    // number (4242 has none here), and the error texts of no error and an unknown one.
    const std::pair<std::string, std::string> texts[] = {{textOf(kzComponentKindName(0)), "None"},
                                                         {textOf(kzComponentKindName(20)), "Tool"},
                                                         {textOf(kzComponentKindName(21)), "unknown"},
                                                         {textOf(kzRightsText(0751)), "rwx rx x "},
                                                         {textOf(kzRightsText(0)), "   "},
                                                         {textOf(kzUserNameOrId(4242)), "ID 4242"},
                                                         {textOf(kzUserNameOrId(0)), "root"},
                                                         {textOf(kzSystemErrorText(0)), "No Error."},
                                                         {textOf(kzSystemErrorText(99999)), "Error 99999."}};
    for (const auto& [got, expected] : texts) EXPECT_EQ(got, expected);
    errno = EACCES;
    EXPECT_STREQ(kzSystemErrorText(-1).asChar(), "Permission denied");
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(textOf(kzSystemErrorTextWide(ENOENT)), "No such file or directory");

    // /proc keeps no time set on its files, and a closed descriptor tells nothing: a copy
    // there gets its time after the close.
    const int proc = ::open("/proc/self/stat", O_RDONLY);
    EXPECT_FALSE(kzCloseKeepsFileTime_OS(proc));
    ::close(proc);
    EXPECT_FALSE(kzCloseKeepsFileTime_OS(proc));
}

TEST(PlatformGlue, SleepsNothingForZeroOrLessAndTheWholeSpanInSlices) {
    const auto msOf = [](int ms) {
        const auto start = std::chrono::steady_clock::now();
        kzSleepMS(ms);
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    };
    EXPECT_LT(msOf(-5), 50);
    EXPECT_LT(msOf(0), 50);
    EXPECT_GE(msOf(1003), 1003);
}

} // namespace
