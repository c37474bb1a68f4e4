#include "effects/Stages.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

/// Adds to a channel how many good samples it has brought. On with the low cut.
template <std::size_t channel>
struct Counter {
    void retune(const FXParams& params, double) { isIncluded = params.lowcut > 0; }
    void reset() noexcept { count = 0.0F; }
    [[nodiscard]] bool isOn() const noexcept { return isIncluded; }
    [[nodiscard]] bool isFinite() const noexcept { return std::isfinite(count); }

    static constexpr std::size_t steps = 1;
    template <Check check, std::size_t>
    void run(const QuadPlace& place) noexcept {
        for (std::size_t i = 0; i < place.frames; ++i) {
            float& sample = place.samples[2 * i + channel];
            count += sample * 0.0F + 1.0F; // 1, or not a number
            if (check == Check::everyFrame && !std::isfinite(count)) {
                count = 0.0F;
            }
            sample += count;
        }
    }

    float count{0};
    bool isIncluded{false};
};

/// In two steps, the second of which needs what the first has kept.
struct Doubler {
    void retune(const FXParams&, double) {}
    void reset() noexcept {}
    [[nodiscard]] static bool isOn() noexcept { return true; }
    [[nodiscard]] static bool isFinite() noexcept { return true; }

    static constexpr std::size_t steps = 2;
    template <Check, std::size_t step>
    void run(const QuadPlace& place) noexcept {
        Quad& slot = kept[place.index % quadSlots];
        if constexpr (step == 0) {
            slot = loadQuad(place.samples);
        } else {
            storeQuad(place.samples, loadQuad(place.samples) + slot);
        }
    }

    std::array<Quad, quadSlots> kept{};
};

/// Turns the left channel of a whole block round. On with the noise reduction.
template <int>
struct Turner {
    void retune(const FXParams& params, double) { isIncluded = params.denoise; }
    void reset() noexcept {}
    [[nodiscard]] bool isOn() const noexcept { return isIncluded; }
    [[nodiscard]] static bool isFinite() noexcept { return true; }

    static constexpr std::size_t steps = 3;
    static constexpr std::size_t blockStep = 1;
    template <Check, std::size_t step>
    void run(const QuadPlace& place) noexcept {
        for (std::size_t i = 0; i < place.frames; ++i) {
            float& kept = row[place.index * quadFrames + i];
            if constexpr (step == 0) {
                kept = place.samples[2 * i];
            } else if constexpr (step == 2) {
                place.samples[2 * i] = kept;
            }
        }
    }
    void runBlock(std::size_t frames) noexcept {
        std::ranges::reverse(std::span(row).first(frames));
    }

    bool isIncluded{false};
    std::array<float, blockFrames> row{};
};

constexpr FXParams counting{.lowcut = 1};
constexpr FXParams countingAndTurning{.lowcut = 1, .denoise = true};

/// The left channel of what becomes of `frames` frames of `level`.
template <typename Row>
std::vector<float> leftThrough(Row& stages, std::size_t frames, float level) {
    auto samples = constant(frames, level);
    stages.process(samples);
    std::vector<float> left;
    for (std::size_t i = 0; i < frames; ++i) {
        left.push_back(samples[2 * i]);
    }
    return left;
}

TEST(Stages, RunInTheOrderOfTheirList) {
    for (const std::size_t frames : {1U, 4U, 7U, 128U, 131U, 1000U}) {
        Stages<Counter<0>, Doubler> countFirst;
        Stages<Doubler, Counter<0>> doubleFirst;
        countFirst.retune(counting, usualRate);
        doubleFirst.retune(counting, usualRate);

        const auto counted = leftThrough(countFirst, frames, 10.0F);
        const auto doubled = leftThrough(doubleFirst, frames, 10.0F);

        for (std::size_t i = 0; i < frames; ++i) {
            const auto count = static_cast<float>(i + 1);
            EXPECT_EQ(counted[i], 2.0F * (10.0F + count)) << i << " of " << frames;
            EXPECT_EQ(doubled[i], 20.0F + count) << i << " of " << frames;
        }
    }
}

TEST(Stages, FreezeWhatIsOff) {
    Stages<Counter<0>> stages;
    stages.retune(counting, usualRate);
    (void)leftThrough(stages, 4, 10.0F);

    stages.retune({}, usualRate);
    EXPECT_EQ(leftThrough(stages, 4, 10.0F), std::vector<float>(4, 10.0F));

    stages.retune(counting, usualRate);
    EXPECT_EQ(leftThrough(stages, 2, 10.0F), (std::vector<float>{15, 16}));
}

TEST(Stages, ResetEachOfThem) {
    Stages<Counter<0>, Counter<1>> stages;
    stages.retune(counting, usualRate);
    auto samples = constant(130, 10.0F);
    stages.process(samples);

    stages.reset();

    auto fresh = constant(1, 10.0F);
    stages.process(fresh);
    EXPECT_EQ(fresh, (std::vector<float>{11, 11}));
}

TEST(Stages, FinishABlockStepBeforeTheStageBehindIt) {
    Stages<Counter<0>, Turner<0>, Doubler> stages;
    stages.retune(countingAndTurning, usualRate);

    EXPECT_EQ(leftThrough(stages, 8, 0.0F), (std::vector<float>{16, 14, 12, 10, 8, 6, 4, 2}));
}

TEST(Stages, MayHaveSeveralBlockSteps) {
    Stages<Counter<0>, Turner<0>, Doubler, Turner<1>> stages;
    stages.retune(countingAndTurning, usualRate);

    EXPECT_EQ(leftThrough(stages, 8, 0.0F), (std::vector<float>{2, 4, 6, 8, 10, 12, 14, 16}));
}

TEST(Stages, PassABlockStepThatIsOff) {
    Stages<Counter<0>, Turner<0>, Doubler> stages;
    stages.retune(counting, usualRate);

    EXPECT_EQ(leftThrough(stages, 8, 0.0F), (std::vector<float>{2, 4, 6, 8, 10, 12, 14, 16}));
}

TEST(Stages, RepeatABlockWithChecksWhenItLeavesABadState) {
    Stages<Counter<1>, Counter<0>> stages;
    stages.retune(counting, usualRate);
    auto bad = constant(128, 10.0F);
    bad[2 * 27] = infinity;

    stages.process(bad);

    auto next = constant(1, 10.0F);
    stages.process(next);
    EXPECT_EQ(bad[2 * 28], 11.0F); // counts afresh behind the bad sample
    EXPECT_EQ(next, (std::vector<float>{10 + 101, 10 + 129})); // the first try has left nothing
}

} // namespace
} // namespace velmora
