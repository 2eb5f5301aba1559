// The process table against real processes: copies of the stand-in program started under
// the names the watch loop cares about.
#include <sys/resource.h>
#include <unistd.h>

#include <memory>
#include <regex>
#include <string>

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

ChildProcess startAs(const TempDir& dir, const std::string& fileName) {
    const std::string path = installStandIn(dir.path(), fileName);
    return ChildProcess::start(path, {path});
}

bool find(_kzProcessList& table, const char* name, bool refresh, uint64_t* pid = nullptr) {
    _kzString8_allSize<25> n(name);
    return table.findByName(n, refresh, pid);
}

TEST(ProcessTable, FindsARealProcessWithItsPidParentAndUid) {
    TempDir dir;
    ChildProcess server = startAs(dir, "kzServerconsole");
    auto table = newTable();

    _kzString8_allSize<25> name("kzserverCONSOLE");
    uint64_t pid = 12345;
    ASSERT_TRUE(table->findByName(name, true, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(server.pid()));
    EXPECT_STREQ(name.asChar(), "KZSERVERCONSOLE"); // the caller's string is upper-cased

    const _kzProcessEntry* slot = slotOf(*table, server.pid());
    ASSERT_NE(slot, nullptr);
    EXPECT_STREQ(slot->name.data, "KZSERVERCONSOLE");
    EXPECT_EQ(slot->parentPid, static_cast<uint32_t>(getpid()));
    EXPECT_EQ(slot->uid, static_cast<uint32_t>(geteuid()));
    EXPECT_TRUE(slot->owner.isEmpty());
    EXPECT_EQ(slot->memoryMB, 0);
    EXPECT_EQ(+slot->cpuSeconds, 0.0);

    // A partial name does not match, and the process is gone from the next snapshot.
    EXPECT_FALSE(find(*table, "kzServer", false));
    server.kill();
    EXPECT_FALSE(find(*table, "kzServerconsole", true, &pid));
    EXPECT_EQ(pid, 0u);
}

TEST(ProcessTable, NamesLongerThanTheKernelsAreCutAtSixteen) {
    TempDir dir;
    ChildProcess longOne = startAs(dir, "kzServerconsoleLong");
    ChildProcess sixteen = startAs(dir, "abcdefghijklmnop");
    auto table = newTable();

    uint64_t pid = 0;
    ASSERT_TRUE(find(*table, "kzServerconsoleL", true, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(longOne.pid()));
    EXPECT_STREQ(slotOf(*table, longOne.pid())->name.data, "KZSERVERCONSOLEL");
    EXPECT_STREQ(slotOf(*table, sixteen.pid())->name.data, "ABCDEFGHIJKLMNOP");
    // The whole name never matches, and neither does the 15-character kernel name (no
    // other test runs a kzServerconsole beside this one).
    EXPECT_FALSE(find(*table, "kzServerconsoleLong", false));
    EXPECT_FALSE(find(*table, "kzServerconsole", false));
}

TEST(ProcessTable, NamesWithParenthesesAndBlanks) {
    TempDir dir;
    ChildProcess odd = startAs(dir, "a) b (c");
    auto table = newTable();
    uint64_t pid = 0;
    ASSERT_TRUE(find(*table, "A) B (C", true, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(odd.pid()));
    EXPECT_EQ(slotOf(*table, odd.pid())->parentPid, static_cast<uint32_t>(getpid()));
}

TEST(ProcessTable, AZombieStillCounts) {
    TempDir dir;
    const std::string path = installStandIn(dir.path(), "kzServerconsole");
    ChildProcess zombie = ChildProcess::start(path, {path, "0"});
    zombie.waitUntilZombie();
    auto table = newTable();
    uint64_t pid = 0;
    ASSERT_TRUE(find(*table, "kzServerconsole", true, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(zombie.pid()));
    ASSERT_TRUE(zombie.waitExit(1000));
    EXPECT_FALSE(find(*table, "kzServerconsole", true));
}

TEST(ProcessTable, RefreshFalseTakesOneSnapshotOnANewObject) {
    TempDir dir;
    auto table = newTable();
    EXPECT_EQ(table->collected, 0);
    EXPECT_EQ(table->count, 0);
    EXPECT_FALSE(find(*table, "kzServerconsole", false));
    EXPECT_EQ(table->collected, 1);
    EXPECT_GT(table->count, 1);

    // A process started now is not seen until a snapshot is asked for.
    ChildProcess server = startAs(dir, "kzServerconsole");
    EXPECT_FALSE(find(*table, "kzServerconsole", false));
    EXPECT_TRUE(find(*table, "kzServerconsole", true));
    server.kill();
    EXPECT_TRUE(find(*table, "kzServerconsole", false));
}

TEST(ProcessTable, AnEmptyNameAnswersFalseWithoutTouchingAnything) {
    auto table = newTable();
    _kzString8_allSize<25> empty;
    uint64_t pid = 4711;
    EXPECT_FALSE(table->findByName(empty, true, &pid));
    EXPECT_EQ(pid, 4711u);
    EXPECT_EQ(table->collected, 0); // no snapshot either
}

TEST(ProcessTable, ConstructionAndTheTimingLog) {
    const long long before = _kzTimeMS::now();
    auto table = newTable();
    EXPECT_EQ(table->magic, 0xABCD);
    EXPECT_EQ(table->measureStarted, 1);
    EXPECT_EQ(+table->measureInterval, 0.0);
    EXPECT_GT(+table->measureTime, 1.7e9);
    EXPECT_EQ(+table->snapshotTime.value, 0);
    EXPECT_TRUE(std::regex_match(table->logText.asChar(), std::regex("; init: \\.\\d\\ds\\.ms")));

    EXPECT_FALSE(find(*table, "no such process name", true));
    EXPECT_TRUE(table->errorText.isEmpty());
    EXPECT_EQ(table->measureStarted, 0);
    const std::regex line("CollectAllProcesses_OS: \\d*\\.\\d\\ds\\.ms; procCount: (\\d+)");
    std::cmatch m;
    ASSERT_TRUE(std::regex_match(table->logText.asChar(), m, line)) << table->logText.asChar();
    EXPECT_EQ(std::stoi(m[1]), table->count);
    EXPECT_GE(+table->snapshotTimeMS.value, before);
    EXPECT_LE(+table->snapshotTimeMS.value, _kzTimeMS::now());
    EXPECT_GE(+table->snapshotTime.value, before / 1000);
    // This process itself is in the table.
    EXPECT_NE(slotOf(*table, getpid()), nullptr);
}

// A real failure of the kernel read: with no file descriptor left, /proc can't be opened.
// Runs in a child process, which reports through its exit code.
void snapshotWithoutFileDescriptors() {
    auto table = newTable();
    const int lowestFree = dup(0);
    close(lowestFree);
    rlimit saved;
    getrlimit(RLIMIT_NOFILE, &saved);
    const rlimit limit{static_cast<rlim_t>(lowestFree), saved.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limit);
    uint64_t pid = 77;
    const bool found = find(*table, "init", true, &pid);
    setrlimit(RLIMIT_NOFILE, &saved);
    const bool ok =
        !found && pid == 0 && table->count == 0 &&
        std::string(table->errorText.asChar()) == " sysctl:Too many open files" &&
        std::regex_match(table->logText.asChar(), std::regex("CollectAllProcesses_OS: .*; procCount: 0"));
    _exit(ok ? 0 : 1);
}

TEST(ProcessTable, AFailedReadLeavesAnEmptyTableAndSaysWhy) {
    EXPECT_EXIT(snapshotWithoutFileDescriptors(), ::testing::ExitedWithCode(0), "");
}

TEST(ProcessTable, ResetCopyAndOwnerNames) {
    auto table = newTable();
    find(*table, "x", true);
    ASSERT_GT(table->count, 0);
    table->errorText = "failed";
    table->resetForReuse();
    EXPECT_EQ(table->count, 0);
    EXPECT_EQ(table->collected, 0);
    EXPECT_EQ(table->measureStarted, 1);
    EXPECT_EQ(+table->measureInterval, 0.0);
    EXPECT_TRUE(table->errorText.isEmpty());

    auto source = newTable();
    find(*source, "x", true);
    table->collected = 0;
    const int64_t timer = table->stepTimer.value;
    table->copyFrom(*source);
    EXPECT_EQ(table->count, source->count);
    EXPECT_EQ(table->entries[0].pid, source->entries[0].pid);
    EXPECT_EQ(+table->snapshotTimeMS.value, +source->snapshotTimeMS.value);
    EXPECT_EQ(table->collected, 0); // not taken over
    EXPECT_EQ(table->stepTimer.value, timer);

    EXPECT_STREQ(_kzProcessList::ownerNameOfUid(0).asChar(), "root");
    EXPECT_STREQ(_kzProcessList::ownerNameOfUid(3999999).asChar(), "3999999");
}

} // namespace
