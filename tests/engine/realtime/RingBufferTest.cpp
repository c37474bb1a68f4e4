#include "engine/realtime/RingBuffer.h"

#include "platform/AudioUnits.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <thread>
#include <vector>

namespace velmora {
namespace {

constexpr std::int64_t capacity = 192'000;

/// The numbers from `first` on.
std::vector<float> countingFrom(std::int64_t first, std::int64_t count) {
    std::vector<float> samples(static_cast<std::size_t>(count));
    std::iota(samples.begin(), samples.end(), static_cast<float>(first));
    return samples;
}

void write(RingBuffer& ring, const std::vector<float>& samples) {
    ring.write(samples.data(), static_cast<std::int64_t>(samples.size()));
}

/// Reads over something that must not show through.
std::vector<float> read(RingBuffer& ring, std::int64_t count) {
    std::vector<float> samples(static_cast<std::size_t>(count), -99.0F);
    ring.read(samples.data(), count);
    return samples;
}

TEST(RingBuffer, IsEmptyAndSilentAtFirst) {
    RingBuffer ring(capacity);

    EXPECT_EQ(ring.availableToRead(), 0);
    EXPECT_EQ(read(ring, 256), std::vector<float>(256, 0.0F));
    EXPECT_EQ(ring.availableToRead(), 0);
}

TEST(RingBuffer, GivesBackWhatWasWritten) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(1, 600));

    EXPECT_EQ(ring.availableToRead(), 600);
    EXPECT_EQ(read(ring, 200), countingFrom(1, 200));
    EXPECT_EQ(read(ring, 400), countingFrom(201, 400));
    EXPECT_EQ(ring.availableToRead(), 0);
}

TEST(RingBuffer, FillsWhatIsMissingWithSilence) {
    RingBuffer ring(capacity);
    write(ring, {1.0F, 2.0F, 3.0F});

    EXPECT_EQ(read(ring, 5), (std::vector<float>{1.0F, 2.0F, 3.0F, 0.0F, 0.0F}));
}

TEST(RingBuffer, KeepsOnlyTheLatest2048Floats) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 5000));

    EXPECT_EQ(read(ring, 512), countingFrom(2952, 512));
    EXPECT_EQ(ring.availableToRead(), 1536);
}

TEST(RingBuffer, LeavesOneMoreWhenTheBacklogIsOdd) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 4999));

    EXPECT_EQ(read(ring, 1), countingFrom(2950, 1));
    EXPECT_EQ(ring.availableToRead(), 2048);
}

TEST(RingBuffer, KeepsABacklogOf2049) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 2049));

    EXPECT_EQ(read(ring, 1), countingFrom(0, 1));
}

TEST(RingBuffer, TrimsEvenWhenNothingIsRead) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 5000));

    ring.read(nullptr, 0);

    EXPECT_EQ(ring.availableToRead(), 2048);
}

TEST(RingBuffer, ChangesNothingWhenNothingIsReadOrWritten) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 10));

    ring.read(nullptr, 0);
    ring.write(nullptr, 0);

    EXPECT_EQ(read(ring, 10), countingFrom(0, 10));
}

TEST(RingBuffer, ReadsAsEmptyWhenItIsExactlyFull) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, capacity));

    EXPECT_EQ(ring.availableToRead(), 0);
    EXPECT_EQ(read(ring, 4), std::vector<float>(4, 0.0F));
}

TEST(RingBuffer, LosesAWholeRoundWhenTheWriterPassesTheReader) {
    RingBuffer ring(100);
    write(ring, countingFrom(0, 60));
    write(ring, countingFrom(60, 60));

    EXPECT_EQ(ring.availableToRead(), 20);
    EXPECT_EQ(read(ring, 20), countingFrom(100, 20));
}

TEST(RingBuffer, GoesOnAcrossItsEnd) {
    RingBuffer ring(100);
    std::int64_t written = 0;
    for (std::int64_t round = 0; round < 50; ++round) {
        write(ring, countingFrom(written, 34));
        ASSERT_EQ(read(ring, 34), countingFrom(written, 34));
        written += 34;
    }
}

TEST(RingBuffer, KeepsTheLastRoundOfAWriteLongerThanItself) {
    RingBuffer ring(8);
    write(ring, {-1.0F, -2.0F, -3.0F});
    write(ring, countingFrom(0, 21)); // ends at position (3 + 21) mod 8 = 0

    EXPECT_EQ(ring.availableToRead(), 0);
    write(ring, {100.0F, 101.0F});
    EXPECT_EQ(ring.availableToRead(), 2);
    EXPECT_EQ(read(ring, 2), (std::vector<float>{100.0F, 101.0F}));
}

TEST(RingBuffer, HoldsNothingWithoutACapacity) {
    for (const std::int64_t none : {0, -5}) {
        RingBuffer ring(none);
        write(ring, countingFrom(0, 10));

        EXPECT_EQ(ring.availableToRead(), 0);
        EXPECT_EQ(read(ring, 10), std::vector<float>(10, 0.0F));
        ring.clear();
    }
}

TEST(RingBuffer, IgnoresNegativeCounts) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 10));

    ring.write(nullptr, -3);
    ring.read(nullptr, -3);

    EXPECT_EQ(read(ring, 10), countingFrom(0, 10));
}

