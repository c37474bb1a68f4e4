#include "FrameTimes.h"

#include "ThreadMode.h"

namespace velmora {

void FrameTimes::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        const auto frames = run.counters.find("items_per_second");
        if (run.run_type != Run::RT_Iteration || frames == run.counters.end()) {
            continue;
        }
        const double nanoseconds = 1e9 / frames->second.value;
        const auto [known, isNew] = best_.try_emplace(run.run_name.str(), nanoseconds);
        if (!isNew && nanoseconds < known->second) {
            known->second = nanoseconds;
        }
    }
    ConsoleReporter::ReportRuns(runs);
}

double FrameTimes::best(const std::string& name) const {
    const auto known = best_.find(name);
    return known == best_.end() ? 0.0 : known->second;
}

bool runBenchmarks(int argc, char** argv, FrameTimes& times) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return false;
    }
    flushDenormals();
    benchmark::RunSpecifiedBenchmarks(&times);
    benchmark::Shutdown();
    return true;
}

} // namespace velmora
