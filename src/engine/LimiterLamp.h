// LimiterLamp.h: whether an output's limiter works, slowly enough to be seen.
#pragma once

namespace velmora {

/// Lights at a tenth of a decibel, and for a third of a second after the last of them.
///
/// Threads: main.
class LimiterLamp {
public:
    static constexpr int ticksAfter = 10; ///< of the meters, 30 a second

    /// @param gain  of the limiter now, linear; 1 = it does nothing
    /// Returns whether the lamp changed.
    bool tick(float gain) {
        constexpr float working = 0.9885F; // -0.1 dB
        const bool wasLit = isLit();
        left_ = gain < working ? ticksAfter : (left_ > 0 ? left_ - 1 : 0);
        return isLit() != wasLit;
    }
    [[nodiscard]] bool isLit() const { return left_ > 0; }

private:
    int left_ = 0;
};

} // namespace velmora
