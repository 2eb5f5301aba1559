// Queries, signals and load of real processes (in a PID namespace of the test's own), the
// instance tests of the dynamic list, the load table and the sorts.
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <ios>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "process/process_list.h"
#include "process/process_load.h"
#include "process/process_load_table.h"
#include "process/process_snapshot.h"
#include "tests/support/child_process.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"

namespace {

using Name = _kzString8_allSize<25>;

struct Processes {
    TempDir dir;
    std::vector<Child> children;
    Processes() { ::chmod(dir.path().c_str(), 0755); }
    // The stand-in (or with `script` a shell) under `name`, as `uid` if given; `mib`: memory to touch.
    pid_t start(const std::string& name, int uid = -1, const char* mib = "0", const std::string& script = "") {
        const std::string path = dir.file(name);
        if (readFile(path) == "<missing>") installProgram(script.empty() ? KZ_STAND_IN_PATH : "/bin/sh", dir.path(), name);
        std::vector<std::string> command = {path, "-1", mib};
        if (!script.empty()) command = {path, "-c", script};
        children.push_back(Child::start(uid < 0 ? command : asUser(uid, command), "", name));
        return children.back().pid();
    }
};

TEST(ProcessQueries, CountsOwnersPidsAndSignalsByName) {
    KZ_NEEDS_OWN_PROCESSES();
    Processes p;
    const pid_t first = p.start("kzQueries"), second = p.start("kzQueries"), noAccount = p.start("kzQueries", 4242);
    const std::string record = p.dir.file("signals");
    for (const char* name : {"kzSignals", "kzSignals", "kzOther"})
        p.start(name, -1, "", std::string("trap 'echo INT >>") + record + "; exit' INT; trap 'echo TERM >>" + record +
                          "; exit' TERM; echo ready >>" + record + "; while :; do sleep 0.05; done");
    ASSERT_TRUE(waitFor([&] { return readFile(record) == "ready\nready\nready\n"; }, 5000));
    auto table = std::make_unique<_kzProcessList>(false);
    uint64_t pid = 0;
    Name name("kzqueries"), root("Root"), nobody("4242");
    ASSERT_TRUE(table->findByNameAndOwner(name, root, false, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(first));
    EXPECT_STREQ(root.asChar(), "ROOT"); // the owner is upper-cased in place
    EXPECT_TRUE(table->isRunningTwiceByOwner(name, root, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(second));
    EXPECT_FALSE(table->isRunningTwiceByOwner(name, nobody, &pid)); // a uid without an account is its number
    EXPECT_TRUE(table->findByNameAndOwner(name, nobody, false, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(noAccount));
    table->fillOwners(false);
    EXPECT_STREQ(table->entries[table->indexOfPid(noAccount, false)].owner.asChar(), "4242");
    // Each signal reaches every process of its name and no other.
    Name signals("kzsignals"), other("KZOTHER");
    table->interruptByName(signals);
    ASSERT_TRUE(waitFor([&] { return readFile(record) == "ready\nready\nready\nINT\nINT\n"; }, 5000));
    table->terminateByName(other);
    EXPECT_TRUE(waitFor([&] { return readFile(record) == "ready\nready\nready\nINT\nINT\nTERM\n"; }, 5000));
    EXPECT_EQ(_kzProcessList::killPid(first), 0);
}

TEST(ProcessQueries, CpuAndMemoryOfRealProcesses) {
    KZ_NEEDS_OWN_PROCESSES();
    Processes p;
    const pid_t busy = p.start("kzBusy", -1, "", "while :; do :; done"), big = p.start("kzBig", -1, "50");
    usleep(300000); // the big one touches its memory
    // Three rounds a second apart on one table; the second is kept as the earlier table, whose
    // interval is the divisor. The clock and the busy process's run time by the scheduler's own
    // count, read before and after each round, bound what the table may say whatever share of a
    // core the busy process gets on a loaded machine.
    const auto clock = [] { return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count(); };
    const auto ran = [&] { return std::stod(readFile("/proc/" + std::to_string(busy) + "/schedstat")) * 1e-9; };
    struct Reading {
        double wall, cpu;
    } begun[3], done[3];
    auto after = std::make_unique<_kzProcessList>(true), before = std::make_unique<_kzProcessList>(true);
    for (int round = 0; round < 3; ++round) {
        if (round == 2) before->copyFrom(*after);
        if (round > 0) usleep(1000000);
        begun[round] = {clock(), ran()}; // a braced list is read from left to right
        ASSERT_TRUE(after->updateFull());
        done[round] = {clock(), ran()};
        // The measurement's start, by the same clock, to the microsecond.
        EXPECT_GE(after->measureTime, begun[round].wall - 1e-6) << std::fixed << begun[round].wall << ", round " << round;
        EXPECT_LE(after->measureTime, done[round].wall + 1e-6) << std::fixed << done[round].wall << ", round " << round;
    }
    float busyPercent = -1, unset = 7;
    after->cpuPercent(busyPercent, after->indexOfPid(busy, false), *before, 0);
    // The CPU grown between the busy process's measurements in rounds 1 and 2, over the interval
    // between the starts of rounds 0 and 1; the kernel's tick-counted CPU time is within 30 ms.
    EXPECT_GE(busyPercent, 100 * (begun[2].cpu - done[1].cpu - 0.03) / (done[1].wall - begun[0].wall));
    EXPECT_LE(busyPercent, 100 * (done[2].cpu - begun[1].cpu + 0.03) / (begun[1].wall - done[0].wall));
    // Resident memory, to the nearest MiB, as the kernel's status gives it in KiB (its address space is 1 MiB more).
    const std::string status = readFile("/proc/" + std::to_string(big) + "/status");
    EXPECT_NEAR(after->entries[after->indexOfPid(big, false)].memoryMB, std::stol(status.substr(status.find("VmRSS:") + 6)) / 1024.0, 0.5);
    // Rounded to the kilobyte, then to the megabyte: 523776 bytes make 512 KiB, half a MiB,
    // and 1572352 bytes 1536 KiB.
    const uint64_t megabytes[][2] = {{523775, 0}, {523776, 1}, {1572351, 1}, {1572352, 2}};
    for (const auto& [bytes, mb] : megabytes) EXPECT_EQ(kzMemoryMB(bytes), static_cast<int>(mb)) << bytes << " bytes";
    after->clearMeasureInterval(); // no interval: false, and 0
    EXPECT_FALSE(after->cpuPercent(unset, after->indexOfPid(busy, false), *before, 0));
    EXPECT_EQ(unset, 0.0f);
    EXPECT_EQ(after->measureProcessChecked(0), 1);           // the first entry is never measured
    EXPECT_EQ(after->measureProcessChecked(after->count), 0); // behind the last: no entry
}

TEST(ProcessQueries, InstanceTestsOfTheDynamicList) {
    KZ_NEEDS_OWN_PROCESSES();
    Processes p;
    uint64_t pid = 7;
    const pid_t first = p.start("kzServerconsole");
    EXPECT_FALSE(_kzProcessSnapshot::isOtherInstanceRunning(Name("kzServer"), true, true, &pid));
    auto snapshot = std::make_unique<_kzProcessSnapshot>();
    EXPECT_EQ(snapshot->measureStarted, 0); // a new list has no measurement open
    snapshot->measureStarted = 1;
    EXPECT_TRUE(snapshot->update());
    EXPECT_EQ(snapshot->measureStarted, 0); // a new collection opens no measurement yet
    EXPECT_EQ(snapshot->entries[0].pid, 1u); // and starts from an empty table, with the first process
    EXPECT_TRUE(snapshot->update());
    EXPECT_FALSE(snapshot->isRunningTwice(Name("kzServerconsole"), &pid)); // the second collection replaced the first
    p.start("kzServerconsole");
    Name console("kzServerconsole"), root("root");
    EXPECT_TRUE(snapshot->findByNameAndOwner(console, root, true, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(first)); // the first of two
    EXPECT_TRUE(_kzProcessSnapshot::isOtherInstanceRunning(Name("kzServer"), true, true, &pid));
    EXPECT_EQ(pid, 0u);
    EXPECT_FALSE(_kzProcessSnapshot::isMoreThanTwoRunning(Name("kzServer"), true)); // exactly two
    EXPECT_FALSE(_kzProcessSnapshot::isMoreThanTwoRunning(Name("kzServerconsole"), false));
    p.children.pop_back();
    const pid_t server = p.start("kzServer");
    EXPECT_TRUE(_kzProcessSnapshot::isOtherInstanceRunning(Name("kzServer"), false, true, &pid));
    EXPECT_FALSE(_kzProcessSnapshot::isOtherInstanceRunning(Name("kzServer"), false, false, &pid));
    EXPECT_TRUE(_kzProcessSnapshot::isOtherInstanceRunning(Name("kzServer"), true, true, &pid));
    EXPECT_EQ(pid, static_cast<uint64_t>(server));
    EXPECT_TRUE(_kzProcessSnapshot::isOtherInstanceRunningByOwner(Name("kzServer"), Name("root"), false, true, nullptr));
    EXPECT_FALSE(_kzProcessSnapshot::isOtherInstanceRunningByOwner(Name("kzServer"), Name("4242"), false, true, nullptr));
    p.start("kzServer");
    EXPECT_TRUE(_kzProcessSnapshot::isMoreThanTwoRunning(Name("kzServer"), true));
    EXPECT_EQ(Name("abcdefghijklmnopqrst").combined("console").length, 25);
}

// A zombie has no memory left: the dynamic list says 0, the table 1, since 0 stands there
// only for a process that was not measured. A process that has gone since the snapshot is
// marked -5 in the dynamic list, as one that may not be read.
TEST(ProcessQueries, AZombieAndAProcessThatHasGone) {
    KZ_NEEDS_OWN_PROCESSES();
    Processes p;
    const pid_t zombie = p.start("kzZombie"), gone = p.start("kzGone");
    ::kill(zombie, SIGKILL);
    siginfo_t ended;
    ::waitid(P_PID, static_cast<id_t>(zombie), &ended, WEXITED | WNOWAIT); // ended, not reaped
    auto table = std::make_unique<_kzProcessList>(false);
    auto snapshot = std::make_unique<_kzProcessSnapshot>();
    ASSERT_TRUE(table->updateFull());
    snapshot->update();
    table->measureProcess(table->indexOfPid(zombie, false));
    snapshot->measureProcess(snapshot->indexOfPid(zombie, false));
    EXPECT_EQ(table->entries[table->indexOfPid(zombie, false)].memoryMB, 1);
    EXPECT_EQ(snapshot->entries[snapshot->indexOfPid(zombie, false)].memoryMB, 0);
    p.children.back().kill(); // the process named kzGone ends and is reaped
    snapshot->measureProcess(snapshot->indexOfPid(gone, false));
    EXPECT_EQ(snapshot->entries[snapshot->indexOfPid(gone, false)].cpuSeconds, -5.0);
}

// Round by round: whether the table is behind the list it is given, then the CPU share the
// table takes from it: the first round only stores, later ones give the percentage of one
// core since the last, held to 0 .. 102400.
TEST(ProcessQueries, TheLoadTableOverRounds) {
    auto list = std::make_unique<_kzProcessList>(false);
    list->count = 1;
    _kzProcessLoadTable table(2);
    table.count = 1;
    const struct {
        double measureTime, cpuSeconds;
        int64_t second, ms;
        bool behind;
        float percent;
    } rounds[] = {{1, 0.5, 1000, 1000500, false, 0},            // never taken over: not behind; only stored
                  {3, 0.515625, 1000, 1000600, true, 0.78125},   // a later tenth of the same second; below 1 %
                  {13, 0.25, 1001, 1001000, true, 0},            // a later second; CPU time went back
                  {14, 2002.5, 1001, 1001050, true, 102400},     // the same tenth, a later measurement
                  {14, 2003, 1001, 1001050, false, 0},           // nothing later: no interval
                  {15, 2004, 1000, 1000000, false, 100}};        // an older snapshot
    for (const auto& round : rounds) {
        list->measureTime = round.measureTime;
        list->entries[0].cpuSeconds = round.cpuSeconds;
        list->snapshotTime.value = round.second;
        list->snapshotTimeMS.value = round.ms;
        EXPECT_EQ(table.isBehind(*list), round.behind) << "at " << round.measureTime;
        table.takeTimes(*list);
        table.updateCpu(0, *list, 0);
        EXPECT_EQ(table.at(0)->cpuPercent, round.percent) << "at " << round.measureTime;
        EXPECT_EQ(table.at(0)->cpuSeconds, round.cpuSeconds) << "at " << round.measureTime;
    }
    // A list's CPU share against an earlier list, where the process stands first, scaled or
    // not; a process the earlier list lacks is new: 0.
    auto before = std::make_unique<_kzProcessList>(false);
    before->count = 1;
    before->entries[0].pid = 7;
    before->entries[0].cpuSeconds = 1;
    before->measureInterval = list->measureInterval = 2;
    list->entries[0].pid = 7;
    list->entries[0].cpuSeconds = 2;
    for (const auto& [scale, percent] : {std::pair<int, float>{0, 50}, {3, 150}}) {
        float share = -1;
        EXPECT_TRUE(list->cpuPercent(share, 0, *before, scale)) << scale;
        EXPECT_EQ(share, percent) << scale;
    }
    before->entries[0].pid = 8;
    float share = -1;
    EXPECT_TRUE(list->cpuPercent(share, 0, *before, 0));
    EXPECT_EQ(share, 0.0f);
    // Within one second and without a later measurement, by tenths of a second.
    for (const auto& [ms, behind] : {std::pair<int64_t, bool>{1000099, false}, {1000100, true}}) {
        list->snapshotTime.value = 1000;
        list->snapshotTimeMS.value = ms;
        EXPECT_EQ(table.isBehind(*list), behind) << ms;
    }
}

TEST(ProcessQueries, TheLoadTableStartsUnsetAndMovesRecordsUpAndAListCopiesWhole) {
    _kzProcessLoadTable table(4);
    EXPECT_EQ(static_cast<long long>(table.snapshotTimeMS.value), 0); // unset until a list is taken over
    table.count = 3;
    for (int i = 1; i <= 2; ++i) table.at(i)->pid = 7 + i; // 8 and 9
    table.removeAt(1);
    EXPECT_EQ(_kzProcessList::recordSize(), static_cast<int>(sizeof(_kzProcessList))); // the whole record
    table.removeAt(2); // behind the records in use: nothing
    EXPECT_EQ(table.count, 2);
    EXPECT_EQ(table.at(1)->pid, 9u);
    EXPECT_EQ(table.indexOfPid(8), -1); // the record removed is no longer found
    // A copy of a list takes over every field up to the measurement's start, that one included
    // (a new list has started its first measurement).
    auto from = std::make_unique<_kzProcessList>(false), to = std::make_unique<_kzProcessList>(false);
    from->measureStarted = 0;
    to->copyFrom(*from);
    EXPECT_EQ(to->measureStarted, 0);
    // Second 1 is a snapshot's time like any other: a list of second 2 is newer.
    from->snapshotTime.value = 1;
    table.takeSnapshotTime(*from);
    from->snapshotTime.value = 2;
    EXPECT_TRUE(table.isBehind(*from));
}

} // namespace
