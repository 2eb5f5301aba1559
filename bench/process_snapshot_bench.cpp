// The cost of one snapshot of the process table: what the watch loop pays once a second.
#include <benchmark/benchmark.h>

#include <memory>

#include "process/process_list.h"

namespace {

void processSnapshot(benchmark::State& state) {
    auto table = std::make_unique<_kzProcessList>(false);
    for (auto _ : state) {
        _kzString8_allSize<25> name("kzServerconsole");
        benchmark::DoNotOptimize(table->findByName(name, true, nullptr));
    }
    state.counters["processes"] = table->count;
    state.counters["us_per_process"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * table->count,
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert, benchmark::Counter::kIs1000);
}

BENCHMARK(processSnapshot)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
