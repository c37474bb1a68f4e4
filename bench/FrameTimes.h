// FrameTimes.h: benchmark results in nanoseconds per stereo frame.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The block lengths, in frames, that every benchmark runs at.
inline constexpr std::int64_t blockLengths[]{64, 128, 1024};

/// Reports to the console and keeps the best time of each benchmark. A benchmark counts the frames
/// it has processed as its items.
class FrameTimes : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;

    /// ns per frame; 0 when no such benchmark has run.
    [[nodiscard]] double best(const std::string& name) const;

private:
    std::map<std::string, double> best_;
};

/// Runs the registered benchmarks on a thread that flushes denormals, as the audio threads do.
/// @return false when the command line is not understood
bool runBenchmarks(int argc, char** argv, FrameTimes& times);

} // namespace velmora
