#include "engine/MeterBank.h"

#include "capture/SourceCapture.h"
#include "engine/realtime/LevelMeter.h"

#include <algorithm>
#include <utility>

namespace velmora {
namespace {

constexpr float decayPerTick = 0.78F; // about -2.2 dB; -65 dB per second at 30 ticks
constexpr float floorLevel = 0.0005F; // linear; below it a meter is empty

float fallenLevel(float old, float peak) {
    const float level = std::max(std::min(peak, 1.0F), old * decayPerTick);
    return level < floorLevel ? 0.0F : level;
}

} // namespace

bool MeterBank::tick(const Captures& captures) {
    bool changed = false;
    float overall = 0.0F;
    for (const auto& capture : captures) {
        const auto [entry, isNew] = sourceLevels_.try_emplace(capture->source().id(), 0.0F);
        const float level = fallenLevel(entry->second, capture->boxes().meter->take());
        changed = changed || isNew || level != entry->second;
        entry->second = level;
        overall = std::max(overall, level);
    }
    changed = changed || overall != level_;
    level_ = overall;
    return changed;
}

void MeterBank::keepOnly(const Captures& captures) {
    std::erase_if(sourceLevels_, [&](const auto& entry) {
        return std::ranges::none_of(
            captures, [&](const auto& capture) { return capture->source().id() == entry.first; });
    });
    level_ = 0.0F;
    for (const auto& [id, level] : sourceLevels_) {
        level_ = std::max(level_, level);
    }
}

void MeterBank::clear() {
    level_ = 0.0F;
    sourceLevels_.clear();
}

} // namespace velmora
