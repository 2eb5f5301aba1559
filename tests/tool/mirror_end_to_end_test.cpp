// The whole tool at work: several runs side by side under one stand-in kzServerconsole, each
// with folders of its own, over two mirror passes; one of them runs as a user who may not
// write the network folder. The start lines come at once, the first pass with the seventh
// look, and QUIT soon after the server has gone, with nothing printed in between.
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/tool/mirror_fixture.h"
#include "tests/tool/tool_output.h"

namespace {

struct ToolRun {
    MirrorFolders folders;
    std::vector<std::string> options;
    bool logs = false, jobs = false; // what the options ask for
    int uid = -1;                    // the user the tool runs as; -1: this process's own
    Child tool;

    std::string out() const { return folders.dir.file("out"); }
    std::string startLines() const { return kBanner + settings(folders.local, folders.root, logs, jobs); }
    void start() {
        std::vector<std::string> argv = {"kzStartLocal", folders.local, folders.root};
        argv.insert(argv.end(), options.begin(), options.end());
        // Another user starts a copy of the tool that it can reach, wherever the build lies.
        const std::string program = uid < 0 ? KZ_TOOL_PATH : installProgram(KZ_TOOL_PATH, folders.dir.path(), "kzStartLocal");
        tool = startTool(argv, out(), uid, program);
    }
};

TEST(MirrorEndToEnd, RunsSideBySideOverTwoPassesAndQuitsSoonAfterTheServer) {
    KZ_NEEDS_OWN_PROCESSES();
    TempDir serverDir;
    Child server = Child::start({installStandIn(serverDir.path(), "kzServerconsole")});

    ToolRun full, noLogFolder, neither, jobsOnly, unwritable;
    full.options = {"-log", "-jobdb"};
    full.logs = full.jobs = true;
    writeFile(full.folders.local + "server.txt", "first line\n");
    writeFile(full.folders.local + "jobs.db", std::string(30000, 'j'));
    writeFile(full.folders.local + "jobs.db.txt", "both");
    setModified(full.folders.local + "server.txt", 1600000000);
    noLogFolder.options = {"-log"};
    noLogFolder.logs = true;
    ::rmdir(noLogFolder.folders.logs.c_str());
    neither.options = {"x"};
    jobsOnly.options = {"-JOBDB"};
    jobsOnly.jobs = true;
    ::rmdir(jobsOnly.folders.logs.c_str());
    ::rmdir((jobsOnly.folders.root + "sub").c_str());
    unwritable.options = {"-log", "-jobdb"};
    unwritable.logs = unwritable.jobs = true;
    unwritable.uid = 65534;
    ::chmod(unwritable.folders.dir.path().c_str(), 0755);
    ::chmod(unwritable.folders.local.c_str(), 0755);
    for (ToolRun* run : {&noLogFolder, &neither, &jobsOnly, &unwritable}) {
        writeFile(run->folders.local + "server.txt", "x");
        writeFile(run->folders.local + "jobs.db", "db");
    }
    const long long started = monotonicMs();
    for (ToolRun* run : {&full, &noLogFolder, &neither, &jobsOnly, &unwritable}) run->start();
    // The start lines arrive while the tool runs, not only when it ends.
    EXPECT_TRUE(waitFor([&] { return readFile(full.out()) == full.startLines(); }, 3000)) << readFile(full.out());

    // The first pass comes with the seventh look, once a second.
    const std::string& logs = full.folders.logs;
    ASSERT_TRUE(waitFor([&] { return readFile(full.folders.jobs + "jobs.db.txt") == "both"; }, 9000));
    const long long firstPass = monotonicMs() - started;
    EXPECT_GT(firstPass, 6500);
    EXPECT_LT(firstPass, 7900);
    EXPECT_EQ(readFile(logs + "server__copyFromLocal.txt"), "first line\n");
    EXPECT_EQ(modifiedAt(logs + "server__copyFromLocal.txt"), 1600000000);
    EXPECT_EQ(readFile(logs + "jobs.db__copyFromLocal.txt"), "both");
    EXPECT_EQ(readFile(full.folders.jobs + "jobs.db"), std::string(30000, 'j'));
    ASSERT_TRUE(waitFor([&] { return readFile(jobsOnly.folders.jobs + "jobs.db") == "db"; }, 3000));

    // Between the passes the server writes on; the second pass brings it over.
    writeFile(full.folders.local + "server.txt", "first line\nsecond line\n");
    EXPECT_TRUE(waitFor([&] { return readFile(logs + "server__copyFromLocal.txt").size() == 23; }, 10000));

    // A missing log folder is not made, and the tool goes on silently; a third argument that
    // is no option mirrors nothing; a user who may not write gets nothing written.
    EXPECT_FALSE(isFolderAt(noLogFolder.folders.logs));
    EXPECT_FALSE(isFolderAt(jobsOnly.folders.logs));
    EXPECT_FALSE(isFolderAt(neither.folders.root + "sub/cfg_global"));
    EXPECT_EQ(readFile(neither.folders.logs + "server__copyFromLocal.txt"), "<missing>");
    EXPECT_EQ(readFile(unwritable.folders.logs + "server__copyFromLocal.txt"), "<missing>");
    EXPECT_FALSE(isFolderAt(unwritable.folders.root + "sub/cfg_global"));
    for (ToolRun* run : {&full, &noLogFolder, &neither, &jobsOnly, &unwritable}) EXPECT_FALSE(run->tool.waitExit(0));

    server.kill();
    const long long ended = monotonicMs();
    for (ToolRun* run : {&full, &noLogFolder, &neither, &jobsOnly, &unwritable}) {
        int exitCode = -1;
        EXPECT_TRUE(run->tool.waitExit(3000, &exitCode));
        EXPECT_EQ(exitCode, 0);
        EXPECT_EQ(readFile(run->out()), run->startLines() + kQuit); // nothing between the start lines and the end
    }
    EXPECT_LE(monotonicMs() - ended, 1500);
}

} // namespace
