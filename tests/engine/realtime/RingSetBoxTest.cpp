#include "engine/realtime/RingSetBox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace velmora {
namespace {

RingSetBox::Rings ringsOf(std::size_t count, std::int64_t frames) {
    RingSetBox::Rings rings(count);
    std::ranges::generate(rings, [&] { return std::make_shared<RingBuffer>(frames); });
    return rings;
}

TEST(RingSetBox, HoldsNoRingsAtFirst) {
    const RingSetBox box;

    EXPECT_TRUE(box.get()->empty());
}

TEST(RingSetBox, GivesTheListThatWasSetLast) {
    RingSetBox box;
    box.set(ringsOf(3, 8));
    const auto rings = ringsOf(2, 8);

    box.set(rings);

    EXPECT_EQ(*box.get(), rings);
}

TEST(RingSetBox, KeepsACopiedListAsItWas) {
    RingSetBox box;
    const auto rings = ringsOf(2, 8);
    box.set(rings);
    const auto copy = box.get();

    box.set({});

    EXPECT_EQ(*copy, rings);
}

TEST(RingSetBox, FreesAReplacedListAtOnceWhenNobodyReadsIt) {
    RingSetBox box;
    box.set(ringsOf(1, 8));
    const std::weak_ptr<RingBuffer> ring = box.get()->front();

    box.set({});

    EXPECT_TRUE(ring.expired());
}

TEST(RingSetBox, LeavesAListInUseToTheNextSet) {
    RingSetBox box;
    box.set(ringsOf(1, 8));
    auto reading = box.get();
    const std::weak_ptr<RingBuffer> ring = reading->front();
    box.set({});

    reading.reset();
    EXPECT_FALSE(ring.expired()); // the reader was not the one to free it

    box.set({});
    EXPECT_TRUE(ring.expired());
}

TEST(RingSetBox, KeepsEveryListWholeBetweenTwoThreads) {
    constexpr std::int64_t rounds = 2000;
    RingSetBox box;
    std::atomic<bool> done{false};
    const std::jthread reader([&] {
        while (!done.load(std::memory_order_acquire)) {
            const auto rings = box.get();
            // Each ring holds as many floats as its list has rings.
            for (const auto& ring : *rings) {
                EXPECT_EQ(ring->availableToRead(), static_cast<std::int64_t>(rings->size()));
            }
        }
    });
    for (std::int64_t round = 0; round < rounds; ++round) {
        const std::int64_t count = 1 + round % 40;
        auto rings = ringsOf(static_cast<std::size_t>(count), 64);
        const std::vector<float> samples(static_cast<std::size_t>(count));
        for (const auto& ring : rings) {
            ring->write(samples.data(), count);
        }
        box.set(std::move(rings));
    }
    done.store(true, std::memory_order_release);
}

} // namespace
} // namespace velmora
