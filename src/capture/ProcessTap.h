// ProcessTap.h: captures what one running application plays.
#pragma once

#include "capture/CaptureChain.h"
#include "platform/AudioHardware.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace velmora {

/// A tap on the application's audio process, read through a private device of its own.
///
/// Threads: main, but for the callback, which runs on the device's own real-time thread.
class ProcessTap {
public:
    /// Receives the peak of every block. Threads: capture thread; must not allocate or block.
    using OnLevel = std::function<void(float peak)>;

    ProcessTap(AudioHardware& hardware, CaptureChain chain, bool muteDirect, OnLevel onLevel);
    ~ProcessTap();
    ProcessTap(const ProcessTap&) = delete;
    ProcessTap& operator=(const ProcessTap&) = delete;

    /// Begins anew when it is running already.
    /// Errors: throws VelmoraError (tap). What was made before the failure is released by `stop`.
    void start(std::int32_t pid);

    /// Releases whatever exists; may be called at any time. When it returns, the callback is gone,
    /// and a muted application is heard again.
    void stop() noexcept;

    /// Of the default output device, at least 2, and 2 when it cannot be told.
    [[nodiscard]] static std::uint32_t defaultOutputChannelCount(const AudioHardware& hardware);

private:
    void createTap(AudioObjectID process, const std::string& uuid);
    void createAggregate(const std::string& tapUuid);
    void handOverRate();
    void startCallback(float compensation);
    void capture(std::span<IOBuffer> buffers, float compensation) const noexcept;

    AudioHardware& hardware_;
    AudioObjectID tapID_ = 0;
    AudioObjectID aggregateID_ = 0;
    std::optional<IOProcID> ioProcID_;
    const CaptureChain chain_;
    const bool muteDirect_;
    const OnLevel onLevel_;
};

} // namespace velmora
