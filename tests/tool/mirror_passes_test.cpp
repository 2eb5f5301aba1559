// The two mirror passes, driven in-process over real folders as the tool drives them. The
// log mirror's names are checked against a model by fuzz/path_fuzz.cpp.
#include <unistd.h>

#include <fstream>
#include <string>

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

TEST(LogPass, DecidesAgainAtEveryPassFromTimeAndSize) {
    MirrorFolders f;
    const std::string source = f.local + "s.txt", mirror = f.logs + "s__copyFromLocal.txt";
    writeFile(source, "0123456789");
    setModified(source, 1600000000);
    Passes passes;
    passes.logs(f);
    ASSERT_EQ(readFile(mirror), "0123456789");
    struct Step {
        const char* mirrorText; // what the mirror is made to hold before the pass
        long long mirrorTime;
        const char* sourceText; // nullptr: the source stays
        const char* expected;
    };
    for (const Step& step : {Step{"abcdefghij", 1600000000, nullptr, "abcdefghij"}, // same size and time: kept
                             Step{"zzzzzzzzzz", 1700000000, nullptr, "0123456789"}, // a newer mirror too is replaced
                             Step{"zzzzzzzzz", 1600000000, nullptr, "0123456789"},  // so is one of another size
                             Step{"0123456789", 1600000000, "0123", "0123"}}) {     // and a source that shrank
        writeFile(mirror, step.mirrorText);
        setModified(mirror, step.mirrorTime);
        if (step.sourceText) writeFile(source, step.sourceText);
        setModified(source, 1600000000);
        passes.logs(f);
        EXPECT_EQ(readFile(mirror), step.expected) << step.mirrorText;
        EXPECT_EQ(modifiedAt(mirror), step.expected == std::string(step.mirrorText) ? step.mirrorTime : 1600000000);
    }
}

TEST(JobDbPass, NamesWithJobsDbInAnyCaseGoUnchangedToTheJobFolder) {
    MirrorFolders f;
    const char* const names[] = {"jobs.db", "JOBS.DB", "jobs.db-journal", "oldjobs.db", "jobs.db.txt"};
    for (const char* name : names) writeFile(f.local + name, std::string("content of ") + name);
    writeFile(f.local + "jobs.txt", "no");
    ::mkdir((f.local + "jobs.db.d").c_str(), 0755);
    ::rmdir(f.logs.c_str());
    ::rmdir((f.root + "sub").c_str());
    Passes passes;
    passes.jobs(f); // the job folder is made with its parents
    for (const char* name : names) EXPECT_EQ(readFile(f.jobs + name), std::string("content of ") + name) << name;
    EXPECT_FALSE(readFile(f.jobs + "jobs.txt") != "<missing>" || isFolderAt(f.jobs + "jobs.db.d"));
}

// Resident pages of this process.
long residentPages() {
    long size = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident;
}

TEST(Passes, AThousandInARowHoldNoMoreDescriptorsOrMemory) {
    MirrorFolders f;
    for (int i = 0; i < 40; ++i) writeFile(f.local + "log" + std::to_string(i) + ".txt", std::string(1000 + i, 'l'));
    writeFile(f.local + "jobs.db", "db");
    Passes passes;
    const auto pass = [&](int n) {
        // Some files change at every pass, one comes and one goes.
        writeFile(f.local + "log" + std::to_string(n % 40) + ".txt", "changed at pass " + std::to_string(n));
        writeFile(f.local + "new" + std::to_string(n % 7) + ".txt", "new");
        ::unlink((f.local + "new" + std::to_string((n + 3) % 7) + ".txt").c_str());
        passes.logs(f);
        passes.jobs(f);
    };
    for (int n = 0; n < 20; ++n) pass(n); // settle the allocator
    const int descriptors = openDescriptors();
    const long pages = residentPages();
    for (int n = 20; n < 1020; ++n) pass(n);
    EXPECT_EQ(openDescriptors(), descriptors);
#ifndef __SANITIZE_ADDRESS__
    // (Under AddressSanitizer freed memory is held back on purpose, and leaks are its own to report.)
    EXPECT_LE(residentPages(), pages + 16); // no growth beyond a few pages of noise
#else
    (void)pages;
#endif
    EXPECT_EQ(readFile(f.logs + "log19__copyFromLocal.txt"), "changed at pass 1019");
}

} // namespace
