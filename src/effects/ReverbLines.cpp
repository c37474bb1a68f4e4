#include "effects/ReverbLines.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr std::int64_t stereoSpread = 23; // samples at 44.1 kHz

} // namespace

void ReverbLines::reserve(double sampleRate) {
    left.reserve(sampleRate, 0);
    right.reserve(sampleRate, stereoSpread);
}

void ReverbLines::configure(double sampleRate) {
    left.configure(sampleRate, 0);
    right.configure(sampleRate, stereoSpread);
}

void ReverbLines::clear() {
    left.clear();
    right.clear();
}

void ReverbLines::process(std::span<float> leftRow,
                          std::span<float> rightRow,
                          const ReverbTone& tone,
                          Instructions instructions) noexcept {
    const bool areConfigured = left.isConfigured() && right.isConfigured();
    for (std::size_t i = 0; i < leftRow.size();) {
        const std::size_t ahead = std::min(left.beforeAnyEnd(), right.beforeAnyEnd());
        const std::size_t straight =
            areConfigured ? std::min(leftRow.size() - i, ahead) / 4 * 4 : 0;
        if (straight == 0) {
            leftRow[i] = left.process(leftRow[i], tone.feedback, tone.damp);
            rightRow[i] = right.process(rightRow[i], tone.feedback, tone.damp);
            ++i;
            continue;
        }
        runBoth(left.runFor(&leftRow[i]), right.runFor(&rightRow[i]), straight, tone, instructions);
        left.advance(straight);
        right.advance(straight);
        i += straight;
    }
}

void SpareReverbLines::reserveFor(double sampleRate) {
    if (sampleRate <= reservedRate_) {
        return;
    }
    reservedRate_ = 2.0 * sampleRate;
    made_.push_back(std::make_unique<ReverbLines>());
    made_.back()->reserve(reservedRate_);
    newest_.store(made_.back().get(), std::memory_order_release);
}

} // namespace velmora
