#include "effects/EffectsChain.h"

#include "effects/Signals.h"
#include "support/CountedAllocations.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace velmora {
namespace {

/// How often one block used the heap.
std::size_t heapCallsOfABlock(EffectsChain& chain) {
    auto samples = sine(1024, 440.0, 0.3);
    const std::size_t before = heapCallsOfThisThread();
    chain.process(samples.data(), static_cast<std::int64_t>(samples.size()));
    return heapCallsOfThisThread() - before;
}

TEST(EffectsChainRealtime, CountsTheHeapAtAll) {
    const std::size_t before = heapCallsOfThisThread();

    const std::vector<float> allocated(10);

    EXPECT_EQ(heapCallsOfThisThread() - before, 1U);
}

TEST(EffectsChainRealtime, TakesEveryEffectOverWithoutTheHeap) {
    EffectsChain chain;
    EXPECT_EQ(heapCallsOfABlock(chain), 0U);

    chain.setParams(everyEffect);

    EXPECT_EQ(heapCallsOfABlock(chain), 0U);
    EXPECT_EQ(heapCallsOfABlock(chain), 0U);
}

TEST(EffectsChainRealtime, ChangesItsRateWithoutTheHeap) {
    EffectsChain chain(everyEffect);
    for (const double rate : {44100.0, 192000.0, 8000.0, 384000.0, 768000.0, 700000.0, 1e6}) {
        chain.setSampleRate(rate);
        EXPECT_EQ(heapCallsOfABlock(chain), 0U) << rate;
    }
}

TEST(EffectsChainRealtime, LeavesBypassWithoutTheHeap) {
    EffectsChain chain(everyEffect);
    chain.setBypass(true);
    EXPECT_EQ(heapCallsOfABlock(chain), 0U);

    chain.setBypass(false);

    EXPECT_EQ(heapCallsOfABlock(chain), 0U);
}

TEST(EffectsChainRealtime, TakesOverWholeValuesFromSeveralThreads) {
    // All three set values whose mixture would be heard: +6 dB with a room, or -60 dB without.
    constexpr FXParams loud{.autoGain = false, .manualDB = 6.0F, .reverbMix = 1.0F};
    constexpr FXParams quiet{.autoGain = false, .manualDB = -60.0F};
    EffectsChain chain(loud);
    std::atomic<int> running{3};
    const auto repeat = [&](auto edit) {
        return std::jthread([&running, edit] {
            for (int round = 0; round < 500; ++round) {
                edit(round);
            }
            running.fetch_sub(1, std::memory_order_release);
        });
    };
    const auto editParams =
        repeat([&](int round) { chain.setParams(round % 2 == 0 ? quiet : loud); });
    const auto editRate =
        repeat([&](int round) { chain.setSampleRate(round % 2 == 0 ? 384000.0 : 44100.0); });
    const auto editBypass = repeat([&](int round) { chain.setBypass(round % 2 == 0); });

    while (running.load(std::memory_order_acquire) > 0) {
        auto samples = sine(64, 440.0, 0.3);
        chain.process(samples.data(), static_cast<std::int64_t>(samples.size()));
        EXPECT_TRUE(allFinite(samples));
    }

    // The last words of all three: loud, 44.1 kHz, not bypassed.
    auto samples = constant(48000, 0.01F);
    chain.process(samples.data(), static_cast<std::int64_t>(samples.size()));
    EXPECT_GT(samples.back(), 0.01995F);
}

} // namespace
} // namespace velmora
