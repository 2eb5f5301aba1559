// fileCopy on real files, FIFOs and folders, and under a real file-size limit; the copy
// totals and their status line.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "files/copy_stats.h"
#include "files/file_copy.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"
#include "tests/support/text_of.h"

namespace {

const int32_t kNoPause = 0;

std::string pattern(size_t size) {
    std::string text(size, '\0');
    for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i % 23);
    return text;
}

bool copy(const std::string& src, const std::string& dst, bool overwrite = true, bool* tail = nullptr) {
    return fileCopy(narrow(src), narrow(dst), overwrite, &kNoPause, tail);
}

// Onto a disk, and onto a file system without a device of its own (tmpfs, as a share is),
// where the time is set after the close.
TEST(FileCopy, SizesAroundTheChunkBoundariesArriveWholeWithTheSourceTimes) {
    TempDir dir, deviceless("/dev/shm");
    for (size_t size : {0ul, 1ul, 4095ul, 4096ul, 0x80000ul, 0x80001ul, 3ul * 0x80000 + 17}) {
        const std::string src = dir.file("s" + std::to_string(size));
        const std::string dst = (size % 2 ? deviceless : dir).file("d" + std::to_string(size));
        writeFile(src, pattern(size));
        const timespec times[2] = {{1400000000, 0}, {1500000000, 999999999}};
        ASSERT_EQ(::utimensat(AT_FDCWD, src.c_str(), times, 0), 0);
        ASSERT_TRUE(copy(src, dst)) << size;
        const struct stat st = statOf(dst); // before reading it changes the access time
        EXPECT_EQ(st.st_atime, 1400000000) << size;
        EXPECT_EQ(st.st_mtim.tv_sec * 1000000000LL + st.st_mtim.tv_nsec, 1500000000LL * 1000000000LL) << size;
        EXPECT_EQ(readFile(dst), pattern(size)) << size;
    }
}

// The pause follows each full chunk only: a small file fits one chunk with room to spare.
TEST(FileCopy, TheThrottlePausesAfterEachFullChunkOnly) {
    TempDir dir;
    const int32_t pause = 300;
    for (const auto& [size, pauses] : {std::pair<size_t, int>{4096, 0}, {0x80000, 1}, {0x80001, 1}}) {
        writeFile(dir.file("t"), pattern(size));
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(fileCopy(narrow(dir.file("t")), narrow(dir.file("c")), true, &pause, nullptr));
        const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
        EXPECT_GE(ms, pauses * pause) << size << " bytes";
        EXPECT_LT(ms, (pauses + 1) * pause) << size << " bytes";
    }
}

