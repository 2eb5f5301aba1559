#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/executable_folder.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

using Folder = _kzString8_allSize<250>;

std::string parentOf(const std::string& path) { return textOf(kzParentFolder(Folder(path.c_str()))); }

TEST(PlatformGlue, ParentFolders) {
    EXPECT_EQ(parentOf("/a/b/c"), "/a/b/");
    EXPECT_EQ(parentOf("/a/b/c/"), "/a/b/");
    EXPECT_EQ(parentOf("//server/share"), "//server/share/");
    EXPECT_EQ(parentOf("//server/share/x"), "//server/share/");
    EXPECT_EQ(parentOf("/ab"), "/ab/");
    EXPECT_EQ(parentOf("a/b"), "a/b/");
    EXPECT_EQ(parentOf("ab"), "ab");
    const std::string full = "/" + std::string(248, 'x') + "/y";
    EXPECT_EQ(parentOf(full), "/" + std::string(248, 'x') + "/");
}

TEST(PlatformGlue, TheSystemKnowsWhereThisProgramLies) {
    Folder folder;
    ASSERT_TRUE(kzFindExecutableFolder(folder, nullptr));
    const std::string text = textOf(folder);
    EXPECT_EQ(text.front(), '/');
    EXPECT_GE(text.size(), std::string("/tests/platform/").size());
    EXPECT_EQ(text.substr(text.size() - 16), "/tests/platform/");
    struct stat st;
    EXPECT_EQ(::stat((text + "platform_test").c_str(), &st), 0);
    EXPECT_EQ(textOf(kzExecutableFolder("ignored")), text);
}

// Resolves argv0 in the given working folder, in a child, and reports by exit code
// whether the answer is `expected` (an empty expectation means: no folder found).
void resolveIn(const std::string& cwd, const char* argv0, const std::string& expected) {
    if (::chdir(cwd.c_str()) != 0) std::exit(2);
    Folder folder;
    const bool found = kzResolveExecutableFolder(folder, argv0);
    std::exit(found == !expected.empty() && textOf(folder) == expected ? 0 : 1);
}

TEST(PlatformGlue, WithoutTheSystemTheFolderComesFromArgv0) {
    TempDir dir;
    ::mkdir(dir.file("usr").c_str(), 0755);
    ::mkdir(dir.file("usr/local").c_str(), 0755);
    ::mkdir(dir.file("usr/local/share").c_str(), 0755);
    const std::string share = dir.file("usr/local/share");
    const auto resolvesTo = ::testing::ExitedWithCode(0);
    EXPECT_EXIT(resolveIn(share, "../bin/tool", dir.file("usr/local/bin/")), resolvesTo, "");
    EXPECT_EXIT(resolveIn(share, "../../x/../y/tool", dir.file("y/")) /* three parents */, resolvesTo, "");
    EXPECT_EXIT(resolveIn(share, "./tool", share + "/"), resolvesTo, "");
    EXPECT_EXIT(resolveIn(share, "/opt/app/tool", "/opt/app/"), resolvesTo, "");
    EXPECT_EXIT(resolveIn(share, "C:x/tool", "C:x/"), resolvesTo, "");
    EXPECT_EXIT(resolveIn(share, "toolname", "toolname/"), resolvesTo, ""); // no "/": taken as it is
    EXPECT_EXIT(resolveIn(share, "a/b", ""), resolvesTo, "");               // too short
    EXPECT_EXIT(resolveIn(share, nullptr, ""), resolvesTo, "");

    // A system answer is kept; from inside an application bundle nothing walks out of it.
    Folder bundle("/Applications/App.app/Contents/MacOS/app");
    EXPECT_TRUE(kzResolveExecutableFolder(bundle, "ignored"));
    EXPECT_EQ(textOf(bundle), "/Applications/App.app/Contents/MacOS/");
}

TEST(PlatformGlue, EnvironmentBufferSizesAndKindNames) {
    ::setenv("KZ_GLUE_TEST", "value", 1);
    EXPECT_EQ(textOf(kzGetEnv("KZ_GLUE_TEST")), "value");
    ::setenv("KZ_GLUE_TEST", std::string(6000, 'v').c_str(), 1);
    EXPECT_EQ(kzGetEnv("KZ_GLUE_TEST").length, 250);
    EXPECT_EQ(kzGetEnvLong("KZ_GLUE_TEST").length, 5000);
    ::unsetenv("KZ_GLUE_TEST");
    EXPECT_TRUE(kzGetEnv("KZ_GLUE_TEST").isEmpty());
    EXPECT_TRUE(kzGetEnvLong("KZ_GLUE_TEST").isEmpty());

    EXPECT_EQ(kzBufferSizeFor(0), 211u);
    EXPECT_EQ(kzBufferSizeFor(52428799), 52428799u + 12799 + 3199 + 211);
    EXPECT_EQ(kzBufferSizeFor(52428800), 34952533u);
    EXPECT_EQ(kzBufferSizeFor(104857599), 69905066u);
    EXPECT_EQ(kzBufferSizeFor(104857600), 52428800u);

    EXPECT_EQ(textOf(kzComponentKindName(0)), "None");
    EXPECT_EQ(textOf(kzComponentKindName(21)), "unknown");
    EXPECT_EQ(textOf(kzComponentKindName(4294967295u)), "unknown");
    for (unsigned kind = 1; kind <= 20; ++kind) {
        const std::string name = textOf(kzComponentKindName(kind));
        EXPECT_FALSE(name.empty() || name == "unknown" || name.find(' ') != std::string::npos) << kind;
    }
}

} // namespace
