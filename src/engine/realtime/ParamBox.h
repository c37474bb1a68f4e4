// ParamBox.h: a gain or a volume on its way to an audio thread.
#pragma once

#include <atomic>

namespace velmora {

/// One number. Units: linear gain, as the owner gave it.
///
/// Threads: any. Real-time: yes (lock-free).
class ParamBox {
public:
    explicit ParamBox(float value) : value_(value) {}

    // Relaxed: the number stands for itself and publishes nothing else.
    [[nodiscard]] float get() const noexcept { return value_.load(std::memory_order_relaxed); }
    void set(float value) noexcept { value_.store(value, std::memory_order_relaxed); }

private:
    static_assert(std::atomic<float>::is_always_lock_free);

    std::atomic<float> value_;
};

} // namespace velmora
