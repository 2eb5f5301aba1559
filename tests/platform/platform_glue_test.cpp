// The platform glue: where this program lies, the environment, the buffer size rule, kind
// names, system error texts and sleeping.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/executable_folder.h"
#include "platform/owners.h"
#include "platform/platform_os.h"
#include "platform/retry_io.h"
#include "platform/sleep.h"
#include "platform/system_error_text.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

using Folder = _kzString8_allSize<250>;

TEST(PlatformGlue, TheExecutableFolderFromTheSystemOrFromArgv0) {
    Folder folder;
    ASSERT_TRUE(kzFindExecutableFolder(folder, nullptr));
    const std::string text = textOf(folder);
    ASSERT_GE(text.size(), 16u);
    EXPECT_EQ(text.substr(text.size() - 16), "/tests/platform/");
    // The system's answer whole and terminated in a buffer with a byte to spare; one byte
    // less might have cut it, and gives nothing.
    char* const self = ::realpath("/proc/self/exe", nullptr);
    ASSERT_NE(self, nullptr);
    const int length = static_cast<int>(std::strlen(self));
    const std::pair<int, std::string> paths[] = {{length + 1, ""}, {length + 2, self}};
    std::free(self);
    for (const auto& [size, expected] : paths) {
        std::string buffer(4096, '/');
        const bool found = kzExecutablePath_OS(&buffer[0], size);
        EXPECT_EQ(found, !expected.empty()) << "size " << size;
        EXPECT_EQ(found ? std::string(buffer.c_str()) : "", expected) << "size " << size;
    }
    Folder bundle("/Applications/App.app/Contents/MacOS/app"); // a system answer is kept
    EXPECT_TRUE(kzResolveExecutableFolder(bundle, "ignored"));
    EXPECT_EQ(textOf(bundle), "/Applications/App.app/Contents/MacOS/");
    // Without the system's answer, from argv[0]: a relative path is joined to the working
    // folder, each "../" taking one folder off it; a "/" at index 0 or 1 cuts nothing, and a
    // network share is not left upward.
    char before[4096];
    ASSERT_NE(::getcwd(before, sizeof before), nullptr);
    ASSERT_EQ(::chdir("/usr/lib"), 0);
    std::string climbs; // more "../" than the working folder has levels: the first folder stays
    for (int i = 0; i < 60; ++i) climbs += "../";
    const std::pair<std::string, std::string> rows[] = {
        {"abc", ""}, // too short: not found
        {"/usr/bin/kz", "/usr/bin/"},   {"C:/x/kz", "C:/x/"},     {"kzServer", "kzServer/"},
        {"./kz", "/usr/lib/"},          {"../bin/kz", "/usr/bin/"}, {"../../kz", "/usr/"},
        {"//srv/share/kz", "//srv/share/"}, {"//srv/kz", "//srv/kz/"},
        {climbs + "usr/kz", "/usr/usr/"}};
    for (const auto& [argv0, expected] : rows) {
        Folder found;
        EXPECT_EQ(kzResolveExecutableFolder(found, argv0.c_str()), !expected.empty()) << argv0;
        EXPECT_EQ(textOf(found), expected) << argv0;
    }
    ASSERT_EQ(::chdir(before), 0);
    for (const auto& [path, parent] : {std::pair<std::string, std::string>{"a/bc", "a/bc/"}, {"/a/b/", "/a/"}, {"ab", "ab"}})
        EXPECT_EQ(textOf(kzParentFolder(Folder(path.c_str()))), parent) << path;
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

// A read waits in the kernel while signals, whose handler asks for no restart, keep coming
// every 20 ms; the data comes from a child after 300 ms.
TEST(PlatformGlue, AReadThatASignalInterruptsGoesOn) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    struct sigaction interrupting {}, before{};
    interrupting.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &interrupting, &before);
    const itimerval every20ms{{0, 20000}, {0, 20000}}, off{};
    ::setitimer(ITIMER_REAL, &every20ms, nullptr);
    const pid_t writer = ::fork();
    if (writer == 0) {
        ::usleep(300000);
        _exit(::write(ends[1], "x", 1) == 1 ? 0 : 1);
    }
    char c = 0;
    EXPECT_EQ(kzReadRetrying(ends[0], &c, 1), 1);
    ::setitimer(ITIMER_REAL, &off, nullptr);
    ::sigaction(SIGALRM, &before, nullptr);
    ::waitpid(writer, nullptr, 0);
    EXPECT_EQ(c, 'x');
    ::close(ends[0]);
    ::close(ends[1]);
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
