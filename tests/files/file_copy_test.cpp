// fileCopy on real files, FIFOs and folders, and under a real file-size limit.
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

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

long long millisecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
        .count();
}

TEST(FileCopy, SizesAroundTheChunkBoundariesArriveWholeWithTheSourceTimes) {
    TempDir dir;
    for (size_t size : {size_t(0), size_t(1), size_t(4095), size_t(4096), size_t(0x80000), size_t(0x80001),
                        size_t(3 * 0x80000 + 17)}) {
        const std::string src = dir.file("src" + std::to_string(size)),
                          dst = dir.file("dst" + std::to_string(size));
        writeFile(src, pattern(size));
        const timespec times[2] = {{1400000000, 0}, {1500000000, 999999999}};
        ASSERT_EQ(::utimensat(AT_FDCWD, src.c_str(), times, 0), 0);
        ASSERT_TRUE(fileCopy(narrow(src), narrow(dst), true, &kNoPause, nullptr)) << size;
        const struct stat st = statOf(dst); // before reading it changes the access time
        EXPECT_EQ(st.st_atime, 1400000000) << size;
        EXPECT_EQ(st.st_mtime, 1500000000) << size; // whole seconds
        EXPECT_EQ(st.st_mtim.tv_nsec, 0) << size;
        EXPECT_EQ(readFile(dst), pattern(size)) << size;
    }
}

TEST(FileCopy, TheThrottlePausesAfterEachFullChunkOnly) {
    TempDir dir;
    const int32_t pause = 300;
    const auto timedCopy = [&](size_t size) {
        const std::string src = dir.file("t" + std::to_string(size));
        writeFile(src, pattern(size));
        return millisecondsOf(
            [&] { EXPECT_TRUE(fileCopy(narrow(src), narrow(src + ".copy"), true, &pause, nullptr)); });
    };
    // One chunk with room to spare: one short read, no pause.
    EXPECT_LT(timedCopy(4096), pause);
    // Exactly one large chunk: the read is full, so a pause, then a read of 0.
    const long long oneChunk = timedCopy(0x80000);
    EXPECT_GE(oneChunk, pause);
    EXPECT_LT(oneChunk, 2 * pause);
    // One byte more: a full chunk and its pause, then a short read ends it without one.
    const long long oneMore = timedCopy(0x80001);
    EXPECT_GE(oneMore, pause);
    EXPECT_LT(oneMore, 2 * pause);
}