TEST(RingBuffer, DropsWhatIsUnreadWhenCleared) {
    RingBuffer ring(8);
    write(ring, countingFrom(0, 6));

    ring.clear();
    EXPECT_EQ(ring.availableToRead(), 0);

    // The samples themselves stay: a whole round further they can be read again.
    write(ring, {50.0F, 51.0F, 52.0F});
    EXPECT_EQ(read(ring, 3), (std::vector<float>{50.0F, 51.0F, 52.0F}));
}

/// The contract, one sample at a time.
class PlainRing {
public:
    explicit PlainRing(std::size_t size) : samples_(size) {}

    void write(const std::vector<float>& from) {
        for (const float sample : from) {
            samples_[write_] = sample;
            write_ = (write_ + 1) % samples_.size();
        }
    }
    std::vector<float> read(std::size_t count) {
        std::size_t available = (write_ + samples_.size() - read_) % samples_.size();
        if (available > 2048) {
            const std::size_t drop = available / 2 * 2 - 2048;
            read_ = (read_ + drop) % samples_.size();
            available -= drop;
        }
        std::vector<float> into(count, 0.0F);
        for (std::size_t i = 0; i < std::min(count, available); ++i) {
            into[i] = samples_[read_];
            read_ = (read_ + 1) % samples_.size();
        }
        return into;
    }

private:
    std::vector<float> samples_;
    std::size_t write_ = 0;
    std::size_t read_ = 0;
};

TEST(RingBuffer, BehavesLikeTheContractForAnySequence) {
    for (const std::int64_t size : {1, 2, 7, 100, 2048, 2049, 2050, 5001, 9999}) {
        std::mt19937 random(static_cast<std::uint32_t>(size));
        RingBuffer ring(size);
        PlainRing plain(static_cast<std::size_t>(size));
        float next = 1.0F;
        for (int step = 0; step < 400; ++step) {
            std::vector<float> samples(random() % (3 * static_cast<std::uint32_t>(size) / 2 + 2));
            for (float& sample : samples) {
                sample = next++;
            }
            write(ring, samples);
            plain.write(samples);
            const std::int64_t count = random() % 3000;
            ASSERT_EQ(read(ring, count), plain.read(static_cast<std::size_t>(count)))
                << "capacity " << size << ", step " << step;
        }
    }
}

TEST(RingBuffer, CountsNothingBeforeItsFirstData) {
    RingBuffer ring(capacity);

    (void)read(ring, 256);

    EXPECT_EQ(ring.statistics(), RingStatistics{});
}

TEST(RingBuffer, CountsUnderrunsOnceDataHasCome) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 256));
    (void)read(ring, 256);
    (void)read(ring, 256);
    write(ring, countingFrom(0, 100));
    (void)read(ring, 256);

    EXPECT_EQ(ring.statistics(),
              (RingStatistics{
                  .underruns = 2, .trims = 0, .backlogMin = 0, .backlogMax = 256, .backlog = 100}));
}

TEST(RingBuffer, CountsTrims) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 5000));
    (void)read(ring, 512);
    (void)read(ring, 512);

    EXPECT_EQ(
        ring.statistics(),
        (RingStatistics{
            .underruns = 0, .trims = 1, .backlogMin = 1536, .backlogMax = 5000, .backlog = 1536}));
}

TEST(RingBuffer, CountsAnUnderrunWhereATrimLeavesTooLittle) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 4096));

    (void)read(ring, 4096); // 2048 of them are there, the rest is silence

    EXPECT_EQ(ring.statistics().trims, 1);
    EXPECT_EQ(ring.statistics().underruns, 1);
}

TEST(RingBuffer, CountsABacklogOf2049AsUntrimmed) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 2049));
    (void)read(ring, 2);

    EXPECT_EQ(ring.statistics().trims, 0);
}

TEST(RingBuffer, StartsSmallestAndLargestBacklogAfreshOnRequest) {
    RingBuffer ring(capacity);
    write(ring, countingFrom(0, 5000));
    (void)read(ring, 512);

    ring.resetStatistics();
    (void)read(ring, 512);

    const RingStatistics statistics = ring.statistics();
    EXPECT_EQ(statistics.backlogMin, 1536);
    EXPECT_EQ(statistics.backlogMax, 1536);
    EXPECT_EQ(statistics.trims, 1);
}

TEST(RingBuffer, HoldsBackAsMuchAsThePlatformsKnow) {
    EXPECT_EQ(RingBuffer::maxBacklog, 2 * largestBacklogFrames);
}

TEST(RingBuffer, KeepsOrderAndIntegrityBetweenTwoThreads) {
    constexpr std::int64_t block = 256;
    constexpr std::int64_t last = 400 * block;
    RingBuffer ring(4096);
    const std::jthread producer([&] {
        for (std::int64_t next = 1; next <= last;) {
            // A device would wait for its next cycle; here the ring's backlog is the clock.
            if (ring.availableToRead() <= RingBuffer::maxBacklog - block) {
                write(ring, countingFrom(next, block));
                next += block;
            } else {
                std::this_thread::yield();
            }
        }
    });
    float expected = 1.0F;
    while (expected < static_cast<float>(last)) {
        for (const float sample : read(ring, 192)) {
            if (sample != 0.0F) { // silence where the producer is late
                ASSERT_EQ(sample, expected);
                expected += 1.0F;
            }
        }
    }

    EXPECT_EQ(ring.statistics().trims, 0);
}

} // namespace
} // namespace velmora
