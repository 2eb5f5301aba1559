// Real child processes for tests, started by the system's own launcher (kzStartFree) and
// ended and reaped when the object goes.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

class Child {
public:
    Child() = default;
    Child(Child&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}
    Child& operator=(Child&& other) noexcept;
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() { kill(); }

    // Starts command[0] with the rest as its arguments, its output (both streams) into the
    // file `output` if one is given, and returns once the child runs under `name` (by
    // default command[0]'s file name), so that it is found by that name.
    static Child start(const std::vector<std::string>& command, const std::string& output = "", std::string name = "");
    pid_t pid() const { return pid_; }
    // Waits up to timeoutMs for the exit and reaps the child; false on timeout.
    bool waitExit(int timeoutMs, int* exitCode = nullptr);
    // Ends the child with SIGKILL and reaps it.
    void kill();

private:
    pid_t pid_ = -1;
};

// The command run as another user and that user's group, with no further groups.
std::vector<std::string> asUser(int uid, const std::vector<std::string>& command);

// Copies a program into `folder` under `fileName`, executable by everyone, and returns its
// path. A child that runs as another user starts its copy in a folder that user can reach,
// wherever the build lies.
std::string installProgram(const std::string& program, const std::string& folder, const std::string& fileName);
// The same for the stand-in program.
std::string installStandIn(const std::string& folder, const std::string& fileName);

// Empty where this test process sees only its own processes (it is the first process of a
// PID namespace of its own, see own_processes.sh); otherwise why not.
std::string whyOtherProcessesShow();
// For tests whose outcome depends on which processes exist: skipped, with the reason, where
// the machine's other processes could change it.
#define KZ_NEEDS_OWN_PROCESSES()                                                                   \
    if (const std::string why = whyOtherProcessesShow(); !why.empty()) GTEST_SKIP() << why

// Milliseconds on a monotonic clock.
long long monotonicMs();
// Polls `condition` every 20 ms until it holds (true) or `timeoutMs` has passed (false).
bool waitFor(const std::function<bool()>& condition, int timeoutMs);
