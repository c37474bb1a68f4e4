// settings_benchmark.cpp: what one write of a setting costs the main thread.
#include "SettingsFile.h"
#include "WriteTimes.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>

namespace {

using namespace velmora;

/// Times `write`; one that the store refuses fails the benchmark. A write now and then carries the
/// log over into the file.
template <typename Write>
void measure(benchmark::State& state, Write write) {
    SettingsFile file;
    timeWrites(state, [&](double value) {
        if (write(file.store, value) != statusOk) {
            state.SkipWithError("a write was refused");
        }
    });
}

void draggedFader(benchmark::State& state) {
    measure(state, [](DefaultsStore& store, double value) { return store.set("volume", value); });
}
BENCHMARK(draggedFader)->Unit(benchmark::kMicrosecond);

void gainAmongSources(benchmark::State& state) {
    NumberMap gains;
    for (std::int64_t source = 0; source < state.range(0); ++source) {
        gains["app-org.example.Application-" + std::to_string(source)] = 1;
    }
    measure(state, [&](DefaultsStore& store, double value) {
        gains.begin()->second = value;
        return store.set("sourceGains", gains);
    });
}
BENCHMARK(gainAmongSources)->Arg(8)->Arg(64)->Unit(benchmark::kMicrosecond);

void presetsOfSize(benchmark::State& state) {
    Bytes presets(static_cast<std::size_t>(state.range(0)));
    measure(state, [&](DefaultsStore& store, double value) {
        presets[0] = static_cast<std::uint8_t>(static_cast<std::int64_t>(value * 1000) % 251);
        return store.set("presets", presets);
    });
}
BENCHMARK(presetsOfSize)->Arg(1 << 10)->Arg(1 << 16)->Unit(benchmark::kMicrosecond);

void unchangedValue(benchmark::State& state) {
    measure(state, [](DefaultsStore& store, double) { return store.set("volume", 0.5); });
}
BENCHMARK(unchangedValue)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
