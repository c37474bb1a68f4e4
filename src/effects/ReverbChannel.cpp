#include "effects/ReverbChannel.h"

#include "effects/SampleMath.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace velmora {
namespace {

constexpr double baseRate = 44100.0; // Hz, the rate of the base lengths
constexpr std::array<std::int64_t, 4> combLengths{1116, 1188, 1277, 1356};
constexpr std::array<std::int64_t, 2> allpassLengths{556, 441};
constexpr double shortestLine = 8.0;
constexpr double longestLine = 1e9;

std::size_t lineLength(double sampleRate, std::int64_t base, std::int64_t offset) {
    std::int64_t atBaseRate = 0;
    const bool overflows = __builtin_add_overflow(base, offset, &atBaseRate);
    const double length = sampleRate / baseRate * static_cast<double>(atBaseRate);
    if (overflows || !(std::abs(length) <= longestLine)) {
        std::abort(); // a programming error: no device runs at such a rate
    }
    return static_cast<std::size_t>(std::max(std::trunc(length), shortestLine));
}

} // namespace

template <typename Call>
void ReverbChannel::forEachLine(Call call) {
    for (std::size_t k = 0; k < combs_.size(); ++k) {
        call(combs_[k], combLengths[k]);
    }
    for (std::size_t k = 0; k < allpasses_.size(); ++k) {
        call(allpasses_[k], allpassLengths[k]);
    }
}

void ReverbChannel::reserve(double sampleRate, std::int64_t offset) {
    forEachLine([&](Line& line, std::int64_t base) {
        line.samples.reserve(lineLength(sampleRate, base, offset));
    });
}

void ReverbChannel::configure(double sampleRate, std::int64_t offset) {
    forEachLine([&](Line& line, std::int64_t base) {
        line.samples.assign(lineLength(sampleRate, base, offset), 0.0F);
        line.position = 0;
    });
    stores_ = {};
}

void ReverbChannel::clear() {
    forEachLine([](Line& line, std::int64_t) { std::ranges::fill(line.samples, 0.0F); });
    stores_ = {};
}

float ReverbChannel::process(float input, float feedback, float damp) noexcept {
    if (combs_.front().samples.empty()) {
        return 0.0F;
    }
    float sum = 0.0F;
    for (std::size_t k = 0; k < combs_.size(); ++k) {
        const float out = combs_[k].now();
        const float store = finiteOr((1.0F - damp) * out + damp * stores_[k], 0.0F);
        stores_[k] = store;
        combs_[k].now() = finiteOr(input + feedback * store, 0.0F);
        combs_[k].advance(1);
        sum = sum + out;
    }
    float signal = sum * 0.25F;
    for (Line& allpass : allpasses_) {
        const float delayed = allpass.now();
        allpass.now() = finiteOr(signal + delayed * allpassGain, 0.0F);
        allpass.advance(1);
        signal = delayed - signal;
    }
    return signal;
}

std::size_t ReverbChannel::beforeAnyEnd() const noexcept {
    std::size_t samples = std::numeric_limits<std::size_t>::max();
    for (const Line& line : combs_) {
        samples = std::min(samples, line.beforeEnd());
    }
    for (const Line& line : allpasses_) {
        samples = std::min(samples, line.beforeEnd());
    }
    return samples;
}

ReverbRun ReverbChannel::runFor(float* signal) noexcept {
    return {.lines = {&combs_[0].now(),
                      &combs_[1].now(),
                      &combs_[2].now(),
                      &combs_[3].now(),
                      &allpasses_[0].now(),
                      &allpasses_[1].now()},
            .signal = signal,
            .stores = stores_.data()};
}

void ReverbChannel::advance(std::size_t samples) noexcept {
    forEachLine([=](Line& line, std::int64_t) { line.advance(samples); });
}

} // namespace velmora
