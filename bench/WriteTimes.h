// WriteTimes.h: how long single calls take, the rare long ones included.
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <vector>

namespace velmora {

/// Calls `write` with a new value each time; adds the median, the 99th percentile and the longest
/// call, in microseconds, to the mean.
template <typename Write>
void timeWrites(benchmark::State& state, Write write) {
    using Clock = std::chrono::steady_clock;
    std::vector<double> microseconds;
    double value = 0;
    for ([[maybe_unused]] auto round : state) {
        const auto start = Clock::now();
        write(value += 0.001);
        microseconds.push_back(
            std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    std::ranges::sort(microseconds);
    state.counters["p50_us"] = microseconds[microseconds.size() / 2];
    state.counters["p99_us"] = microseconds[microseconds.size() * 99 / 100];
    state.counters["max_us"] = microseconds.back();
}

} // namespace velmora
