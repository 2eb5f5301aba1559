#include "tests/support/child_process.h"

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <fstream>

#include <gtest/gtest.h>

std::string whyOtherProcessesShow() {
    if (getpid() == 1) return "";
    const char* why = std::getenv("KZ_NO_OWN_PROCESSES");
    return why ? why : "not started in a PID namespace of its own (ctest starts it through tests/support/own_processes.sh)";
}

long long monotonicMs() {
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<long long>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

bool waitFor(const std::function<bool()>& condition, int timeoutMs) {
    const long long deadline = monotonicMs() + timeoutMs;
    while (!condition()) {
        if (monotonicMs() > deadline) return false;
        usleep(50000);
    }
    return true;
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept { *this = std::move(other); }

// The old child goes with `other`, which ends it.
ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    std::swap(pid_, other.pid_);
    std::swap(outFd_, other.outFd_);
    std::swap(reaped_, other.reaped_);
    output_.swap(other.output_);
    return *this;
}

ChildProcess::~ChildProcess() {
    kill();
    if (outFd_ >= 0) close(outFd_);
}

ChildProcess ChildProcess::start(const std::string& program, const std::vector<std::string>& argv,
                                 bool captureOutput, int runAsUid) {
    ChildProcess child;
    int execPipe[2], outPipe[2] = {-1, -1};
    if (pipe2(execPipe, O_CLOEXEC) != 0 || (captureOutput && pipe2(outPipe, O_CLOEXEC) != 0)) return child;
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    const pid_t parent = getpid();
    child.pid_ = fork();
    if (child.pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL); // no child outlives a test that crashes
        if (getppid() != parent) _exit(126);
        if (captureOutput) dup2(outPipe[1], STDOUT_FILENO);
        if (runAsUid >= 0 && (setgroups(0, nullptr) != 0 || setgid(static_cast<gid_t>(runAsUid)) != 0 ||
                              setuid(static_cast<uid_t>(runAsUid)) != 0))
            _exit(125);
        execv(program.c_str(), args.data());
        (void)!write(execPipe[1], &errno, sizeof errno);
        _exit(127);
    }
    close(execPipe[1]);
    if (captureOutput) close(outPipe[1]);
    child.outFd_ = outPipe[0];
    // The pipe closes on exec, so the child carries its new name from here on; a message on
    // it means the exec failed.
    int error = 0;
    if (read(execPipe[0], &error, sizeof error) > 0 || child.pid_ < 0)
        ADD_FAILURE() << "start of " << program << " failed: errno " << error;
    close(execPipe[0]);
    return child;
}

bool ChildProcess::waitExit(int timeoutMs, int* exitCode) {
    if (pid_ <= 0 || reaped_) return false;
    const long long deadline = monotonicMs() + timeoutMs;
    for (;;) {
        int status = 0;
        const pid_t r = waitpid(pid_, &status, WNOHANG);
        if (r == pid_) {
            reaped_ = true;
            if (exitCode) *exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return true;
        }
        if (monotonicMs() >= deadline) return false;
        usleep(5000);
    }
}

void ChildProcess::kill() {
    if (pid_ <= 0 || reaped_) return;
    ::kill(pid_, SIGKILL);
    int status = 0;
    while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {}
    reaped_ = true;
}

std::string ChildProcess::readUntil(const std::string& needle, int timeoutMs) {
    const long long deadline = monotonicMs() + timeoutMs;
    while (outFd_ >= 0 && (needle.empty() || output_.find(needle) == std::string::npos)) {
        const long long left = deadline - monotonicMs();
        if (left <= 0) break;
        pollfd p{outFd_, POLLIN, 0};
        if (poll(&p, 1, static_cast<int>(left)) <= 0) continue;
        char buffer[4096];
        const ssize_t n = read(outFd_, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            close(outFd_);
            outFd_ = -1;
            break;
        }
        output_.append(buffer, static_cast<size_t>(n));
    }
    return output_;
}


std::string installProgram(const std::string& program, const std::string& folder, const std::string& fileName) {
    const std::string target = folder + "/" + fileName;
    std::ifstream in(program, std::ios::binary);
    std::ofstream out(target, std::ios::binary | std::ios::trunc);
    out << in.rdbuf();
    out.close();
    if (!out || chmod(target.c_str(), 0755) != 0) ADD_FAILURE() << "could not install " << target;
    return target;
}

std::string installStandIn(const std::string& folder, const std::string& fileName) {
    return installProgram(KZ_STAND_IN_PATH, folder, fileName);
}
