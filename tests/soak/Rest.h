// Rest.h: what the program costs each time when it has nothing to do.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::soak {

struct Rest {
    std::int64_t residentBytes{};
    std::int64_t descriptors{};
};

/// What grows, over many rests; what is there early is made once and does not count. Empty =
/// nothing.
/// @param countsMemory  a sanitizer's own would be counted
[[nodiscard]] std::vector<std::string> growth(const std::vector<Rest>& rests, bool countsMemory);

} // namespace velmora::soak
