// The locked file's budget, its rule for abandoned locks, the lock text, and the one-line
// text log. Many processes on one lock: bench/lock_stress, whose short form runs with the
// tests.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "files/locked_file.h"
#include "files/text_log.h"
#include "time/kz_time.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

_kzString<250> text250(const std::string& text) { return _kzString<250>(text.c_str()); }

TEST(LockedFile, ABudgetOfPollsAStaleRuleAndWhatIsWritten) {
    TempDir dir;
    const std::string lockFile = dir.file("a\\b_lock.txt");
    _kzLockedFileShort shortLock(text250(dir.file("a\\b")));
    writeFile(lockFile, "held elsewhere");
    int32_t waited = 0;
    EXPECT_FALSE(shortLock.waitUntilFree(999, &waited));
    EXPECT_EQ(waited, 750); // 999 ms: three polls
    EXPECT_EQ(textOf(shortLock.lastErrorText()), "File still locked, timeout reached.");
    // An abandoned lock under another process's claim to remove it stays this time; a claim
    // left behind by a process that died goes once it is abandoned itself, and the lock
    // after it. The lock here is a link that leads nowhere: a lock without a time.
    ::unlink(lockFile.c_str());
    ASSERT_EQ(::symlink(dir.file("nowhere").c_str(), lockFile.c_str()), 0);
    writeFile(lockFile + ".stale", "");
    for (const long long claimAge : {0LL, 10801LL, -1LL}) {
        if (claimAge >= 0) setModified(lockFile + ".stale", _kzTime(true).value - claimAge);
        EXPECT_EQ(shortLock.waitUntilFree(0, nullptr), claimAge < 0) << claimAge;
        EXPECT_EQ(readFile(lockFile + ".stale"), claimAge == 0 ? "" : "<missing>") << claimAge;
    }
    writeFile(lockFile, "held elsewhere");
    for (const long long age : {10800LL, 10801LL}) {
        // Right behind a second's start, so that the one poll of 250 ms ends in the same second.
        for (const time_t second = ::time(nullptr); ::time(nullptr) == second;) usleep(1000);
        setModified(lockFile, _kzTime(true).value - age);
        const bool taken = shortLock.lock(0, text250("me"), &waited, age == 10801);
        EXPECT_EQ(taken, age == 10801) << age; // strictly more than three hours
        EXPECT_EQ(waited, 250);
        EXPECT_EQ(shortLock.timedOut, age == 10800);
    }
    EXPECT_EQ(readFile(lockFile), "<missing>"); // the stale lock went, and checkOnly made none
    ASSERT_TRUE(shortLock.lock(1000, text250("render node 7"), nullptr, false));
    const std::string text = readFile(lockFile);
    EXPECT_EQ(text.substr(0, 46), "\n File locked by: render node 7\n Time locked: ");
    EXPECT_EQ(text.substr(text.size() - 56), "\nInfo: This lock file should only exist a few seconds.\n\n");
    EXPECT_FALSE(shortLock.lock(0, text250("me"), nullptr, false)); // not recursive
    shortLock.unlock();
    EXPECT_EQ(readFile(lockFile), "<missing>");
    EXPECT_EQ(shortLock.lastError, 0); // the failed second lock's error is over
    writeFile(lockFile, "left behind");
    EXPECT_EQ(textOf(shortLock.deleteLockFile()), ""); // deleted: nothing to say
    EXPECT_EQ(readFile(lockFile), "<missing>");
    EXPECT_EQ(textOf(shortLock.deleteLockFile()), ""); // none there: nothing to say either

    // The wide variant turns backslashes into slashes; a folder at the lock path, or a
    // folder that is missing, fails the lock instead of waiting on it.
    ::mkdir(dir.file("a").c_str(), 0755);
    ::mkdir(dir.file("a/b_lock.txt").c_str(), 0755);
    _kzLockedFileWide wideLock(wide(dir.file("a\\b")));
    EXPECT_FALSE(wideLock.lock(0, text250("me"), nullptr, false));
    EXPECT_EQ(wideLock.lastError, EISDIR);
    _kzLockedFileShortQuiet missing(text250(dir.file("none/x")));
    waited = 5;
    EXPECT_FALSE(missing.lock(1000, text250("me"), &waited, false));
    EXPECT_EQ(waited, 0);            // negated, and 0 is 0
    EXPECT_EQ(missing.lastError, 0); // no error kept in this variant
}

TEST(TextLog, LinesAppendOrReplaceAndAreCut) {
    TempDir dir;
    const _kzString8_allSize<500> path = narrow(dir.file("log.txt"));
    EXPECT_TRUE(writeTextLine(path, narrow("first"), false, false));
    EXPECT_TRUE(writeTextLine(path, narrow(""), false, false));
    EXPECT_EQ(readFile(dir.file("log.txt")), "first\n\n");
    EXPECT_TRUE(writeTextLine(path, narrow("stamped"), true, true));
    EXPECT_EQ(readFile(dir.file("log.txt")).substr(15), ": stamped\n"); // "07.15. 12:34.56"
    const _kzString8_allSize<6000> overlong(std::string(5500, 'x').c_str());
    EXPECT_TRUE(kzWriteTextLine(path.data, overlong.data, overlong.length, true, false));
    EXPECT_EQ(readFile(dir.file("log.txt")), std::string(5000, 'x'));
    EXPECT_FALSE(writeTextLine(narrow(dir.file("none/log.txt")), narrow("x"), false, false)); // no folder made
    EXPECT_STREQ(tempFolder().asChar(), "/tmp/");
}

} // namespace
