// ProcessTap.h: captures what one running application plays.
#pragma once

#include "capture/CaptureBoxes.h"
#include "platform/ApplicationTaps.h"
#include "platform/Platform.h"

#include <cstdint>
#include <memory>

namespace velmora {

/// A tap on the application's process object, with gain and effects.
///
/// Threads: main, but for the callback, which runs on the tap's own real-time thread.
class ProcessTap {
public:
    ProcessTap(const Platform& platform, CaptureBoxes boxes, bool muteDirect);
    ~ProcessTap();
    ProcessTap(const ProcessTap&) = delete;
    ProcessTap& operator=(const ProcessTap&) = delete;

    /// Begins anew when it is running already.
    /// Errors: throws VelmoraError (tap); nothing is left open.
    void start(std::int32_t pid);

    /// May be called at any time. When it returns, the callback is gone, and a muted application is
    /// heard again.
    void stop() noexcept;

    /// False while it is stopped, and once its tap has died.
    [[nodiscard]] bool isAlive() const { return tap_ && tap_->isAlive(); }

    /// Of the default output device, at least 2, and 2 when it cannot be told.
    [[nodiscard]] static std::uint32_t defaultOutputChannelCount(const AudioDevices& devices);

private:
    void handOverRate();
    void capture(const TapBlock& block, float compensation) const noexcept;

    Platform platform_;
    const CaptureBoxes boxes_;
    const bool muteDirect_;
    std::unique_ptr<ApplicationTap> tap_; // last: its callback uses the others
};

} // namespace velmora
