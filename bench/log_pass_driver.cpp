// Runs log passes over a folder, as the tool runs them: log_pass_driver LOCAL ROOT PASSES.
// Prints the median wall time of the passes after the first, in milliseconds; the first
// pass brings the mirror up to date, so the later ones measure the standing cost. With
// PASSES 0 it runs the one pass and prints nothing.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "tool/log_pass.h"

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: log_pass_driver LOCAL ROOT PASSES\n");
        return 2;
    }
    const _kzString<500> local(argv[1]), root(argv[2]);
    const int passes = std::atoi(argv[3]);
    _kzDirScan scan;
    scan.addEndFilter(_kzString<500>(".txt"));
    std::vector<double> times;
    for (int i = 0; i <= passes; ++i) {
        const auto start = std::chrono::steady_clock::now();
        logPass(local, root, scan);
        const double ms =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        if (i > 0) times.push_back(ms);
    }
    if (times.empty()) return passes == 0 ? 0 : 2;
    std::sort(times.begin(), times.end());
    std::printf("%.3f\n", times[times.size() / 2]);
    return 0;
}
