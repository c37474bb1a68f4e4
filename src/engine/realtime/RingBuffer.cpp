#include "engine/realtime/RingBuffer.h"

#include <algorithm>

namespace velmora {

RingBuffer::RingBuffer(std::int64_t capacity)
    : capacity_(std::max<std::int64_t>(capacity, 0)),
      samples_(static_cast<std::size_t>(capacity_), 0.0F) {
}

std::int64_t RingBuffer::wrapped(std::int64_t position) const noexcept {
    return position >= capacity_ ? position % capacity_ : position;
}

std::int64_t RingBuffer::availableFrom(std::int64_t position) const noexcept {
    const std::int64_t written = writeIndex_.load();
    return written >= position ? written - position : capacity_ - position + written;
}

std::int64_t RingBuffer::availableToRead() const noexcept {
    return availableFrom(readIndex_.load());
}

void RingBuffer::write(const float* samples, std::int64_t count) noexcept {
    if (capacity_ == 0 || count <= 0) {
        return;
    }
    // Where the reader stands decides nothing here. Looking orders what is written below after the
    // reads that have made room for it.
    static_cast<void>(readIndex_.load());
    // Of more than a whole round only the last one stays.
    const std::int64_t overwritten = std::max<std::int64_t>(count - capacity_, 0);
    const std::int64_t position = wrapped(writeIndex_.load() + overwritten);
    const std::int64_t kept = count - overwritten;
    const std::int64_t beforeEnd = std::min(kept, capacity_ - position);
    const float* const from = samples + overwritten;
    std::copy_n(from, beforeEnd, samples_.data() + position);
    std::copy_n(from + beforeEnd, kept - beforeEnd, samples_.data());
    writeIndex_.store(wrapped(position + kept));
}

void RingBuffer::read(float* destination, std::int64_t count) noexcept {
    if (capacity_ == 0) {
        std::fill_n(destination, std::max<std::int64_t>(count, 0), 0.0F);
        return;
    }
    // Loaded once: a clear meanwhile is lost, but never moves the two apart.
    const std::int64_t start = readIndex_.load();
    const std::int64_t backlog = availableFrom(start);
    const std::int64_t wholeFrames = backlog & ~std::int64_t{1};
    const std::int64_t dropped = std::max<std::int64_t>(wholeFrames - maxBacklog, 0);
    const bool underruns = backlog - dropped < count;
    const bool trims = dropped > 0;
    countRead(backlog, underruns, trims);
    const std::int64_t position = wrapped(start + dropped);
    const std::int64_t copied = std::clamp<std::int64_t>(count, 0, backlog - dropped);
    const std::int64_t beforeEnd = std::min(copied, capacity_ - position);
    std::copy_n(samples_.data() + position, beforeEnd, destination);
    std::copy_n(samples_.data(), copied - beforeEnd, destination + beforeEnd);
    std::fill_n(destination + copied, std::max<std::int64_t>(count, 0) - copied, 0.0F);
    readIndex_.store(wrapped(position + copied));
}

void RingBuffer::clear() noexcept {
    readIndex_.store(writeIndex_.load());
}

void RingBuffer::countRead(std::int64_t backlog, bool underruns, bool trims) noexcept {
    hasFoundData_ = hasFoundData_ || backlog > 0;
    if (!hasFoundData_) {
        return;
    }
    const bool restarts = restart_.load(std::memory_order_relaxed);
    if (restarts) {
        restart_.store(false, std::memory_order_relaxed);
    }
    backlog_.set(backlog);
    backlogMin_.set(restarts ? backlog : std::min(backlogMin_.get(), backlog));
    backlogMax_.set(restarts ? backlog : std::max(backlogMax_.get(), backlog));
    if (underruns) {
        underruns_.increment();
    }
    if (trims) {
        trims_.increment();
    }
}

RingStatistics RingBuffer::statistics() const noexcept {
    return {.underruns = underruns_.get(),
            .trims = trims_.get(),
            .backlogMin = backlogMin_.get(),
            .backlogMax = backlogMax_.get(),
            .backlog = backlog_.get()};
}

} // namespace velmora