TEST(FileCopy, AFifoIsReadUntilItsEndAndShortReadsDoNotEndIt) {
    TempDir dir;
    const std::string fifo = dir.file("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0644), 0);
    std::thread writer([&] {
        const int fd = ::open(fifo.c_str(), O_WRONLY);
        EXPECT_EQ(::write(fd, "first ", 6), 6);
        std::this_thread::sleep_for(std::chrono::milliseconds(100)); // the copy reads short meanwhile
        EXPECT_EQ(::write(fd, "second", 6), 6);
        ::close(fd);
    });
    bool tail = true;
    EXPECT_TRUE(copy(fifo, dir.file("out"), true, &tail));
    writer.join();
    EXPECT_EQ(readFile(dir.file("out")), "first second");
    EXPECT_FALSE(tail);
}

TEST(FileCopy, ExistingDestinationsFoldersMissingSourcesAndModes) {
    TempDir dir;
    writeFile(dir.file("dst"), "keep");
    EXPECT_TRUE(copy(dir.file("missing"), dir.file("dst"), false)); // the source isn't even looked at
    EXPECT_FALSE(copy(dir.file("missing"), dir.file("dst")));       // and a mirror outlives it
    EXPECT_EQ(readFile(dir.file("dst")), "keep");
    writeFile(dir.file("src"), "data");
    ::mkdir(dir.file("folder").c_str(), 0755);
    errno = 0;
    EXPECT_FALSE(copy(dir.file("src"), dir.file("folder")));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(copy(dir.file("folder"), dir.file("x")));
    // A socket at the destination is no folder: it is replaced.
    makeSocket(dir.file("socket"));
    EXPECT_TRUE(copy(dir.file("src"), dir.file("socket")));
    EXPECT_EQ(readFile(dir.file("socket")), "data");
    // The destination's mode is the source's with read and write for owner and group.
    const mode_t mask = ::umask(0);
    ::chmod(dir.file("src").c_str(), 0700);
    EXPECT_TRUE(copy(dir.file("src"), dir.file("modes")));
    ::umask(mask);
    EXPECT_EQ(statOf(dir.file("modes")).st_mode & 07777, 0764u);
}

// A copy cut by the file-size limit fails and leaves a destination that differs from the
// source in size and time, so that the next pass copies it again: at a chunk's end the
// write fails outright, inside a chunk it comes back short.
TEST(FileCopy, AWriteCutShortFailsAndLeavesAnOutdatedDestination) {
    TempDir dir;
    writeFile(dir.file("big"), pattern(3 * 0x80000));
    setModified(dir.file("big"), 1000000000);
    for (const auto& [limit, error] : {std::pair<rlim_t, int>{0x80000, EFBIG}, {0x80000 + 4096, EIO}}) {
        const auto cut = [&, limit = limit, error = error] {
            ::signal(SIGXFSZ, SIG_IGN);
            const rlimit size{limit, limit};
            ::setrlimit(RLIMIT_FSIZE, &size);
            const bool copied = copy(dir.file("big"), dir.file("copy"));
            // The status names the first check that failed.
            _exit(copied ? 1
                  : errno != error ? 2
                  : statOf(dir.file("copy")).st_size != static_cast<off_t>(limit) ? 3
                  : modifiedAt(dir.file("copy")) == 1000000000 ? 4
                  : 0);
        };
        EXPECT_EXIT(cut(), ::testing::ExitedWithCode(0), "") << limit;
    }
}

// Which bytes, counted from the end, a chunk must have zero to look like unwritten zero fill,
// by its length; and the report of a copy: of the last chunk that held data.
TEST(FileCopy, TheTailOfTheLastChunkThatHeldData) {
    const std::vector<long> longPlaces = {1, 50, 200, 201, 202, 500, 501}; // from 501 bytes on
    const struct {
        long length;
        std::vector<long> zeros;
        bool expected;
    } rows[] = {{0, {}, false},           {1, {}, false},          {1, {1}, true},
                {10, {1}, true},          {11, {1, 7}, false},     {11, {1, 7, 10}, true},
                {300, {1, 7, 10}, true},  {301, {1, 7, 10}, false}, {301, {1, 50, 300}, true},
                {500, {1, 50, 300}, true}, {501, {1, 50, 300}, false}, {600, longPlaces, true}};
    for (const auto& row : rows) {
        std::string chunk(static_cast<size_t>(row.length), 'x');
        for (const long place : row.zeros) chunk[chunk.size() - static_cast<size_t>(place)] = 0;
        EXPECT_EQ(kzTailLooksZero(reinterpret_cast<const unsigned char*>(chunk.data()), row.length), row.expected)
            << row.length << " bytes, " << row.zeros.size() << " zeros";
    }
    // Each of the seven long places must hold a zero.
    for (const long missing : longPlaces) {
        std::string chunk(600, 'x');
        for (const long place : longPlaces)
            if (place != missing) chunk[static_cast<size_t>(600 - place)] = 0;
        EXPECT_FALSE(kzTailLooksZero(reinterpret_cast<const unsigned char*>(chunk.data()), 600)) << "no zero " << missing << " from the end";
    }
    TempDir dir;
    writeFile(dir.file("zeros"), std::string(5000, 'a') + std::string(600, '\0'));
    writeFile(dir.file("empty"), "");
    bool tail = false;
    EXPECT_TRUE(copy(dir.file("zeros"), dir.file("z"), true, &tail));
    EXPECT_TRUE(tail);
    EXPECT_TRUE(copy(dir.file("empty"), dir.file("e"), true, &tail));
    EXPECT_TRUE(tail); // no chunk held data: left as it was
}

TEST(CopyStats, TotalsSettingsAndTheStatusLine) {
    _kzCopyStats stats{};
    stats.addCopy(1ull << 63, 10); // refused
    stats.addCopy(100, -1);        // refused
    stats.addCopy(3 * 1024 * 1024, 2000);
    EXPECT_EQ(stats.files, 1);
    stats.addCopyThrottled(4 * 0x100000, 2000, 200, 0); // the default chunk: 4 pauses of 200 ms in 4 s
    EXPECT_EQ(stats.throttledChunks, 4);
    EXPECT_STREQ(stats.statusText(true).asChar(),
                 "   2 files copied (    7.00 MiB. 4.00s.   1.750 MiB/s. Copy speed setting:  80% )");
    stats.addCopyThrottled(4096, 0, -5, 4096);
    EXPECT_EQ(stats.throttleMs, 0);
    EXPECT_EQ(stats.throttledChunks, 4);
    stats.addCopyThrottled(0, 0, 1, 4096); // a pause of 1 ms: plain copies count their chunks too
    stats.addCopy(8192, 0);
    EXPECT_EQ(stats.throttledChunks, 6);
    // Without counted chunks (throttled copies below one chunk) the setting estimates them
    // from all bytes and the chunk size set: 16 pauses of 100 ms in 2 s.
    _kzCopyStats estimated{};
    estimated.addCopy(0x100000, 1000);
    estimated.addCopyThrottled(100, 1000, 100, 0x10000);
    EXPECT_EQ(estimated.throttledChunks, 0);
    EXPECT_FLOAT_EQ(estimated.speedSetting(), 20.0f);
    _kzCopyStats minutes{};
    minutes.addCopy(0, 60000);
    EXPECT_STREQ(minutes.statusText().asChar(), "1 files copied ( 0.00 MiB. 60.00s. 0.000 MiB/s. Copy speed setting: 100% )");
    // Hundredths below a minute, and minutes with their seconds above.
    for (const auto& [ms, time] : {std::pair<int, std::string>{1990, "1.99s"}, {61990, "1.01m.s"}}) {
        _kzCopyStats one{};
        one.addCopy(0, ms);
        EXPECT_EQ(std::string(one.statusText().asChar()), "1 files copied ( 0.00 MiB. " + time + ". 0.000 MiB/s. Copy speed setting: 100% )");
    }
    // The setting is rounded half away from zero: 0.6 % is 1 %, -0.6 % is -1 %.
    for (const auto& [pauseMs, setting] : {std::pair<int, std::string>{994, "1"}, {1006, "-1"}}) {
        _kzCopyStats one{};
        one.addCopyThrottled(0x100000, 1000, pauseMs, 0);
        EXPECT_EQ(std::string(one.statusText().asChar()), "1 files copied ( 1.00 MiB. 1.00s. 1.000 MiB/s. Copy speed setting: " + setting + "% )") << pauseMs;
    }
}

} // namespace
