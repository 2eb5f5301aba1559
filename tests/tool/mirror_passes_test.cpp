// The two mirror passes, driven in-process over real folders as the tool drives them, and
// the log mirror's names.
#include <dirent.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/tool/mirror_fixture.h"
#include "tool/job_db_pass.h"
#include "tool/log_pass.h"
#include "tool/mirror_file.h"

namespace {

// One pass of each kind, with the scans set up as the tool sets them up.
struct Passes {
    _kzDirScan logScan;
    _kzDirScan jobScan;
    Passes() { logScan.addEndFilter(wide(".txt")); }
    void logs(const MirrorFolders& f) { logPass(wide(f.local), wide(f.root), logScan); }
    void jobs(const MirrorFolders& f) { jobDbPass(wide(f.local), wide(f.root), jobScan); }
};

// Every ".txt" of the whole path is marked as a copy, or "__local.txt" alone where the name
// ends in it; the path is cut at its capacity before.
TEST(LogPass, TheMirrorsNames) {
    const std::string deep = "/" + std::string(488, 'r') + "/";
    const struct {
        std::string root, name, expected;
    } rows[] = {{"/r/", "a.txt", "/r/sub/log/a__copyFromLocal.txt"},
                {"/r/", "a__LOCAL.TXT", "/r/sub/log/a__copyFromLocal.txt"},
                {"/r/", "A.TXT", "/r/sub/log/A__copyFromLocal.txt"},
                {"/r/", "a__local.txt.bak", "/r/sub/log/a__local__copyFromLocal.txt.bak"},
                {"/r/", "a.txt.txt", "/r/sub/log/a__copyFromLocal.txt__copyFromLocal.txt"},
                {"/r.txt/", "a.txt", "/r__copyFromLocal.txt/sub/log/a__copyFromLocal.txt"},
                {deep, "a.txt", deep + "sub/log/a."}};
    for (const auto& row : rows)
        EXPECT_EQ(textOf(logDestination(wide(row.root), wide(row.name))), row.expected) << row.root << row.name;
}

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
    EXPECT_EQ(readFile(f.jobs + "jobs.txt"), "<missing>");
    EXPECT_FALSE(isFolderAt(f.jobs + "jobs.db.d"));
}

// Sets a file's modification time to the nanosecond.
void setModifiedNs(const std::string& path, long long seconds, long nanoseconds) {
    const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ::utimensat(AT_FDCWD, path.c_str(), times, 0);
}

// A copy keeps its source's time only when no later write can leave time and size as they
// are: when the source did not change while it was copied and the second of its time is over
// by the clock that writes are stamped from. Otherwise the copy gets a time a second before
// the source's, so that the next pass copies it again.
TEST(MirrorFile, KeepsTheSourcesTimeOnlyForACopyThatSettled) {
    // The rows start in the first half of a second, so that the present second is not over
    // before the last row is copied.
    timespec now;
    while (::clock_gettime(CLOCK_REALTIME_COARSE, &now) == 0 && now.tv_nsec >= 500000000) ::usleep(10000);
    struct Row {
        const char* what;
        long long seconds;
        long nanoseconds;
        long long changedTo; // the source's time set while it is being copied (0: no change)
        long long expected;
    };
    const Row rows[] = {
        {"a past second", 1600000000, 0, 0, 1600000000},
        {"the present second", now.tv_sec, 0, 0, now.tv_sec - 1},
        {"the next second", now.tv_sec + 1, 0, 0, now.tv_sec},
        {"set by hand just over a second ahead", now.tv_sec + 1, 999999999, 0, now.tv_sec + 1},
        {"set by hand two seconds ahead", now.tv_sec + 2, 999999999, 0, now.tv_sec + 2},
        {"changed within its second while copied", 1600000000, 0, 1600000000, 1599999999},
    };
    for (const Row& row : rows) {
        TempDir dir;
        const std::string source = dir.file("s.txt"), mirror = dir.file("m.txt");
        std::thread writer;
        if (row.changedTo == 0) {
            writeFile(source, "settled?");
        } else {
            // A pipe's time moves when it is written; the copy reads it to its end, which comes
            // only once the writer has set the new time (half a second later, in the same second) and closed it.
            ::mkfifo(source.c_str(), 0644);
            writer = std::thread([&] {
                const int fd = ::open(source.c_str(), O_WRONLY);
                EXPECT_EQ(::write(fd, "settled?", 8), 8);
                setModifiedNs(source, row.changedTo, 500000000);
                ::close(fd);
            });
        }
        setModifiedNs(source, row.seconds, row.nanoseconds);
        mirrorFile(wide(source), wide(mirror));
        if (writer.joinable()) writer.join();
        EXPECT_EQ(readFile(mirror), "settled?") << row.what;
        EXPECT_EQ(modifiedAt(mirror), row.expected) << row.what;
    }
}

