// settings_benchmark.cpp: what one write of a setting costs the main thread.
#include "platform/sqlite/SqliteDefaultsStore.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace velmora;

/// A store with the keys of a long-used mixer, in the folder for temporary files.
class SettingsFile {
public:
    SettingsFile() {
        for (int key = 0; key < 30; ++key) {
            store.set("key" + std::to_string(key), std::string(300, 'v'));
        }
    }
    ~SettingsFile() { std::filesystem::remove_all(folder_); }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;

private:
    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("velmora-bench-" + std::to_string(getpid()));

public:
    SqliteDefaultsStore store{folder_ / "settings.sqlite"};
};

/// Calls `write` with a new value each time; adds the 99th percentile and the longest write, in
/// microseconds, to the mean. A write now and then carries the log over into the file.
template <typename Write>
void measure(benchmark::State& state, Write write) {
    using Clock = std::chrono::steady_clock;
    SettingsFile file;
    std::vector<double> microseconds;
    double value = 0;
    for ([[maybe_unused]] auto round : state) {
        const auto start = Clock::now();
        if (write(file.store, value += 0.001) != statusOk) {
            state.SkipWithError("a write was refused");
            break;
        }
        microseconds.push_back(
            std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    if (microseconds.empty()) {
        return;
    }
    std::ranges::sort(microseconds);
    state.counters["p99_us"] = microseconds[microseconds.size() * 99 / 100];
    state.counters["max_us"] = microseconds.back();
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
