// BlockStatus.h: how the mix's sound comes at this moment.
#pragma once

#include <cstdint>

namespace velmora {

struct BlockStatus {
    std::uint32_t frames{};           ///< of a block; 0 while no mix runs
    std::uint32_t missedLastMinute{}; ///< blocks

    /// The machine is known to give our audio thread no priority over other programs.
    bool lacksRights{};

    bool operator==(const BlockStatus&) const = default;
};

} // namespace velmora