TEST(FileCopy, AFifoIsReadUntilItsEnd) {
    TempDir dir;
    const std::string fifo = dir.file("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0644), 0);
    std::thread writer([&] {
        const int fd = ::open(fifo.c_str(), O_WRONLY);
        ASSERT_GE(fd, 0);
        ASSERT_EQ(::write(fd, "first ", 6), 6);
        std::this_thread::sleep_for(std::chrono::milliseconds(100)); // the copy reads short meanwhile
        ASSERT_EQ(::write(fd, "second", 6), 6);
        ::close(fd);
    });
    bool tail = true;
    EXPECT_TRUE(fileCopy(narrow(fifo), narrow(dir.file("out")), true, &kNoPause, &tail));
    writer.join();
    EXPECT_EQ(readFile(dir.file("out")), "first second");
    EXPECT_FALSE(tail);
}

TEST(FileCopy, ExistingDestinationsFoldersAndMissingSources) {
    TempDir dir;
    writeFile(dir.file("dst"), "keep");
    // Without overwrite an existing file stays, and the source isn't even looked at.
    EXPECT_TRUE(fileCopy(narrow(dir.file("missing")), narrow(dir.file("dst")), false, &kNoPause, nullptr));
    EXPECT_EQ(readFile(dir.file("dst")), "keep");
    EXPECT_FALSE(fileCopy(narrow(dir.file("missing")), narrow(dir.file("other")), true, &kNoPause, nullptr));
    EXPECT_EQ(readFile(dir.file("other")), "<missing>");
    // A source that has gone costs no old copy, even with overwrite.
    EXPECT_FALSE(fileCopy(narrow(dir.file("missing")), narrow(dir.file("dst")), true, &kNoPause, nullptr));
    EXPECT_EQ(readFile(dir.file("dst")), "keep");

    writeFile(dir.file("src"), "data");
    ::mkdir(dir.file("folder").c_str(), 0755);
    writeFile(dir.file("folder/inside"), "x");
    errno = 0;
    EXPECT_FALSE(fileCopy(narrow(dir.file("src")), narrow(dir.file("folder")), true, &kNoPause, nullptr));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(readFile(dir.file("folder/inside")), "x");
    EXPECT_FALSE(fileCopy(narrow(dir.file("folder")), narrow(dir.file("x")), true, &kNoPause, nullptr));

    // The destination's mode is the source's with read and write for owner and group.
    const mode_t mask = ::umask(0);
    ::chmod(dir.file("src").c_str(), 0700);
    EXPECT_TRUE(fileCopy(narrow(dir.file("src")), narrow(dir.file("modes")), true, &kNoPause, nullptr));
    ::umask(mask);
    EXPECT_EQ(statOf(dir.file("modes")).st_mode & 07777, 0764u);
}

// A copy cut by the file-size limit: false, and a destination that differs from the source
// in size and time, so that the next comparison copies it again.
// With the limit at a chunk's end the next write fails outright; with it inside a chunk
// the write comes back short, which fails the copy as well.
void copyUnderSizeLimit(const std::string& src, const std::string& dst, rlim_t bytes, int expectedError) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const bool copied = fileCopy(narrow(src), narrow(dst), true, &kNoPause, nullptr);
    const int error = errno;
    const struct stat source = statOf(src), copy = statOf(dst);
    const bool ok = !copied && error == expectedError && copy.st_size == static_cast<off_t>(bytes) &&
                    copy.st_mtime != source.st_mtime;
    std::exit(ok ? 0 : 1);
}

