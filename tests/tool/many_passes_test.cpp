// A thousand passes in a row, run in-process as the tool runs them, while files come, go
// and change: the passes hold no descriptor and no memory beyond their own.
#include <unistd.h>

#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/tool/mirror_fixture.h"
#include "tool/job_db_pass.h"
#include "tool/log_pass.h"

namespace {

// Resident pages of this process.
long residentPages() {
    long size = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident;
}

TEST(ManyPasses, AThousandPassesHoldNoMoreDescriptorsOrMemory) {
    MirrorFolders f;
    for (int i = 0; i < 40; ++i)
        writeFile(f.local + "log" + std::to_string(i) + ".txt", std::string(1000 + i, 'l'));
    writeFile(f.local + "jobs.db", "db");
    _kzDirScan logScan, jobScan;
    logScan.addEndFilter(wide(".txt"));
    const auto pass = [&](int n) {
        // Some files change at every pass, one comes and one goes.
        writeFile(f.local + "log" + std::to_string(n % 40) + ".txt", "changed at pass " + std::to_string(n));
        writeFile(f.local + "new" + std::to_string(n % 7) + ".txt", "new");
        ::unlink((f.local + "new" + std::to_string((n + 3) % 7) + ".txt").c_str());
        logPass(wide(f.local), wide(f.root), logScan);
        jobDbPass(wide(f.local), wide(f.root), jobScan);
    };
    for (int n = 0; n < 20; ++n) pass(n); // settle the allocator
    const int descriptors = openDescriptors();
    const long pages = residentPages();
    for (int n = 20; n < 1020; ++n) pass(n);
    EXPECT_EQ(openDescriptors(), descriptors);
#ifndef __SANITIZE_ADDRESS__
    // (Under AddressSanitizer freed memory is held back on purpose, and leaks are its own
    // to report.)
    EXPECT_LE(residentPages(), pages + 16); // no growth beyond a few pages of noise
#else
    (void)pages;
#endif
    EXPECT_EQ(readFile(f.logs + "log19__copyFromLocal.txt"), "changed at pass 1019");
}

} // namespace
