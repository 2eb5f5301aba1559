// The process table: against real processes (copies of the stand-in program under the names
// the watch loop cares about, in a PID namespace of the test's own), and against synthetic
// records for a kernel with more processes than this machine has.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "process/process_list.h"
#include "tests/support/child_process.h"
#include "tests/support/temp_dir.h"

namespace {

// The table is 321 KB; tests keep it on the heap.
std::unique_ptr<_kzProcessList> newTable() { return std::make_unique<_kzProcessList>(false); }

const _kzProcessEntry* slotOf(const _kzProcessList& table, pid_t pid) {
    for (int i = 0; i < table.count; ++i)
        if (table.entries[i].pid == static_cast<uint32_t>(pid)) return &table.entries[i];
    return nullptr;
}

// The pid found under `name` (0 if none); the table takes a new snapshot with `refresh`.
uint64_t pidOf(_kzProcessList& table, const char* name, bool refresh) {
    _kzString8_allSize<25> n(name);
    uint64_t pid = 4711;
    const bool found = table.findByName(n, refresh, &pid);
    EXPECT_EQ(found, pid != 0);
    return pid;
}

TEST(ProcessTable, RealProcessesByNameAsTheKernelAndTheirCommandLinesGiveThem) {
    KZ_NEEDS_OWN_PROCESSES();
    TempDir dir;
    const auto start = [&](const std::string& name, const char* ms = nullptr) {
        const std::string path = installStandIn(dir.path(), name);
        return Child::start(ms ? std::vector<std::string>{path, ms} : std::vector<std::string>{path});
    };
    auto table = newTable();
    EXPECT_EQ(pidOf(*table, "kzServerconsole", false), 0u); // the first look takes a snapshot
    Child server = start("kzServerconsole"), longOne = start("kzServerconsoleLong"),
                 odd = start("a) b (c"), zombie = start("kzZombie", "0");
    // The kernel keeps "kzOtherProgram1"; argv[0] names another program, so it completes nothing.
    Child foreign = Child::start({"/bin/bash", "-c", "exec -a /x/aDifferentLongName " + installStandIn(dir.path(), "kzOtherProgram1X")},
                                "", "kzOtherProgram1X");
    siginfo_t ended;
    waitid(P_PID, static_cast<id_t>(zombie.pid()), &ended, WEXITED | WNOWAIT); // ended, not reaped
    EXPECT_EQ(pidOf(*table, "kzServerconsole", false), 0u); // not seen until a new snapshot
    _kzString8_allSize<25> name("kzserverCONSOLE");
    uint64_t pid = 0;
    ASSERT_TRUE(table->findByName(name, true, &pid));
    EXPECT_EQ(std::to_string(pid) + name.asChar(), std::to_string(server.pid()) + "KZSERVERCONSOLE"); // upper-cased
    EXPECT_EQ(slotOf(*table, server.pid())->parentPid, static_cast<uint32_t>(getpid()));
    // Longer names are cut at sixteen, from the command line; neither the whole name nor a
    // part of a name matches.
    EXPECT_EQ(pidOf(*table, "kzServerconsoleL", false), static_cast<uint64_t>(longOne.pid()));
    EXPECT_EQ(pidOf(*table, "kzServerconsoleLong", false) + pidOf(*table, "kzServer", false), 0u);
    EXPECT_EQ(pidOf(*table, "kzOtherProgram1", false), static_cast<uint64_t>(foreign.pid()));
    EXPECT_EQ(pidOf(*table, "A) B (C", false), static_cast<uint64_t>(odd.pid()));
    EXPECT_EQ(pidOf(*table, "kzZombie", false), static_cast<uint64_t>(zombie.pid())); // a zombie counts

    server.kill();
    EXPECT_EQ(pidOf(*table, "kzServerconsole", true), 0u);
}

TEST(ProcessTable, StoredRecordsKeepTheirOrderUpToTheCap) {
    std::vector<kzRawProcess> records(5000);
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].pid = static_cast<uint32_t>(100000 + 5000 - i); // descending: the order is kept
        records[i].parentPid = static_cast<uint32_t>(i);
        std::snprintf(records[i].name, sizeof records[i].name, "proc%d", static_cast<int>(i));
    }
    std::snprintf(records[1].name, sizeof records[1].name, "kzServerconsole");
    std::snprintf(records[2].name, sizeof records[2].name, "KZSERVERconsole");
    auto table = newTable();
    table->collected = 1;
    table->storeRawProcesses(records.data(), static_cast<long>(records.size()));
    ASSERT_EQ(table->count, 3999);
    for (int i = 0; i < table->count; ++i) ASSERT_EQ(table->entries[i].pid, records[static_cast<size_t>(i)].pid);
    EXPECT_STREQ(table->entries[2].name.data, "KZSERVERCONSOLE");
    EXPECT_EQ(pidOf(*table, "kzServerconsole", false), records[1].pid); // the first match wins
    EXPECT_EQ(pidOf(*table, "kzServerconsolX", false), 0u);
    EXPECT_EQ(pidOf(*table, "proc3998", false), records[3998].pid);
    EXPECT_EQ(pidOf(*table, "proc3999", false), 0u);
    table->storeRawProcesses(records.data(), 10);
    EXPECT_EQ(table->count, 3999);
}

// A real failure of the kernel read: with no file descriptor left, /proc can't be opened.
TEST(ProcessTable, AFailedReadLeavesAnEmptyTableAndSaysWhy) {
    const auto snapshotWithoutDescriptors = [] {
        auto table = newTable();
        const int lowestFree = dup(0);
        close(lowestFree);
        const rlimit limit{static_cast<rlim_t>(lowestFree), static_cast<rlim_t>(lowestFree)};
        setrlimit(RLIMIT_NOFILE, &limit);
        const uint64_t pid = pidOf(*table, "init", true);
        _exit(pid == 0 && table->count == 0 &&
                      std::string(table->errorText.asChar()) == " sysctl:Too many open files"
                  ? 0
                  : 1);
    };
    EXPECT_EXIT(snapshotWithoutDescriptors(), ::testing::ExitedWithCode(0), "");
}

} // namespace
