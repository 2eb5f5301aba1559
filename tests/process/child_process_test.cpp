// Starting real children (/bin/sh) and capturing what they say: lines held back and handed
// on, standard error marked, the replacement table, the buffer's limit, the diagnosis of a
// failed start, free children with an output file, and a process replaced in place.
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "process/child_process.h"
#include "process/process_launch.h"
#include "tests/support/child_process.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"

namespace {

_kzString<250> path250(const std::string& text) { return _kzString<250>(text.c_str()); }

// The arguments of `/bin/sh -c script`.
_kzFileList& shellArgs(_kzFileList& args, const std::string& script) {
    args.add(_kzString<500>("-c"), false, false);
    args.add(_kzString<500>(script.c_str()), false, false);
    return args;
}

// A shell that runs `script`, started with its output captured.
struct Shell {
    _kzChildProcess child;
    _kzFileList args;
    int pid = 0;
    explicit Shell(const std::string& script) : pid(child.start(path250("/bin/sh"), shellArgs(args, script))) {}
    std::string take(int capacity = 200000) {
        std::vector<char> target(static_cast<size_t>(capacity) + 1);
        int taken = 0;
        child.takeOutput(false, target.data(), capacity, taken);
        return std::string(target.data(), static_cast<size_t>(taken));
    }
    // Polls until the child has said `expected` in all (or 3 s have passed).
    std::string collect(size_t expected) {
        std::string all;
        waitFor([&] { child.poll(nullptr); all += take(); return all.size() >= expected; }, 3000);
        return all;
    }
    ~Shell() {
        child.closePipes();
        if (pid > 0) waitpid(pid, nullptr, 0);
    }
};

TEST(ChildProcess, OutputArrivesInLinesWithTheUnfinishedOneHeldBack) {
    // Each child says its second part once the test has created the file "go".
    TempDir dir;
    const std::string go = dir.file("go"), waitGo = "; while [ ! -e " + go + " ]; do sleep 0.02; done; ";
    Shell pieces("printf 'ab\\n\\ncd'" + waitGo + "printf 'ef\\r'");
    Shell tails("printf '\\n%0999d' 0" + waitGo + "printf '\\ny\\n%01000d' 0; sleep 0.3");
    Shell errors("printf 'e\\nf' >&2" + waitGo + "printf 'g\\n' >&2");
    EXPECT_GT(pieces.pid, 0);
    EXPECT_EQ(pieces.take(), "ab\n\n"); // what it said while starting, an empty line too; "cd" waits
    EXPECT_EQ(tails.take(), "\n");    // a lone line end; the 999 bytes behind it are held back ...
    EXPECT_EQ(errors.collect(10), "StdErr: e\n"); // standard error's one-byte tail waits too
    writeFile(go, "");
    EXPECT_EQ(pieces.collect(5), "cdef\n");
    EXPECT_EQ(errors.collect(11), "StdErr: fg\n");
    EXPECT_EQ(tails.collect(2002), std::string(999, '0') + "\ny\n" + std::string(1000, '0')); // ... 1000 are not
    Shell marked("echo one >&2; echo two >&2; printf 'a\\000b\\nx\\r\\n\\r\\n[y, and more text\\n'");
    const std::string said = marked.collect(0);
    EXPECT_NE(said.find("StdErr: one\nStdErr: two\n"), std::string::npos) << said;
    EXPECT_NE(said.find("a b\nx  \r\n[y"), std::string::npos) << said; // a NUL, and an empty line squeezed
}

TEST(ChildProcess, TheBufferIsCutAndTakenOnce) {
    Shell flood("head -c 200000 /dev/zero | tr '\\000' a; echo; sleep 0.3");
    while (flood.child.poll(nullptr)) {}
    EXPECT_EQ(flood.child.outputLength, _kzChildProcess::bufferSize() - 1);
    EXPECT_EQ(flood.child.output[flood.child.outputLength], '\0'); // a text that ends there
    EXPECT_EQ(flood.take(10), std::string(10, 'a'));
    EXPECT_EQ(flood.take(), ""); // the rest went with it
    _kzString8_allSize<50> from("ab"), to("c"), one("a"), three("xyz");
    flood.child.addReplacement(from, to);
    flood.child.addReplacement(one, three);
    EXPECT_STREQ(to.data, " c");  // brought to the length of "ab" by a blank in front
    EXPECT_STREQ(three.data, "z"); // and to that of "a" by dropping its first characters
    for (int i = 0; i < 30; ++i) flood.child.addReplacement(from, to);
    EXPECT_EQ(flood.child.replacementCount, 29); // twelve of its own, seventeen more
}

// Near the buffer's end the marks come only where the text fits behind them.
TEST(ChildProcess, MarksNearTheEndOfTheBuffer) {
    _kzChildProcess child;
    char text[] = "ab";
    child.outputLength = _kzChildProcess::kOutputSize - 11; // room for "|ab", not for the error mark too
    child.appendText(text, 2, true, true);
    EXPECT_EQ(std::string(child.output + _kzChildProcess::kOutputSize - 11, 3), "|ab");
}

TEST(ChildProcess, StartsThatCannotRunAndTheirDiagnosis) {
    TempDir dir;
    _kzChildProcess folder, missing;
    _kzFileList none;
    EXPECT_EQ(folder.start(path250(dir.path()), none), 0);
    EXPECT_EQ(folder.outRead, 0); // no pipes either
    EXPECT_EQ(missing.start(path250(dir.file("none")), none), 0);
    writeFile(dir.file("script.txt"), "echo never\n");
    ::chmod(dir.file("script.txt").c_str(), 0644);
    _kzChildProcess notExecutable;
    const int pid = notExecutable.start(path250(dir.file("script.txt")), none); // a pid: the child says why
    const std::string owner = accountName(getuid()) + "   " + accountName(getgid());
    EXPECT_EQ(std::string(notExecutable.output, notExecutable.outputLength),
              "Failed to start new process (execvp) \n" + dir.file("script.txt") +
                  "\nPermission denied\nExecutable access rights: " + owner + "    rw r r \n");
    notExecutable.closePipes();
    int status = -1;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    EXPECT_EQ(WEXITSTATUS(status), 0);

    // No descriptor left for the pipes: the child runs uncaptured, and the capture neither
    // reads nor closes the caller's own standard input (in a process of its own).
    const auto withoutDescriptors = [] {
        std::FILE* input = std::tmpfile(); // read and written through one offset, so a write into it shows
        if (!input || std::fputs("the caller's\n", input) < 0 || std::fflush(input) != 0 || ::lseek(fileno(input), 0, SEEK_SET) != 0 || ::dup2(fileno(input), 0) != 0) _exit(2);
        const rlimit lowered{64, 64};
        ::setrlimit(RLIMIT_NOFILE, &lowered);
        for (int fd = 0; fd >= 0 && fd < 62;) fd = ::dup(1); // 63 stays free: too few for a pipe, enough for sh to load
        Shell quiet("echo out");
        waitpid(quiet.pid, nullptr, 0);
        const std::string output = quiet.collect(0);
        char rest[20] = {};
        // The status names the first check that failed.
        _exit(quiet.pid <= 0 ? 3 : !output.empty() ? 4 : ::read(0, rest, sizeof rest) != 13 ? 5 : 0);
    };
    EXPECT_EXIT(withoutDescriptors(), ::testing::ExitedWithCode(0), "");
    // A caller whose standard streams are all closed, as a daemon's may be, still captures.
    const auto withoutStandardStreams = [] {
        for (int fd = 0; fd <= 2; ++fd) ::close(fd);
        Shell quiet("echo out");
        waitpid(quiet.pid, nullptr, 0);
        _exit(quiet.collect(4) == "out\n" ? 0 : 1);
    };
    EXPECT_EXIT(withoutStandardStreams(), ::testing::ExitedWithCode(0), "");
}

TEST(ChildProcess, FreeChildrenReplacedProcessesAndNothingLeftBehind) {
    TempDir dir;
    _kzFileList args;
    shellArgs(args, "echo hi; echo err >&2");
    for (const bool append : {true, true, false}) {
        const int pid = kzStartFree(path250("/bin/sh"), args, path250(dir.file("out")), append);
        ASSERT_GT(pid, 0);
        EXPECT_TRUE(waitFor([&] { return kzReapChildren() == pid; }, 3000)) << "reaped once it has ended";
    }
    EXPECT_EQ(readFile(dir.file("out")), "hi\nerr\n"); // appended twice, then truncated
    // A descriptor opened before is closed in the new program; 0, 1 and 2 stay.
    const auto replaced = [&] {
        const int fd = ::open(dir.file("out").c_str(), O_RDONLY);
        _kzFileList check;
        kzExecReplace(path250("/bin/sh"), shellArgs(check, "test -e /proc/self/fd/" + std::to_string(fd) +
                                                                " && exit 3; test -e /proc/self/fd/2 && exit 0; exit 4"));
        _exit(5);
    };
    EXPECT_EXIT(replaced(), ::testing::ExitedWithCode(0), "");
    // Starts and closes hold no descriptor, a program started by other means while a child
    // runs gets none of its pipes, and reaping leaves no child behind.
    const int descriptors = openDescriptors();
    const auto listDescriptors = [&](const char* into) { return std::system(("ls /proc/self/fd >" + dir.file(into)).c_str()); };
    EXPECT_EQ(listDescriptors("before"), 0);
    _kzFileList quick;
    shellArgs(quick, "exit 0");
    for (int i = 0; i < 12; ++i) {
        _kzChildProcess child;
        EXPECT_GT(child.start(path250("/bin/sh"), quick), 0);
        if (i == 0) { EXPECT_EQ(listDescriptors("during"), 0); }
        child.closePipes();
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(readFile(dir.file("during")), readFile(dir.file("before")));
    // Every child reaped: nothing is left to wait for.
    EXPECT_TRUE(waitFor([] { return kzReapChildren() < 0; }, 3000));
    EXPECT_EQ(errno, ECHILD);
}

} // namespace
