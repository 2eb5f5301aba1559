// The whole tool at work: several runs side by side under one stand-in kzServerconsole,
// each with folders of its own, over two mirror passes.
#include <ftw.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/tool/mirror_fixture.h"
#include "tests/tool/tool_output.h"

namespace {

// Every path below a folder.
std::vector<std::string> pathsBelow(const std::string& folder) {
    static std::vector<std::string>* found;
    std::vector<std::string> paths;
    found = &paths;
    nftw(
        folder.c_str(),
        [](const char* path, const struct stat*, int, FTW*) {
            found->push_back(path);
            return 0;
        },
        16, FTW_PHYS);
    return paths;
}

struct ToolRun {
    MirrorFolders folders;
    std::vector<std::string> options;
    ChildProcess tool;
    int uid = -1;     // the user the tool runs as; -1: this process's own
    std::string root; // the network root as given; the fixture's by default
    std::string printedRoot;

    void start() {
        if (root.empty()) root = printedRoot = folders.root;
        std::vector<std::string> argv = {"kzStartLocal", folders.local, root};
        argv.insert(argv.end(), options.begin(), options.end());
        const std::string program =
            uid < 0 ? KZ_TOOL_PATH : installProgram(KZ_TOOL_PATH, folders.dir.path(), "kzStartLocal");
        tool = ChildProcess::start(program, argv, true, uid);
    }
    std::string expectedOutput() const {
        bool logs = false, jobs = false;
        for (const std::string& o : options) {
            logs = logs || strcasecmp(o.c_str(), "-log") == 0;
            jobs = jobs || strcasecmp(o.c_str(), "-jobdb") == 0;
        }
        return kBanner + settings(folders.local, printedRoot, logs, jobs) + kQuit;
    }
};

TEST(MirrorEndToEnd, RunsSideBySideOverTwoPasses) {
    KZ_NEEDS_OWN_PROCESSES();
    TempDir serverDir;
    const std::string serverPath = installStandIn(serverDir.path(), "kzServerconsole");
    ChildProcess server = ChildProcess::start(serverPath, {serverPath});

    ToolRun full, noLogFolder, neither, jobsOnly, unwritable, longRoot;
    full.options = {"-log", "-jobdb"};
    writeFile(full.folders.local + "server.txt", "first line\n");
    writeFile(full.folders.local + "queue__local.txt", "queued\n");
    writeFile(full.folders.local + "jobs.db", std::string(30000, 'j'));
    writeFile(full.folders.local + "jobs.db.txt", "both");
    writeFile(full.folders.local + "notes.md", "stays");
    setModified(full.folders.local + "server.txt", 1600000000);

    noLogFolder.options = {"-log"};
    ::rmdir(noLogFolder.folders.logs.c_str());
    writeFile(noLogFolder.folders.local + "server.txt", "x");

    neither.options = {"x"};
    writeFile(neither.folders.local + "server.txt", "x");
    writeFile(neither.folders.local + "jobs.db", "x");

    // A network folder that the tool's user may not write.
    unwritable.options = {"-log", "-jobdb"};
    unwritable.uid = 65534;
    ::chmod(unwritable.folders.dir.path().c_str(), 0755);
    ::chmod(unwritable.folders.local.c_str(), 0755);
    writeFile(unwritable.folders.local + "server.txt", "x");
    writeFile(unwritable.folders.local + "jobs.db", "x");

    // A network root of 5000 characters: cut to 500, with no room for "sub/log/" or the job
    // folder. What the passes write must stay on the path as given.
    longRoot.options = {"-log", "-jobdb"};
    longRoot.root = longRoot.folders.dir.path();
    while (longRoot.root.size() < 5000) longRoot.root += "/" + std::string(199, 'n');
    longRoot.root.resize(5000);
    longRoot.printedRoot = longRoot.root.substr(0, 499);
    writeFile(longRoot.folders.local + "server.txt", "x");
    writeFile(longRoot.folders.local + "jobs.db", "x");

    jobsOnly.options = {"-JOBDB"};
    ::rmdir(jobsOnly.folders.logs.c_str());
    ::rmdir((jobsOnly.folders.root + "sub").c_str());
    writeFile(jobsOnly.folders.local + "jobs.db", "db");

    for (ToolRun* run : {&full, &noLogFolder, &neither, &jobsOnly, &unwritable, &longRoot}) run->start();

    // The first pass, about seven seconds in.
    const std::string& logs = full.folders.logs;
    ASSERT_TRUE(waitFor([&] { return readFile(full.folders.jobs + "jobs.db.txt") == "both"; }, 15000));
    EXPECT_EQ(readFile(logs + "server__copyFromLocal.txt"), "first line\n");
    EXPECT_EQ(modifiedAt(logs + "server__copyFromLocal.txt"), 1600000000);
    EXPECT_EQ(readFile(logs + "queue__copyFromLocal.txt"), "queued\n");
    EXPECT_EQ(readFile(logs + "jobs.db__copyFromLocal.txt"), "both");
    EXPECT_EQ(readFile(full.folders.jobs + "jobs.db"), std::string(30000, 'j'));
    EXPECT_EQ(readFile(logs + "notes__copyFromLocal.md"), "<missing>");
    ASSERT_TRUE(waitFor([&] { return readFile(jobsOnly.folders.jobs + "jobs.db") == "db"; }, 3000));

    // Between the passes the server writes on; the second pass brings it over.
    writeFile(full.folders.local + "server.txt", "first line\nsecond line\n");
    EXPECT_TRUE(waitFor([&] { return readFile(logs + "server__copyFromLocal.txt").size() == 23; }, 10000));

    // A missing log folder is not made, and the tool goes on silently; a third argument
    // that is no option mirrors nothing.
    EXPECT_FALSE(isFolderAt(noLogFolder.folders.logs));
    EXPECT_FALSE(isFolderAt(neither.folders.root + "sub/cfg_global"));
    EXPECT_EQ(readFile(neither.folders.logs + "server__copyFromLocal.txt"), "<missing>");
    EXPECT_FALSE(isFolderAt(jobsOnly.folders.logs));
    EXPECT_EQ(readFile(unwritable.folders.logs + "server__copyFromLocal.txt"), "<missing>");
    EXPECT_FALSE(isFolderAt(unwritable.folders.root + "sub/cfg_global"));
    EXPECT_EQ(readFile(unwritable.folders.local + "server.txt"), "x");
    for (const std::string& path : pathsBelow(longRoot.folders.dir.path())) {
        const bool onRoot = longRoot.root.compare(0, path.size(), path) == 0;
        const bool inFixture = path.compare(0, longRoot.folders.local.size() - 1, longRoot.folders.local, 0,
                                            longRoot.folders.local.size() - 1) == 0 ||
                               path.compare(0, longRoot.folders.root.size() - 1, longRoot.folders.root, 0,
                                            longRoot.folders.root.size() - 1) == 0;
        EXPECT_TRUE(onRoot || inFixture) << "written outside the folders: " << path;
    }
    for (ToolRun* run : {&full, &noLogFolder, &neither, &jobsOnly, &unwritable, &longRoot})
        EXPECT_FALSE(run->tool.waitExit(0));

    server.kill();
    for (ToolRun* run : {&full, &noLogFolder, &neither, &jobsOnly, &unwritable, &longRoot}) {
        int exitCode = -1;
        EXPECT_TRUE(run->tool.waitExit(3000, &exitCode));
        EXPECT_EQ(exitCode, 0);
        EXPECT_EQ(run->tool.readAll(1000), run->expectedOutput()); // nothing between start and end
    }
}

} // namespace
