// Starting programs and draining their output: the median time of _kzChildProcess::start over
// 20 starts of /bin/true, and how many bytes per second takeOutput drains from a child that
// writes as fast as it can (yes) over two seconds. Prints "start_ms mib_per_second".
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "process/child_process.h"

namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main() {
    _kzFileList none;
    std::vector<double> starts;
    for (int i = 0; i < 20; ++i) {
        _kzChildProcess child;
        const auto begin = std::chrono::steady_clock::now();
        const int pid = child.start(_kzString<250>("/bin/true"), none);
        starts.push_back(secondsSince(begin) * 1000);
        child.closePipes();
        waitpid(pid, nullptr, 0);
    }
    std::sort(starts.begin(), starts.end());

    _kzChildProcess yes;
    const int pid = yes.start(_kzString<250>("/usr/bin/yes"), none);
    std::vector<char> target(_kzChildProcess::bufferSize());
    long long drained = 0;
    int taken = 0;
    const auto begin = std::chrono::steady_clock::now();
    while (secondsSince(begin) < 2.0)
        if (yes.takeOutput(true, target.data(), static_cast<int>(target.size()), taken)) drained += taken;
    const double mibPerSecond = drained / secondsSince(begin) / 1048576.0;
    yes.closePipes();
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    std::printf("%.1f %.1f\n", starts[starts.size() / 2], mibPerSecond);
    return 0;
}
