#include "effects/EffectsChain.h"

#include "effects/Available.h"
#include "effects/ScalarChain.h"
#include "effects/Signals.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

/// Draws what a user, a device and a sound may come up with.
class Draw {
public:
    explicit Draw(std::uint32_t seed) : random_(seed) {}

    [[nodiscard]] bool oneIn(unsigned chances) { return random_() % chances == 0; }

    template <typename T>
    [[nodiscard]] T oneOf(std::initializer_list<T> choices) {
        return *(choices.begin() + random_() % choices.size());
    }

    [[nodiscard]] FXParams params() {
        if (oneIn(6)) {
            return {};
        }
        return {.lowcut = oneOf<std::int64_t>({-1, 0, 0, 1, 2, 7}),
                .tilt = oneOf({0.0F, 0.0F, 0.01F, 0.011F, -0.3F, 1.0F, -1.0F}),
                .comp = oneOf<std::int64_t>({-2, 0, 1, 2, 3, 9}),
                .autoGain = !oneIn(3),
                .manualDB = oneOf({0.0F, -6.0F, 6.0F, 12.0F}),
                .reverbChar = oneOf<std::int64_t>({-3, 0, 1, 2, 5}),
                .reverbMix = oneOf({0.0F, 0.0F, 0.005F, 0.01F, 0.35F, 1.0F, 1.5F}),
                .plosive = oneIn(2),
                .denoise = oneIn(2)};
    }

    [[nodiscard]] double rate() {
        return oneOf({48000.0, 48000.0, 44100.0, 96000.0, 192000.0, 8000.0, 22050.5, 30.0});
    }

    [[nodiscard]] std::vector<float> block() {
        const std::size_t frames = oneOf<std::size_t>({1, 2, 3, 5, 64, 127, 128, 480, 1000, 2999});
        const float amplitude = oneOf({0.0F, 0.0005F, 0.01F, 0.1F, 0.5F, 1.0F, 8.0F});
        const double hz = oneOf({30.0, 60.0, 220.0, 1000.0, 9000.0});
        auto samples = oneIn(2) ? noise(random_, frames, amplitude)
                                : sine(frames, hz, static_cast<double>(amplitude));
        if (oneIn(8)) {
            const auto bad = arbitraryBits(random_, 1 + frames / 8);
            std::copy(bad.begin(), bad.end(), samples.begin() + (oneIn(2) ? 0 : frames / 2));
        }
        return samples;
    }

private:
    std::mt19937 random_;
};

/// Both chains, always told the same.
struct Pair {
    explicit Pair(const FXParams& params, Instructions instructions = bestInstructions())
        : chain(params, instructions), scalar(params) {}

    template <typename Call>
    void tell(Call call) {
        call(chain);
        call(scalar);
    }

    EffectsChain chain;
    ScalarChain scalar;
};

void expectEqualBlocks(Pair& pair, std::vector<float> block) {
    std::vector<float> expected = block;
    const auto count = static_cast<std::int64_t>(block.size());
    pair.chain.process(block.data(), count);
    pair.scalar.process(expected.data(), count);
    ASSERT_EQ(bitsOf(block), bitsOf(expected));
}

class EffectsChainEquality : public testing::TestWithParam<std::uint32_t> {};