// The job folder holds what the local folder holds: a file of a job database name whose
// source has gone is removed before anything is copied, when the local folder was read.
TEST(JobDbPass, RemovesTheJobFilesWhoseSourceHasGoneAndNothingElse) {
    MirrorFolders f;
    writeFile(f.local + "jobs.db", "db");
    ::mkdir((f.local + "jobs.db-keep").c_str(), 0755);
    Passes passes;
    passes.jobs(f);
    struct Row {
        const char* name;
        bool kept;
    };
    const Row rows[] = {
        {"jobs.db-wal", false},  // a side file that the engine deleted
        {"JOBS.DB-SHM", false},  // any case
        {"JOBS.DB", false},      // the local folder holds jobs.db, not this name
        {"jobs.db-keep", true},  // the local folder holds a folder of this name
        {"other.txt", true},     // no job database name
    };
    for (const Row& row : rows) writeFile(f.jobs + row.name, "old");
    ::mkdir((f.jobs + "old.jobs.db").c_str(), 0755);
    writeFile(f.logs + "jobs.db-wal", "a log mirror keeps everything");
    passes.jobs(f);
    for (const Row& row : rows) EXPECT_EQ(readFile(f.jobs + row.name) != "<missing>", row.kept) << row.name;
    EXPECT_TRUE(isFolderAt(f.jobs + "old.jobs.db")); // folders stay
    EXPECT_EQ(readFile(f.logs + "jobs.db-wal"), "a log mirror keeps everything");
    EXPECT_EQ(readFile(f.jobs + "jobs.db"), "db");

    // A local folder that can't be read tells nothing of what has gone.
    writeFile(f.jobs + "jobs.db-wal", "old");
    ::rename(f.local.c_str(), f.dir.file("moved").c_str());
    passes.jobs(f);
    EXPECT_EQ(readFile(f.jobs + "jobs.db-wal"), "old");
}

// Each pass copies in the order in which the directory lists the local folder, not sorted:
// the mirrors come into being in that order.
TEST(Passes, CopyInTheOrderOfTheDirectory) {
    MirrorFolders f;
    for (const char* name : {"c", "a", "h", "d", "f", "b", "g", "e"}) {
        writeFile(f.local + name + ".txt", name);
        writeFile(f.local + name + ".jobs.db", name);
    }
    std::vector<std::string> logs, jobs;
    DIR* folder = ::opendir(f.local.c_str());
    while (const dirent* entry = ::readdir(folder)) {
        const std::string name = entry->d_name;
        if (name.substr(1) == ".txt") logs.push_back(name.substr(0, 1) + "__copyFromLocal.txt");
        if (name.substr(1) == ".jobs.db") jobs.push_back(name);
    }
    ::closedir(folder);
    // Where the directory lists the names sorted, no order would tell the two apart.
    ASSERT_FALSE(std::is_sorted(logs.begin(), logs.end())) << "the logs are listed sorted";
    ASSERT_FALSE(std::is_sorted(jobs.begin(), jobs.end())) << "the job files are listed sorted";
    ::mkdir((f.root + "sub/cfg_global").c_str(), 0755);
    ::mkdir(f.jobs.c_str(), 0755);
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ::inotify_add_watch(watch, f.logs.c_str(), IN_CREATE);
    ::inotify_add_watch(watch, f.jobs.c_str(), IN_CREATE);
    Passes passes;
    passes.logs(f);
    passes.jobs(f);
    std::vector<std::string> created;
    alignas(inotify_event) char events[4096];
    for (ssize_t got; (got = ::read(watch, events, sizeof events)) > 0;)
        for (ssize_t at = 0; at < got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(events + at);
            created.push_back(event->name);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    ::close(watch);
    logs.insert(logs.end(), jobs.begin(), jobs.end());
    EXPECT_EQ(created, logs);
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
#ifndef KZ_SANITIZED
    // (Under AddressSanitizer freed memory is held back on purpose, and leaks are its own to report.)
    EXPECT_LE(residentPages(), pages + 16); // no growth beyond a few pages of noise
#else
    (void)pages;
#endif
    EXPECT_EQ(readFile(f.logs + "log19__copyFromLocal.txt"), "changed at pass 1019");
}

} // namespace