TEST(FileCopy, AWriteCutShortFailsAndLeavesAnOutdatedDestination) {
    TempDir dir;
    writeFile(dir.file("big"), pattern(3 * 0x80000));
    const timespec old[2] = {{1000000000, 0}, {1000000000, 0}};
    ::utimensat(AT_FDCWD, dir.file("big").c_str(), old, 0);
    EXPECT_EXIT(copyUnderSizeLimit(dir.file("big"), dir.file("copy"), 0x80000, EFBIG),
                ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(copyUnderSizeLimit(dir.file("big"), dir.file("copy"), 0x80000 + 4096, EIO),
                ::testing::ExitedWithCode(0), "");
    EXPECT_TRUE(fileCopy(narrow(dir.file("big")), narrow(dir.file("copy")), true, &kNoPause, nullptr));
    EXPECT_EQ(statOf(dir.file("copy")).st_size, 3 * 0x80000);
}

TEST(FileCopy, NoDescriptorOutlivesACopy) {
    TempDir dir;
    writeFile(dir.file("src"), pattern(10000));
    ::mkdir(dir.file("folder").c_str(), 0755);
    const int before = openDescriptors();
    for (int i = 0; i < 200; ++i) {
        fileCopy(narrow(dir.file("src")), narrow(dir.file("dst")), true, &kNoPause, nullptr);
        fileCopy(narrow(dir.file("src")), narrow(dir.file("folder")), true, &kNoPause, nullptr);
        fileCopy(narrow(dir.file("none")), narrow(dir.file("dst2")), true, &kNoPause, nullptr);
        fileCopy(narrow(dir.file("src")), narrow(dir.file("no/such/dir")), true, &kNoPause, nullptr);
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(FileCopy, TheTailTestLooksAtFewBytesFromTheEnd) {
    // Zero bytes at exactly the tested places count as zero fill, whatever stands between.
    const auto chunk = [](long length, std::initializer_list<long> zeroFromEnd) {
        std::string bytes(static_cast<size_t>(length), 'x');
        for (long p : zeroFromEnd) bytes[static_cast<size_t>(length - p)] = '\0';
        return bytes;
    };
    const auto looksZero = [](const std::string& bytes) {
        return kzTailLooksZero(reinterpret_cast<const unsigned char*>(bytes.data()),
                               static_cast<long>(bytes.size()));
    };
    EXPECT_TRUE(looksZero(chunk(600, {1, 50, 200, 201, 202, 500, 501})));
    EXPECT_FALSE(looksZero(chunk(600, {1, 50, 200, 201, 202, 500})));
    EXPECT_TRUE(looksZero(chunk(501, {1, 50, 200, 201, 202, 500, 501})));
    EXPECT_TRUE(looksZero(chunk(500, {1, 50, 300})));
    EXPECT_FALSE(looksZero(chunk(500, {1, 50})));
    EXPECT_TRUE(looksZero(chunk(301, {1, 50, 300})));
    EXPECT_TRUE(looksZero(chunk(300, {1, 7, 10})));
    EXPECT_TRUE(looksZero(chunk(11, {1, 7, 10})));
    EXPECT_FALSE(looksZero(chunk(11, {1, 7})));
    EXPECT_TRUE(looksZero(chunk(10, {1})));
    EXPECT_TRUE(looksZero(chunk(1, {1})));
    EXPECT_FALSE(looksZero(chunk(10, {2})));

    TempDir dir;
    writeFile(dir.file("zeros"), std::string(5000, 'a') + std::string(600, '\0'));
    writeFile(dir.file("empty"), "");
    bool tail = false;
    EXPECT_TRUE(fileCopy(narrow(dir.file("zeros")), narrow(dir.file("z")), true, &kNoPause, &tail));
    EXPECT_TRUE(tail);
    tail = true;
    EXPECT_TRUE(fileCopy(narrow(dir.file("empty")), narrow(dir.file("e")), true, &kNoPause, &tail));
    EXPECT_TRUE(tail); // no chunk held data: left as it was
    EXPECT_EQ(readFile(dir.file("e")), "");
}

TEST(CopyStats, TotalsSettingsAndTheStatusLine) {
    _kzCopyStats stats{};
    stats.addCopy(1ull << 63, 10); // refused
    stats.addCopy(100, -1);        // refused
    EXPECT_EQ(stats.files, 0);
    stats.addCopy(3 * 1024 * 1024, 2000);
    EXPECT_EQ(stats.files, 1);
    EXPECT_EQ(stats.throttledChunks, 0); // no throttle yet
    EXPECT_FLOAT_EQ(stats.speedSetting(), 100.0f);
    EXPECT_FLOAT_EQ(stats.speedMiBs(), 1.5f);
    EXPECT_STREQ(stats.statusText().asChar(),
                 "1 files copied ( 3.00 MiB. 2.00s. 1.500 MiB/s. Copy speed setting: 100% )");

    stats.addCopyThrottled(4 * 0x100000, 2000, 200, 0); // the default chunk
    EXPECT_EQ(stats.chunkSize, 0x100000);
    EXPECT_EQ(stats.throttleMs, 200);
    EXPECT_EQ(stats.throttledChunks, 4);
    EXPECT_FLOAT_EQ(stats.speedSetting(), 80.0f); // 4 pauses of 200 ms in 4 seconds
    EXPECT_STREQ(stats.statusText(true).asChar(),
                 "   2 files copied (    7.00 MiB. 4.00s.   1.750 MiB/s. Copy speed setting:  80% )");
    stats.addCopyThrottled(0, 0, -5, 4096);
    EXPECT_EQ(stats.throttleMs, 0);

    _kzCopyStats minutes{};
    minutes.addCopy(0, 61000);
    EXPECT_NE(std::string(minutes.statusText().asChar()).find(" 1.01m.s."), std::string::npos);
    minutes.elapsedMs = 60000;
    EXPECT_NE(std::string(minutes.statusText().asChar()).find(" 60.00s."), std::string::npos);
    _kzCopyStats idle{};
    EXPECT_FLOAT_EQ(idle.speedMiBs(), 0.0f);
    EXPECT_EQ(_kzCopyStats::defaultChunkSize(), 0x100000);
}

} // namespace
