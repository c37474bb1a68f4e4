#include "effects/ReverbChannel.h"

#include "effects/SampleMath.h"

#include <algorithm>
#include <cstdlib>

namespace velmora {
namespace {

constexpr double baseRate = 44100.0; // Hz, the rate of the base lengths
constexpr std::array<std::int64_t, 4> combLengths{1116, 1188, 1277, 1356};
constexpr std::array<std::int64_t, 2> allpassLengths{556, 441};
constexpr double shortestLine = 8.0;
constexpr double longestLine = 1e9;
constexpr float allpassGain = 0.5F;

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

template <typename Call> void ReverbChannel::forEachLine(Call call) {
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
    stores_.fill(0.0F);
}

void ReverbChannel::clear() {
    forEachLine([](Line& line, std::int64_t) { std::ranges::fill(line.samples, 0.0F); });
    stores_.fill(0.0F);
}

float ReverbChannel::process(float input, float feedback, float damp) noexcept {
    if (combs_.front().samples.empty()) {
        return 0.0F;
    }
    float sum = 0.0F;
    for (std::size_t k = 0; k < combs_.size(); ++k) {
        const float out = combs_[k].now();
        stores_[k] = finiteOr((1.0F - damp) * out + damp * stores_[k], 0.0F);
        combs_[k].now() = finiteOr(input + feedback * stores_[k], 0.0F);
        combs_[k].advance();
        sum = sum + out;
    }
    float signal = sum * 0.25F;
    for (Line& allpass : allpasses_) {
        const float delayed = allpass.now();
        allpass.now() = finiteOr(signal + delayed * allpassGain, 0.0F);
        allpass.advance();
        signal = delayed - signal;
    }
    return signal;
}

} // namespace velmora
