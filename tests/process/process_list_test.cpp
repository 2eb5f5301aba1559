// The process table: against real processes (copies of the stand-in program under the names
// the watch loop cares about, in a PID namespace of the test's own), and against synthetic
// records for a kernel with more processes than this machine has. The watch against a full
// look at the table: the server goes and comes under another pid, runs twice, turns zombie,
// is renamed, becomes another program, leaves its pid to another program, or writes a longer
// name that begins with the server's over its argv[0].
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "process/process_list.h"
#include "process/process_watch.h"
#include "tests/support/child_process.h"
#include "tests/support/file_checks.h"
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
    const auto start = [&](const std::string& name) { return Child::start({installStandIn(dir.path(), name)}); };
    auto table = newTable();
    EXPECT_EQ(pidOf(*table, "kzServerconsole", false), 0u); // the first look takes a snapshot
    Child server = start("kzServerconsole"), longOne = start("kzServerconsoleLong"), odd = start("a) b (c");
    // The kernel keeps "kzOtherProgram1"; argv[0] names another program, so it completes nothing.
    Child foreign = Child::start({"/bin/bash", "-c", "exec -a /x/aDifferentLongName " + installStandIn(dir.path(), "kzOtherProgram1X")},
                                "", "kzOtherProgram1X");
    EXPECT_EQ(pidOf(*table, "kzServerconsole", false), 0u); // not seen until a new snapshot
    _kzString8_allSize<25> name("kzserverCONSOLE");
    uint64_t pid = 0;
    ASSERT_TRUE(table->findByName(name, true, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(server.pid()));
    EXPECT_STREQ(name.asChar(), "KZSERVERCONSOLE"); // upper-cased in place
    EXPECT_EQ(slotOf(*table, server.pid())->parentPid, static_cast<uint32_t>(getpid()));
    // Longer names are cut at sixteen, from the command line; neither the whole name nor a
    // part of a name matches.
    EXPECT_EQ(pidOf(*table, "kzServerconsoleL", false), static_cast<uint64_t>(longOne.pid()));
    EXPECT_EQ(pidOf(*table, "kzServerconsoleLong", false), 0u);
    EXPECT_EQ(pidOf(*table, "kzServer", false), 0u);
    EXPECT_EQ(pidOf(*table, "kzOtherProgram1", false), static_cast<uint64_t>(foreign.pid()));
    EXPECT_EQ(pidOf(*table, "A) B (C", false), static_cast<uint64_t>(odd.pid())); // a zombie counts: the watch's test

    server.kill();
    EXPECT_EQ(pidOf(*table, "kzServerconsole", true), 0u);
}

// Records as the kernel layer hands them over: stored in order with their names upper-cased,
// at most 3999, and asked by name and by pid, then sorted.
TEST(ProcessTable, StoredRecordsTheQuestionsByNameAndPidAndTheSorts) {
    std::vector<kzRawProcess> raw = {{5, 1, 0, "kzServerconsole"}, {3, 1, 0, "a"}, {9, 1, 0, "KZSERVERconsole"},
                                     {3, 1, 0, "kzServer"},        {7, 1, 0, ""}};
    auto table = newTable();
    table->collected = 1;
    table->storeRawProcesses(raw.data(), static_cast<long>(raw.size()));
    using Stored = std::vector<std::pair<uint32_t, std::string>>;
    const auto stored = [&] {
        Stored entries;
        for (int i = 0; i < table->count; ++i) entries.emplace_back(table->entries[i].pid, table->entries[i].name.asChar());
        return entries;
    };
    EXPECT_EQ(stored(), (Stored{{5, "KZSERVERCONSOLE"}, {3, "A"}, {9, "KZSERVERCONSOLE"}, {3, "KZSERVER"}, {7, ""}}));
    EXPECT_EQ(pidOf(*table, "kzserverconsole", false), 5u); // the first of two
    _kzString8_allSize<25> server("KZSERVERCONSOLE"), none(""), a("a");
    uint64_t pid = 4711;
    EXPECT_FALSE(table->findByName(none, false, &pid));
    EXPECT_EQ(pid, 4711u); // an empty name leaves the pid alone
    const struct {
        _kzString8_allSize<25>& name;
        int count;
        uint64_t lastPid;
    } counts[] = {{server, 2, 9}, {none, 1, 7}, {a, 1, 3}};
    for (const auto& row : counts) {
        EXPECT_EQ(table->countByName(row.name, &pid), row.count) << row.name.asChar();
        EXPECT_EQ(pid, row.lastPid) << row.name.asChar();
        EXPECT_EQ(table->isRunningTwice(row.name, &pid), row.count > 1) << row.name.asChar();
    }
    EXPECT_EQ(table->indexOfPid(3, false), 1); // the first of two
    EXPECT_EQ(table->indexOfPid(99, false), -1);
    table->sortByName(); // by the names' bytes, the shorter first, then by pid
    EXPECT_EQ(stored(), (Stored{{7, ""}, {3, "A"}, {3, "KZSERVER"}, {5, "KZSERVERCONSOLE"}, {9, "KZSERVERCONSOLE"}}));
    table->sortByPid();
    EXPECT_EQ(table->entries[2].pid, 5u);
    EXPECT_EQ(table->entries[4].pid, 9u);
    raw.assign(4003, kzRawProcess{1, 1, 0, "x"});
    raw[3998].pid = 42;
    table->count = 0;
    table->storeRawProcesses(raw.data(), static_cast<long>(raw.size()));
    EXPECT_EQ(table->count, 3999);
    EXPECT_EQ(table->entries[3998].pid, 42u);
    // Owners for the important ones alone: the Finder, or a process of more than 2000 MB.
    raw = {{11, 1, 0, "Finder"}, {12, 1, 0, "big"}, {13, 1, 0, "small"}};
    table->count = 0;
    table->storeRawProcesses(raw.data(), 3);
    EXPECT_EQ(table->entries[2].memoryMB, 0); // not measured yet
    table->entries[1].memoryMB = 2001;
    table->entries[2].memoryMB = 2000; // not more than 2000
    table->fillOwners(true);
    for (const auto& [index, owner] : {std::pair<int, std::string>{0, "root"}, {1, "root"}, {2, ""}})
        EXPECT_EQ(table->entries[index].owner.asChar(), owner) << index;
    table->skipLoad = 1;
    EXPECT_EQ(table->measureProcessChecked(2), 1); // a table that skips the load measures nothing
    table->clearSkipLoad();
    EXPECT_EQ(table->skipLoad, 0);
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
        // The status names the first check that failed.
        _exit(pid != 0 ? 1
              : table->count != 0 ? 2
              : std::string(table->errorText.asChar()) != " sysctl:Too many open files" ? 3
              : 0);
    };
    EXPECT_EXIT(snapshotWithoutDescriptors(), ::testing::ExitedWithCode(0), "");
}

