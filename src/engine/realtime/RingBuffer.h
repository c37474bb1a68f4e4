// RingBuffer.h: carries one source's sound from its capture to one output.
#pragma once

#include "engine/realtime/ManagedAtomic.h"

#include <atomic>
#include <cstdint>
#include <vector>

namespace velmora {

/// How a ring has fared since its first read that found data. Backlogs in floats, as each read
/// found them.
struct RingStatistics {
    std::int64_t underruns{0}; ///< reads that had to be filled up with silence
    std::int64_t trims{0};     ///< reads that dropped what exceeded the largest backlog
    std::int64_t backlogMin{0};
    std::int64_t backlogMax{0};
    std::int64_t backlog{0}; ///< at the latest read

    bool operator==(const RingStatistics&) const = default;
};

/// A circular buffer for one producer and one consumer.
///
/// Shape: interleaved stereo floats at the rate of the output that reads; counts are in floats.
///
/// The producer never waits and never fails: it does not look at the reader, and what was not read
/// in time is overwritten. A ring that is exactly full reads as empty. What keeps sound fresh is
/// the reader, which drops all but the latest `maxBacklog`. With the engine's two seconds of
/// capacity, the producer catches up with a reader only when that reader has stood still for two
/// seconds; its next block may then mix old and new samples.
class RingBuffer {
public:
    static constexpr std::int64_t maxBacklog = 2048; // floats, 1024 frames

    /// Real-time: no.
    /// @param capacity  floats; 0 makes a ring that takes nothing and reads as silence
    explicit RingBuffer(std::int64_t capacity);

    /// Threads: capture, one only. Real-time: yes (lock-free).
    void write(const float* samples, std::int64_t count) noexcept;

    /// Always fills `count` floats, with silence where data is missing.
    /// Threads: render, one only. Real-time: yes (lock-free).
    void read(float* destination, std::int64_t count) noexcept;

    /// Threads: any. Real-time: yes (lock-free).
    [[nodiscard]] std::int64_t availableToRead() const noexcept;

    /// Drops what is unread; samples stay where they are. A read going on at the same time may win.
    /// Threads: any. Real-time: yes (lock-free).
    void clear() noexcept;

    /// Threads: any. Real-time: yes (lock-free). A snapshot taken during a read may mix two.
    [[nodiscard]] RingStatistics statistics() const noexcept;

    /// Lets the next read start the smallest and largest backlog afresh; counters go on.
    /// Threads: any. Real-time: yes (lock-free).
    void resetStatistics() noexcept { restart_.store(true, std::memory_order_relaxed); }

private:
    /// Written by the consumer alone, so that adding needs no exchange.
    class Counter {
    public:
        [[nodiscard]] std::int64_t get() const noexcept {
            return value_.load(std::memory_order_relaxed);
        }
        void set(std::int64_t value) noexcept { value_.store(value, std::memory_order_relaxed); }
        void increment() noexcept { set(get() + 1); }

    private:
        std::atomic<std::int64_t> value_{0};
    };

    [[nodiscard]] std::int64_t availableFrom(std::int64_t position) const noexcept;
    [[nodiscard]] std::int64_t wrapped(std::int64_t position) const noexcept;
    void countRead(std::int64_t backlog, bool underruns, bool trims) noexcept;

    // Far enough apart that producer and consumer do not share a cache line.
    static constexpr std::size_t cacheLine = 64;

    std::int64_t capacity_;
    std::vector<float> samples_;
    alignas(cacheLine) ManagedAtomic writeIndex_; // producer
    alignas(cacheLine) ManagedAtomic readIndex_;  // consumer, and clear
    bool hasFoundData_{false};                    // consumer
    Counter underruns_, trims_, backlogMin_, backlogMax_, backlog_;
    std::atomic<bool> restart_{true};
};

} // namespace velmora
