// ApplicationTaps.h: the applications that play, and taps that hear them.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/Status.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace velmora {

/// One block of a tap.
/// Shape: interleaved stereo, `samples` floats = 2 × frames; may be changed in place; `data` may
/// be null when the block holds nothing.
struct TapBlock {
    float* data{};
    std::int64_t samples{};
};

/// Threads: the tap's own real-time thread. Must not allocate, block or throw.
using TapCallback = std::function<void(const TapBlock& block)>;

/// Hears everything that one process object plays, as a stereo mixdown.
///
/// Threads: main. When its destructor returns, the callback is gone, and an application that was
/// muted is heard again soon after the main thread is free, unless another tap mutes it by then.
/// Destroying a dead one is harmless.
class ApplicationTap {
public:
    virtual ~ApplicationTap() = default;
    /// False once the service, or what carried the tap there, has gone: it never delivers again.
    [[nodiscard]] virtual bool isAlive() const = 0;
};

/// Which of the steps of opening a tap was refused, and how.
struct TapRefusal {
    enum class Step { tap, device, callback, start };
    Step step{};
    Status status{};

    bool operator==(const TapRefusal&) const = default;
};

/// What is special about an application's sound as it is now.
struct ApplicationSound {
    /// It can be silenced on its own output, as far as can be told before it is tried: false for
    /// programs that choose their outputs by themselves.
    bool canBeMuted{true};
    /// A tap is to silence it, and it is heard on its own output all the same.
    bool isStillHeard{};
    /// Some of it goes to its output undecoded; a tap does not hear that.
    bool isUndecoded{};

    bool operator==(const ApplicationSound&) const = default;
};

/// Reads give none when the object is gone or the service does not answer. Threads: main.
/// Real-time: no.
class ApplicationTaps {
public:
    virtual ~ApplicationTaps() = default;

    // -- applications that have played since they connected --

    /// In the system's order.
    [[nodiscard]] virtual std::optional<std::vector<AudioObjectID>> processObjects() const = 0;
    [[nodiscard]] virtual std::optional<std::int32_t> processPid(AudioObjectID process) const = 0;
    [[nodiscard]] virtual std::optional<bool>
    processIsRunningOutput(AudioObjectID process) const = 0;
    /// The process object of the application that `pid` belongs to; none or 0 when it has none.
    [[nodiscard]] virtual std::optional<AudioObjectID> processForPid(std::int32_t pid) const = 0;

    /// Its changes are told by `AudioDevices::changed`.
    [[nodiscard]] virtual std::optional<ApplicationSound> sound(AudioObjectID process) const = 0;

    // -- hearing them --

    enum class Mute { no, whileTapped };

    /// Hz: what a tap that is opened now delivers.
    [[nodiscard]] virtual std::optional<double> tapRate() const = 0;

    /// Opens a tap that delivers from now on, its mixdown divided by `divisor`. Where the
    /// application cannot be silenced it opens all the same.
    /// @param divisor  at least 1
    /// Errors: the step that was refused; nothing is left open.
    [[nodiscard]] virtual std::expected<std::unique_ptr<ApplicationTap>, TapRefusal>
    open(AudioObjectID process, Mute mute, float divisor, TapCallback callback) = 0;
};

} // namespace velmora
