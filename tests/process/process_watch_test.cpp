// The watch against a full look at the table, with real processes in a PID namespace of the
// test's own: the server goes and comes under another pid, runs twice, turns zombie, is
// renamed, becomes another program, leaves its pid to another program; and a longer name
// that begins with the server's.
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "process/process_watch.h"
#include "tests/support/child_process.h"
#include "tests/support/file_checks.h"
#include "tests/support/temp_dir.h"

namespace {

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
        while (read(ends[0], &letter, 1) > 0) {
        }
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
    auto list = std::make_unique<_kzProcessList>(false), full = std::make_unique<_kzProcessList>(false);
    _kzProcessWatch watch;
    const auto look = [&](const char* when) {
        _kzString8_allSize<25> name("kzServerconsole");
        const bool answer = watch.isRunning(*list, "kzServerconsole");
        EXPECT_EQ(answer, full->findByName(name, true, nullptr)) << when;
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
