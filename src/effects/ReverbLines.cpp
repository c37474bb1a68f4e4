#include "effects/ReverbLines.h"

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
