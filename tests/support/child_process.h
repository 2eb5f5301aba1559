// Real child processes for tests: started with fork and exec, optionally with their
// standard output in a pipe, and always ended and reaped when the object goes.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

class ChildProcess {
public:
    ChildProcess() = default;
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    // Starts `program` with `argv` (argv[0] included, as the child will see it) and returns
    // once the exec has happened, so that the process already carries its new name.
    // With `runAsUid` at 0 or above the child drops to that user and group id before the exec.
    static ChildProcess start(const std::string& program, const std::vector<std::string>& argv,
                              bool captureOutput = false, int runAsUid = -1);

    pid_t pid() const { return pid_; }

    // Waits up to timeoutMs for the exit and reaps the child. False on timeout.
    bool waitExit(int timeoutMs, int* exitCode = nullptr);
    // Ends the child with SIGKILL and reaps it at once.
    void kill();

    // Output captured so far, reading on until `needle` appears, the output ends or
    // timeoutMs passes; with no needle, all output up to its end.
    std::string readUntil(const std::string& needle, int timeoutMs);
    std::string readAll(int timeoutMs) { return readUntil("", timeoutMs); }

private:
    pid_t pid_ = -1;
    int outFd_ = -1;
    bool reaped_ = false;
    std::string output_;
};

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
// Polls `condition` every 50 ms until it holds (true) or `timeoutMs` has passed (false).
bool waitFor(const std::function<bool()>& condition, int timeoutMs);