TEST_P(EffectsChainEquality, HoldsBitForBitThroughAnySequenceOfEdits) {
    Draw draw(GetParam());
    Pair pair(draw.params());
    for (int block = 0; block < 300; ++block) {
        if (draw.oneIn(5)) {
            const FXParams params = draw.params();
            pair.tell([&](auto& chain) { chain.setParams(params); });
        }
        if (draw.oneIn(25)) {
            const double rate = draw.rate();
            pair.tell([&](auto& chain) { chain.setSampleRate(rate); });
        }
        if (draw.oneIn(20)) {
            const bool isBypassed = draw.oneIn(2);
            pair.tell([&](auto& chain) { chain.setBypass(isBypassed); });
        }
        ASSERT_NO_FATAL_FAILURE(expectEqualBlocks(pair, draw.block())) << "block " << block;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, EffectsChainEquality, testing::Range(1U, 25U));

TEST(EffectsChainEquality, HoldsForEachEffectAlone) {
    for (const FXParams& params : {FXParams{.lowcut = 1},
                                   FXParams{.lowcut = 2},
                                   FXParams{.tilt = -0.7F},
                                   FXParams{.comp = 1},
                                   FXParams{.comp = 3},
                                   FXParams{.autoGain = false, .manualDB = 9.0F},
                                   FXParams{.reverbChar = 1, .reverbMix = 0.5F},
                                   FXParams{.plosive = true},
                                   FXParams{.denoise = true},
                                   everyEffect}) {
        Draw draw(99);
        Pair pair(params);
        for (int block = 0; block < 40; ++block) {
            ASSERT_NO_FATAL_FAILURE(expectEqualBlocks(pair, draw.block()));
        }
    }
}

class EffectsChainEqualityWith : public testing::TestWithParam<Instructions> {};

/// The effects that are on, one bit each.
FXParams combination(unsigned bits) {
    const auto isOn = [bits](unsigned bit) { return (bits >> bit & 1U) != 0; };
    return {.lowcut = isOn(0) ? 1 : 0,
            .tilt = isOn(1) ? 0.5F : 0.0F,
            .comp = isOn(2) ? 3 : 0,
            .autoGain = isOn(3),
            .manualDB = 6.0F,
            .reverbChar = 1,
            .reverbMix = isOn(4) ? 0.4F : 0.0F,
            .plosive = isOn(5),
            .denoise = isOn(6)};
}

TEST_P(EffectsChainEqualityWith, HoldsForEveryCombinationOfEffectsAndPlaceOfABadSample) {
    std::mt19937 random(7);
    for (unsigned bits = 0; bits < 128; ++bits) {
        Pair pair(combination(bits), GetParam());
        for (const std::size_t frames : {1U, 4U, 7U, 63U, 128U, 131U, 259U}) {
            auto clean = noise(random, frames, 0.5F);
            auto bad = clean;
            bad[random() % bad.size()] = random() % 2 == 0 ? notANumber : -infinity;
            ASSERT_NO_FATAL_FAILURE(expectEqualBlocks(pair, clean)) << bits << ' ' << frames;
            ASSERT_NO_FATAL_FAILURE(expectEqualBlocks(pair, bad)) << bits << ' ' << frames;
        }
    }
}

TEST_P(EffectsChainEqualityWith, HoldsWhereverABadSampleIsInABlock) {
    std::mt19937 random(8);
    Pair pair(everyEffect, GetParam());
    for (std::size_t at = 0; at < 2 * 130; ++at) {
        auto block = noise(random, 130, 0.5F);
        block[at] = at % 3 == 0 ? infinity : notANumber;
        ASSERT_NO_FATAL_FAILURE(expectEqualBlocks(pair, block)) << at;
    }
}

TEST_P(EffectsChainEqualityWith, HoldsWhenTheCombinationChangesWithEveryBlock) {
    std::mt19937 random(9);
    Pair pair(everyEffect, GetParam());
    for (int block = 0; block < 500; ++block) {
        const FXParams params = combination(random() % 128);
        pair.tell([&](auto& chain) { chain.setParams(params); });
        ASSERT_NO_FATAL_FAILURE(expectEqualBlocks(pair, noise(random, 1 + random() % 300, 0.5F)));
    }
}

TEST_P(EffectsChainEqualityWith, HoldsForInputOfArbitraryBits) {
    std::mt19937 random(5);
    Pair pair(everyEffect, GetParam());
    for (int block = 0; block < 200; ++block) {
        ASSERT_NO_FATAL_FAILURE(expectEqualBlocks(pair, arbitraryBits(random, 200)));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryInstructionSet,
                         EffectsChainEqualityWith,
                         testing::ValuesIn(availableInstructions()),
                         nameOfInstructions);

TEST(EffectsChainEquality, HoldsForAnyWayToCutTheSignalIntoBlocks) {
    std::mt19937 random(6);
    const auto signal = noise(random, 8000, 0.5F);
    std::vector<float> whole = signal;
    EffectsChain once(everyEffect);
    once.process(whole.data(), static_cast<std::int64_t>(whole.size()));

    for (const std::size_t frames : {1U, 3U, 64U, 128U, 1000U}) {
        std::vector<float> cut = signal;
        EffectsChain chain(everyEffect);
        for (std::size_t at = 0; at < cut.size(); at += 2 * frames) {
            const std::size_t count = std::min(2 * frames, cut.size() - at);
            chain.process(cut.data() + at, static_cast<std::int64_t>(count));
        }
        EXPECT_EQ(cut, whole) << frames;
    }
}

} // namespace
} // namespace velmora
