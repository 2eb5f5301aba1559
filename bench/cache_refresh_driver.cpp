// Refreshes an application's local cache again and again in one process, as an application
// of the suite would at its start: cache_refresh_driver EXE CACHE RUNS. Prints the wall time
// of the first refresh and the median of the later ones, in milliseconds; each must give
// the cache's path.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "exe_cache/cache_refresh.h"

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: cache_refresh_driver EXE CACHE RUNS\n");
        return 2;
    }
    const _kzString8_allSize<500> exe(argv[1]), cache(argv[2]);
    const uint8_t fast = 1;
    std::vector<double> times;
    for (int i = 0; i <= std::atoi(argv[3]); ++i) {
        const auto start = std::chrono::steady_clock::now();
        const _kzString8_allSize<500> result = localExeCache_copy(exe, cache, nullptr, nullptr, false, fast, nullptr);
        times.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        if (result.isEqualSameCase(exe)) return 1;
    }
    std::sort(times.begin() + 1, times.end());
    std::printf("%.3f %.3f\n", times[0], times[1 + (times.size() - 1) / 2]);
    return 0;
}
