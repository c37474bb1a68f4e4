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

/// Swaps rows and columns.
void transpose(std::array<Lanes, 4>& rows) noexcept {
    const Lanes lower01 = __builtin_shufflevector(rows[0], rows[1], 0, 4, 1, 5);
    const Lanes upper01 = __builtin_shufflevector(rows[0], rows[1], 2, 6, 3, 7);
    const Lanes lower23 = __builtin_shufflevector(rows[2], rows[3], 0, 4, 1, 5);
    const Lanes upper23 = __builtin_shufflevector(rows[2], rows[3], 2, 6, 3, 7);
    rows[0] = __builtin_shufflevector(lower01, lower23, 0, 1, 4, 5);
    rows[1] = __builtin_shufflevector(lower01, lower23, 2, 3, 6, 7);
    rows[2] = __builtin_shufflevector(upper01, upper23, 0, 1, 4, 5);
    rows[3] = __builtin_shufflevector(upper01, upper23, 2, 3, 6, 7);
}

/// The combs' damping low-passes over four samples of them.
template <Check check>
std::array<Lanes, 4>
lowPassed(const std::array<Lanes, 4>& samples, Lanes damp, Lanes store) noexcept {
    const Lanes keep = 1.0F - damp;
    std::array<Lanes, 4> stores;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        store = keep * samples[i] + damp * store;
        if constexpr (check == Check::everyFrame) {
            store = finiteOr(store, zeroLanes);
        }
        stores[i] = store;
    }
    return stores;
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
    stores_ = zeroLanes;
}

void ReverbChannel::clear() {
    forEachLine([](Line& line, std::int64_t) { std::ranges::fill(line.samples, 0.0F); });
    stores_ = zeroLanes;
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

/// How far every line can go on without starting over.
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

void ReverbChannel::process(std::span<const float> input,
                            std::span<float> output,
                            float feedback,
                            float damp) noexcept {
    const bool isConfigured = !combs_.front().samples.empty();
    for (std::size_t i = 0; i < input.size();) {
        const std::size_t straight =
            isConfigured ? std::min(input.size() - i, beforeAnyEnd()) / 4 * 4 : 0;
        if (straight == 0) {
            output[i] = process(input[i], feedback, damp);
            ++i;
            continue;
        }
        const auto row = output.subspan(i, straight);
        runCombs(&input[i], row, allLanes(feedback), allLanes(damp));
        for (Line& allpass : allpasses_) {
            runAllpass(allpass, row);
        }
        i += straight;
    }
}

/// Gives a quarter of the combs' sum. Their low-passes go sample by sample, but all four at once;
/// the rest goes by four samples, which lie side by side along each line.
void ReverbChannel::runCombs(const float* input,
                             std::span<float> output,
                             Lanes feedback,
                             Lanes damp) noexcept {
    const std::array<float*, 4> lines{
        &combs_[0].now(), &combs_[1].now(), &combs_[2].now(), &combs_[3].now()};
    Lanes store = stores_;
    for (std::size_t i = 0; i < output.size(); i += 4) {
        std::array<Lanes, 4> rows; // a comb's four samples each, then four combs' sample each
        Lanes sum = zeroLanes;
        for (std::size_t k = 0; k < rows.size(); ++k) {
            rows[k] = loadLanes(lines[k] + i);
            sum = sum + rows[k];
        }
        transpose(rows);
        auto stores = lowPassed<Check::atTheEnd>(rows, damp, store);
        if (!allFinite(stores.back())) {
            stores = lowPassed<Check::everyFrame>(rows, damp, store);
        }
        store = stores.back();
        transpose(stores);
        const Lanes x = loadLanes(input + i);
        for (std::size_t k = 0; k < rows.size(); ++k) {
            storeLanes(lines[k] + i, finiteOr(x + feedback * stores[k], zeroLanes));
        }
        storeLanes(&output[i], sum * 0.25F);
    }
    stores_ = store;
    for (Line& comb : combs_) {
        comb.advance(output.size());
    }
}

void ReverbChannel::runAllpass(Line& line, std::span<float> signal) noexcept {
    float* const samples = &line.now();
    for (std::size_t i = 0; i < signal.size(); i += 4) {
        const Lanes in = loadLanes(&signal[i]);
        const Lanes delayed = loadLanes(samples + i);
        storeLanes(samples + i, finiteOr(in + delayed * allpassGain, zeroLanes));
        storeLanes(&signal[i], delayed - in);
    }
    line.advance(signal.size());
}

} // namespace velmora
