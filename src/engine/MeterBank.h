// MeterBank.h: the levels that the meters show.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmora {

class SourceCapture;

inline constexpr int meterTicksPerSecond = 30;

/// Rises at once to a new peak and falls by a fixed factor per tick.
///
/// Units: linear peak, 0 ... 1. Threads: main.
class MeterBank {
public:
    using Captures = std::vector<std::unique_ptr<SourceCapture>>;

    /// Takes every capture's peak. Returns whether any level changed.
    bool tick(const Captures& captures);
    /// What is not captured has no level.
    void keepOnly(const Captures& captures);
    void clear();

    [[nodiscard]] float level() const { return level_; }
    [[nodiscard]] const std::map<std::string, float>& sourceLevels() const { return sourceLevels_; }

    bool operator==(const MeterBank&) const = default;

private:
    float level_ = 0.0F;
    std::map<std::string, float> sourceLevels_; // by source id
};

} // namespace velmora
