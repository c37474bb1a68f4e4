// DeviceClock.h: how fast a simulated device runs, measured by the machine's own clock.
#pragma once

#include <cstdint>

namespace velmora {

/// A device moves whole blocks. One that is slow leaves out a block now and then, one that is fast
/// moves two in one cycle of the machine.
class DeviceClock {
public:
    /// @param ppm  millionths by which the device is faster than the machine's clock
    void setSkew(double ppm) { skewPpm_ = ppm; }

    void beginCycle(std::int64_t blockFrames) {
        blockFrames_ = blockFrames;
        const double block = 1e6 * static_cast<double>(blockFrames);
        drift_ += static_cast<double>(blockFrames) * skewPpm_;
        const auto extra = static_cast<std::int64_t>(drift_ / block);
        drift_ -= static_cast<double>(extra) * block;
        blocks_ = 1 + extra;
    }
    void endCycle() { ahead_ += (blocks_ - 1) * blockFrames_; }

    /// How many blocks the device moves in this cycle.
    [[nodiscard]] std::int64_t blocks() const { return blocks_; }
    /// How many frames the device's time is ahead of the machine's when it moves a block.
    [[nodiscard]] std::int64_t ahead(std::int64_t block) const {
        return ahead_ + block * blockFrames_;
    }

private:
    double skewPpm_ = 0.0;
    double drift_ = 0.0;     // millionths of a frame, so that sums are exact; less than one block
    std::int64_t ahead_ = 0; // frames, at this cycle's beginning
    std::int64_t blockFrames_ = 0;
    std::int64_t blocks_ = 1;
};

} // namespace velmora
