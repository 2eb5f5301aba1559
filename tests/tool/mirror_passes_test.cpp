// The two mirror passes, driven in-process over real folders, many passes in a row.
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/tool/mirror_fixture.h"
#include "tool/job_db_pass.h"
#include "tool/log_pass.h"

namespace {

// One pass of each kind, with the scans set up as the tool sets them up.
struct Passes {
    _kzDirScan logScan;
    _kzDirScan jobScan;
    Passes() { logScan.addEndFilter(wide(".txt")); }
    void logs(const MirrorFolders& f) { logPass(wide(f.local), wide(f.root), logScan); }
    void jobs(const MirrorFolders& f) { jobDbPass(wide(f.local), wide(f.root), jobScan); }
};

TEST(LogPass, TheNameTable) {
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"server.txt", "server__copyFromLocal.txt"},
        {"server__local.txt", "server__copyFromLocal.txt"},
        {"Server__LOCAL.TXT", "Server__copyFromLocal.txt"},
        {"a.TXT", "a__copyFromLocal.txt"},
        {"a.txt.txt", "a__copyFromLocal.txt__copyFromLocal.txt"},
        {"x__copyFromLocal.txt", "x__copyFromLocal__copyFromLocal.txt"},
        {"__local.txt", "__copyFromLocal.txt"},
        {"a.txt.log", "a__copyFromLocal.txt.log"}, // the name alone; the scan never offers it
    };
    for (const auto& row : rows)
        EXPECT_EQ(textOf(logDestination(wide("/net/"), wide(row.first))), "/net/sub/log/" + row.second)
            << row.first;
    // Every ".txt" of the whole path is replaced, the network root's included.
    EXPECT_EQ(textOf(logDestination(wide("/mnt/a.txt/"), wide("s.txt"))),
              "/mnt/a__copyFromLocal.txt/sub/log/s__copyFromLocal.txt");
    EXPECT_EQ(textOf(logDestination(wide("/m/B__Local.TXT/"), wide("s__local.txt"))),
              "/m/B__copyFromLocal.txt/sub/log/s__copyFromLocal.txt");
    // The path is cut at 500 characters before the names are changed.
    const std::string root = "/" + std::string(480, 'r') + "/";
    EXPECT_EQ(logDestination(wide(root), wide("server.txt")).length, 500);
}

TEST(LogPass, DecidesAgainAtEveryPassFromTimeAndSize) {
    MirrorFolders f;
    const std::string source = f.local + "s.txt", mirror = f.logs + "s__copyFromLocal.txt";
    writeFile(source, "0123456789");
    setModified(source, 1600000000);
    Passes passes;
    passes.logs(f);
    ASSERT_EQ(readFile(mirror), "0123456789");

    // Same size and time: not copied, whatever the mirror holds.
    writeFile(mirror, "abcdefghij");
    setModified(mirror, 1600000000);
    passes.logs(f);
    EXPECT_EQ(readFile(mirror), "abcdefghij");

    // The source touched, content and size unchanged: copied again.
    setModified(source, 1600000100);
    passes.logs(f);
    EXPECT_EQ(readFile(mirror), "0123456789");
    EXPECT_EQ(modifiedAt(mirror), 1600000100);

    // Same size, another time, also a newer one: overwritten.
    writeFile(mirror, "zzzzzzzzzz");
    setModified(mirror, 1700000000);
    passes.logs(f);
    EXPECT_EQ(readFile(mirror), "0123456789");

    // A source that shrank is a difference too.
    writeFile(source, "0123");
    setModified(source, 1600000100);
    passes.logs(f);
    EXPECT_EQ(readFile(mirror), "0123");
}

TEST(JobDbPass, NamesWithJobsDbInAnyCaseGoUnchangedToTheJobFolder) {
    MirrorFolders f;
    for (const char* name :
         {"jobs.db", "JOBS.DB", "jobs.db-journal", "jobs.db.bak", "oldjobs.db", "jobs.db.txt"})
        writeFile(f.local + name, std::string("content of ") + name);
    writeFile(f.local + "jobs.txt", "no");
    ::mkdir((f.local + "jobs.db.d").c_str(), 0755);
    setModified(f.local + "jobs.db", 1600000000);

    Passes passes;
    passes.logs(f); // both options: the log pass first, as the tool runs them
    passes.jobs(f);
    for (const char* name :
         {"jobs.db", "JOBS.DB", "jobs.db-journal", "jobs.db.bak", "oldjobs.db", "jobs.db.txt"})
        EXPECT_EQ(readFile(f.jobs + name), std::string("content of ") + name) << name;
    EXPECT_EQ(modifiedAt(f.jobs + "jobs.db"), 1600000000);
    EXPECT_EQ(readFile(f.jobs + "jobs.txt"), "<missing>");
    EXPECT_FALSE(isFolderAt(f.jobs + "jobs.db.d"));
    EXPECT_EQ(readFile(f.logs + "jobs.db__copyFromLocal.txt"), "content of jobs.db.txt");

    // The job folder is made with its parents on every pass.
    MirrorFolders bare;
    ::rmdir(bare.logs.c_str());
    ::rmdir((bare.root + "sub").c_str());
    writeFile(bare.local + "jobs.db", "db");
    passes.jobs(bare);
    EXPECT_EQ(readFile(bare.jobs + "jobs.db"), "db");
    ::unlink((bare.jobs + "jobs.db").c_str());
    ::rmdir(bare.jobs.c_str());
    passes.jobs(bare);
    EXPECT_EQ(readFile(bare.jobs + "jobs.db"), "db");

    // A plain file in the folder's place: the pass goes on, and its copies fail.
    MirrorFolders blocked;
    ::mkdir((blocked.root + "sub/cfg_global").c_str(), 0755);
    writeFile(blocked.root + "sub/cfg_global/__copyFromLocal", "in the way");
    writeFile(blocked.local + "jobs.db", "db");
    passes.jobs(blocked);
    EXPECT_EQ(readFile(blocked.root + "sub/cfg_global/__copyFromLocal"), "in the way");
}

} // namespace
