#include "soak/Figures.h"

#include <algorithm>
#include <numeric>
#include <ostream>

namespace velmora::soak {

void Figures::tell(std::ostream& log, std::uint64_t seed) const {
    const int actions = std::accumulate(
        done.begin(), done.end(), 0, [](int sum, const auto& one) { return sum + one.second; });
    log << "seed " << seed << ": " << rounds << " rounds, " << actions << " actions\n";
    for (const auto& [kind, times] : done) {
        log << "  " << nameOf(kind) << ": " << times << '\n';
    }
    if (!calms.empty()) {
        auto sorted = calms;
        std::ranges::sort(sorted);
        log << "until all was as it should be: median " << sorted[sorted.size() / 2].count()
            << " ms, slowest " << sorted.back().count() << " ms\n";
    }
    log << "slowest answer: " << slowestAnswer.count() << " ms\n";
    if (!rests.empty()) {
        const auto tellRest = [&](const char* when, const Rest& one) {
            log << when << one.residentBytes / 1024 << " KiB, " << one.descriptors
                << " descriptors\n";
        };
        tellRest("first at rest: ", rests.front());
        tellRest("last at rest: ", rests.back());
    }
    log << std::flush;
}

} // namespace velmora::soak
