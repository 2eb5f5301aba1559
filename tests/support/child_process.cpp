#include "tests/support/child_process.h"

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <fstream>

#include <gtest/gtest.h>

#include "process/process_launch.h"
#include "tests/support/file_checks.h"

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
    for (const long long deadline = monotonicMs() + timeoutMs; !condition(); usleep(20000))
        if (monotonicMs() > deadline) return false;
    return true;
}

Child& Child::operator=(Child&& other) noexcept {
    kill();
    pid_ = std::exchange(other.pid_, -1);
    return *this;
}

Child Child::start(const std::vector<std::string>& command, const std::string& output, std::string name) {
    _kzFileList args;
    for (size_t i = 1; i < command.size(); ++i) args.add(_kzString<500>(command[i].c_str()), false, false);
    Child child;
    child.pid_ = kzStartFree(_kzString<250>(command[0].c_str()), args, _kzString<250>(output.c_str()), false);
    if (name.empty()) name = command[0].substr(command[0].rfind('/') + 1);
    // The kernel keeps 15 characters of a name.
    const std::string comm = "/proc/" + std::to_string(child.pid_) + "/comm", expected = name.substr(0, 15) + "\n";
    if (child.pid_ <= 0 || !waitFor([&] { return readFile(comm) == expected; }, 5000))
        ADD_FAILURE() << "start of " << command[0] << " as " << name << " failed";
    return child;
}

bool Child::waitExit(int timeoutMs, int* exitCode) {
    int status = 0;
    if (pid_ <= 0 || !waitFor([&] { return ::waitpid(pid_, &status, WNOHANG) == pid_; }, timeoutMs)) return false;
    pid_ = -1;
    if (exitCode) *exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return true;
}

void Child::kill() {
    if (pid_ <= 0) return;
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

std::vector<std::string> asUser(int uid, const std::vector<std::string>& command) {
    const std::string id = std::to_string(uid);
    std::vector<std::string> prefixed = {"/usr/bin/setpriv", "--reuid=" + id, "--regid=" + id, "--clear-groups"};
    prefixed.insert(prefixed.end(), command.begin(), command.end());
    return prefixed;
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
