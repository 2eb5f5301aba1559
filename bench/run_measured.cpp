// Runs a command and writes what it cost to a file: wall seconds, CPU seconds (user and
// system, its children included) and peak resident memory in KiB, on one line.
// Usage: run_measured RESULT_FILE COMMAND [ARGUMENTS...]
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: run_measured RESULT_FILE COMMAND [ARGUMENTS...]\n");
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        execvp(argv[2], argv + 2);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (pid < 0 || wait4(pid, &status, 0, &usage) != pid) return 1;
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children); // the command's own children, reaped by it
    const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    const double cpu = seconds(children.ru_utime) + seconds(children.ru_stime);
    FILE* out = std::fopen(argv[1], "w");
    if (!out) return 1;
    std::fprintf(out, "%.6f %.6f %ld\n", wall, cpu, usage.ru_maxrss);
    std::fclose(out);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
