// Figures.h: what a soak has done, and what it took.
#pragma once

#include "soak/Action.h"
#include "soak/Rest.h"

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <vector>

namespace velmora::soak {

struct Figures {
    int rounds = 0;
    std::map<Action::Kind, int> done; ///< how often
    std::vector<std::chrono::milliseconds>
        calms; ///< from the last action of a burst until all was seen to be as it should be
    std::vector<Rest> rests;
    std::chrono::milliseconds slowestAnswer{};

    void tell(std::ostream& log, std::uint64_t seed) const;
};

} // namespace velmora::soak
