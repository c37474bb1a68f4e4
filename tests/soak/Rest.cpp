#include "soak/Rest.h"

#include <algorithm>
#include <span>

namespace velmora::soak {

namespace {

/// With fewer than these there is no later half to speak of.
constexpr std::size_t fewest = 6;
/// What the allocator has not given back yet differs from rest to rest.
constexpr std::int64_t memorySlack = 3 << 20; // bytes
/// The bus or the session may be about to close one.
constexpr std::int64_t descriptorSlack = 4;

/// The middle one, because one rest may fall into some work.
std::int64_t middle(std::span<const Rest> rests, std::int64_t Rest::*figure) {
    std::vector<std::int64_t> all;
    std::ranges::transform(
        rests, std::back_inserter(all), [&](const Rest& one) { return one.*figure; });
    std::ranges::nth_element(all, all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2));
    return all[all.size() / 2];
}

} // namespace

std::vector<std::string> growth(const std::vector<Rest>& rests, bool countsMemory) {
    if (rests.size() < fewest) {
        return {};
    }
    std::vector<std::string> findings;
    const std::size_t third = rests.size() / 3;
    const std::span all(rests);
    const auto grown = [&](std::int64_t Rest::*figure) {
        return middle(all.last(third), figure) - middle(all.subspan(third, third), figure);
    };
    if (const auto bytes = grown(&Rest::residentBytes); countsMemory && bytes > memorySlack) {
        findings.push_back("memory at rest grew by " + std::to_string(bytes) + " bytes");
    }
    if (const auto more = grown(&Rest::descriptors); more > descriptorSlack) {
        findings.push_back("descriptors at rest grew by " + std::to_string(more));
    }
    return findings;
}

} // namespace velmora::soak
