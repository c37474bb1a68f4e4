#include "FrameTimes.h"

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace velmora {
namespace {

void flushDenormals() {
#if defined(__SSE2__)
    _MM_SET_FLUSH_ZERO_MODE(_MM_FLUSH_ZERO_ON);
    _mm_setcsr(_mm_getcsr() | 0x0040U); // also denormal inputs
#endif
}

} // namespace

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
