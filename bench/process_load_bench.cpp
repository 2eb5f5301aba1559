// The cost of the process table per process, as CPU time of this process: a full measured
// update (updateFull on a table that collects load) and a snapshot without load. Prints
// "measured_us_per_process snapshot_us_per_process processes", medians of 15 rounds.
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

#include "process/process_list.h"

namespace {

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
}

template <typename Work>
double medianMicrosecondsPerProcess(_kzProcessList& table, Work work) {
    std::vector<double> rounds;
    for (int i = 0; i < 15; ++i) {
        const double before = cpuSeconds();
        work();
        rounds.push_back((cpuSeconds() - before) * 1e6 / table.count);
    }
    std::sort(rounds.begin(), rounds.end());
    return rounds[rounds.size() / 2];
}

} // namespace

int main() {
    auto measured = std::make_unique<_kzProcessList>(true), plain = std::make_unique<_kzProcessList>(false);
    const double full = medianMicrosecondsPerProcess(*measured, [&] { measured->updateFull(); });
    const double snapshot = medianMicrosecondsPerProcess(*plain, [&] { plain->update(); });
    std::printf("%.2f %.2f %d\n", full, snapshot, measured->count);
    return 0;
}