std::string commOf(pid_t pid) { return readFile("/proc/" + std::to_string(pid) + "/comm"); }

// A child of this test that calls itself kzServerconsole, as prctl names a process, and on a
// letter through its pipe renames itself ('r'), becomes the program `other` ('e'), or
// writes a longer name that begins with the server's over its argv[0] ('a').
pid_t shapeshifter(const std::string& other, int& command) {
    int ends[2];
    if (pipe(ends) != 0) return -1;
    const pid_t pid = fork();
    if (pid == 0) {
        prctl(PR_SET_NAME, "kzServerconsole");
        char letter = 0;
        if (read(ends[0], &letter, 1) == 1 && letter == 'r') prctl(PR_SET_NAME, "kzRenamed");
        if (letter == 'e') execl(other.c_str(), other.c_str(), nullptr);
        if (letter == 'a') std::strcpy(program_invocation_name, "kzServerconsoleX"); // the test's path is longer
        while (read(ends[0], &letter, 1) > 0) {}
        _exit(0);
    }
    close(ends[0]);
    command = ends[1];
    waitFor([&] { return commOf(pid) == "kzServerconsole\n"; }, 3000);
    return pid;
}

TEST(ProcessWatch, AnswersAsAFullLookWouldAndReadsOneProcessWhileTheServerStays) {
    KZ_NEEDS_OWN_PROCESSES();
    TempDir dir;
    auto list = newTable(), full = newTable();
    _kzProcessWatch watch;
    const auto look = [&](const char* when) {
        const bool answer = watch.isRunning(*list, "kzServerconsole");
        EXPECT_EQ(answer, pidOf(*full, "kzServerconsole", true) != 0) << when;
        return answer;
    };
    const std::string server = installStandIn(dir.path(), "kzServerconsole"), otherProgram = installStandIn(dir.path(), "kzOtherProgram");
    const auto start = [&](const std::string& path) { return Child::start({path}); };
    EXPECT_FALSE(look("no server"));
    Child first = start(server);
    EXPECT_TRUE(look("the server"));
    EXPECT_EQ(watch.pid, static_cast<uint32_t>(first.pid()));
    list->count = 0;
    EXPECT_TRUE(look("the server still"));
    EXPECT_EQ(list->count, 0); // its own entry answered; the table was not read

    Child second = start(server);
    first.kill();
    EXPECT_TRUE(look("a second instance goes on"));
    EXPECT_EQ(watch.pid, static_cast<uint32_t>(second.pid()));
    ::kill(second.pid(), SIGKILL);
    siginfo_t ended;
    waitid(P_PID, static_cast<id_t>(second.pid()), &ended, WEXITED | WNOWAIT); // ended, not reaped
    EXPECT_TRUE(look("a zombie"));
    second.kill();
    Child longer = start(installStandIn(dir.path(), "kzServerconsoleLong"));
    EXPECT_FALSE(look("only a longer name that begins with the server's"));

    Child again = start(server);
    EXPECT_TRUE(look("started again under a new pid"));
    EXPECT_EQ(watch.pid, static_cast<uint32_t>(again.pid()));
    // Its pid goes to another program: the next process made gets the pid after ns_last_pid.
    const pid_t reused = again.pid();
    again.kill();
    writeFile("/proc/sys/kernel/ns_last_pid", std::to_string(reused - 1));
    Child other = start(otherProgram);
    ASSERT_EQ(other.pid(), reused);
    EXPECT_FALSE(look("its pid taken by another program"));

    other.kill();
    for (const char letter : {'r', 'e', 'a'}) {
        int command = -1;
        const pid_t pid = shapeshifter(otherProgram, command);
        EXPECT_TRUE(look("a server named by prctl"));
        ASSERT_EQ(write(command, &letter, 1), 1);
        waitFor([&] { return commOf(pid) != "kzServerconsole\n" || readFile("/proc/" + std::to_string(pid) + "/cmdline").rfind("kzServerconsoleX", 0) == 0; }, 3000);
        EXPECT_FALSE(look(letter == 'r' ? "renamed" : letter == 'e' ? "another program" : "a longer name in its argv[0]"));
        ::kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
        close(command);
    }
}

} // namespace
