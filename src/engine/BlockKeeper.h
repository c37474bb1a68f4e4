// BlockKeeper.h: asks for blocks that the machine holds, and that nobody has to wait for.
#pragma once

#include "engine/BlockSize.h"
#include "engine/BlockStatus.h"
#include "platform/AudioUnits.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace velmora {

/// Short blocks while somebody listens, as short as the machine holds them; the longest while
/// nobody does, because each block wakes everyone whose sound is in the mix.
///
/// Threads: main.
class BlockKeeper {
public:
    explicit BlockKeeper(AudioUnits& units) : units_(units) {}

    /// A mix was built: what is missed meanwhile says nothing.
    void begin();
    void end();
    /// Somebody listens to the mix, or nobody does any more. Who comes is served at once.
    void setHeard(bool isHeard);
    /// To be called some four times a second while a mix runs.
    void look(BlockSize::Time passed);

    [[nodiscard]] const BlockStatus& status() const { return status_; }

private:
    void ask();
    void followRights(const std::optional<bool>& isRealTime);
    void keepMissed(std::uint32_t missed, BlockSize::Time passed);

    AudioUnits& units_;
    BlockSize size_;
    std::uint32_t asked_ = BlockSize::smallest;
    bool isHeard_ = true;
    BlockSize::Time unheard_{};
    std::uint64_t missedBefore_ = 0;
    std::array<std::uint32_t, 60> missed_{}; ///< in each second of the last minute
    std::size_t second_ = 0;                 ///< the one under way
    BlockSize::Time sinceSecond_{};
    BlockStatus status_;
};

} // namespace velmora
