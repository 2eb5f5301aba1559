// kzStartLocal as a whole process: its exact output and its exit status, from what it was
// given. Its watch loop against a real kzServerconsole: mirror_end_to_end_test.cpp.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/tool/tool_output.h"

namespace {

struct Finished {
    std::string output;
    int exitCode = -1;
    long long ms = 0;
};

// Runs the tool to its end with the given argv (argv[0] included).
Finished runTool(const std::vector<std::string>& argv) {
    TempDir dir;
    Finished result;
    const long long start = monotonicMs();
    Child tool = startTool(argv, dir.file("out"));
    EXPECT_TRUE(tool.waitExit(10000, &result.exitCode));
    result.ms = monotonicMs() - start;
    result.output = readFile(dir.file("out"));
    return result;
}

TEST(StartLocal, TooFewArgumentsGiveTheUsageLineAndExit255) {
    for (const std::vector<std::string>& argv :
         {std::vector<std::string>{"kzStartLocal", "/a", "/b"}, std::vector<std::string>{"kzStartLocal"}}) {
        const Finished run = runTool(argv);
        EXPECT_EQ(run.output, kBanner + kUsage);
        EXPECT_EQ(run.exitCode, 255);
    }
}

TEST(StartLocal, OptionsAndFoldersAsTheyAreReadAndNoServerMeansQuit) {
    KZ_NEEDS_OWN_PROCESSES();
    struct Case { std::vector<std::string> argv; std::string settings; };
    const std::string a500(500, 'a');
    const std::string a499(499, 'a');
    const std::vector<Case> cases = {
        {{"kzStartLocal", "/a", "/b", "x"}, settings("/a/", "/b/", false, false)},
        // argv[1] is searched for options too, and is still the local folder.
        {{"kzStartLocal", "-log", "/b", "x"}, settings("-log/", "/b/", true, false)},
        // So is argv[0].
        {{"-jobdb", "/a", "/b", "x"}, settings("/a/", "/b/", false, true)},
        {{"kzStartLocal", "c:\\x\\y", "/b", "-LOG"}, settings("c:/x/y/", "/b/", true, false)},
        {{"kzStartLocal", "/a", "/b", "-JobDB", "-log", "-LOG", "more"}, settings("/a/", "/b/", true, true)},
        {{"kzStartLocal", "", "", "x"}, settings("/", "/", false, false)},
        // Only backslashes change: doubled separators and parent references stay.
        {{"kzStartLocal", "/a//b/../c/", "\\\\srv\\share", "x"}, settings("/a//b/../c/", "//srv/share/", false, false)},
        {{"kzStartLocal", "/m\xE4rz", "/b/", "-log-"}, settings("/m\xE4rz/", "/b/", false, false)},
        // A full folder of 500 characters gets no "/", and 499 characters are printed.
        {{"kzStartLocal", a500, "/b", "x"}, settings(a499, "/b/", false, false)},
        {{"kzStartLocal", "/a", a499, "x"}, settings("/a/", a499, false, false)},
    };
    for (const Case& c : cases) {
        const Finished run = runTool(c.argv);
        EXPECT_EQ(run.output, kBanner + c.settings + kQuit) << c.argv[1];
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_LT(run.ms, 900); // without the server: no sleep before the first look
    }
}

} // namespace
