// SourceCapture.h: the running capture of one source.
#pragma once

#include "capture/CaptureBoxes.h"
#include "capture/InputReceiver.h"
#include "engine/AudioSource.h"
#include "platform/AudioDevices.h"
#include "platform/AudioUnits.h"
#include "platform/Platform.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace velmora {

class ProcessTap;

/// Which channels of an input device a source asks for.
struct InputRange {
    AudioObjectID device{};
    std::int64_t first{1}; ///< 1-based
    std::int64_t count{2};
};

/// Turns an application's or an input device's sound into stereo blocks with gain and effects, and
/// writes them to both rings.
///
/// Threads: main; the boxes are what the capture thread shares.
class SourceCapture {
public:
    SourceCapture(const Platform& platform,
                  AudioSource source,
                  CaptureBoxes boxes,
                  bool muteDirect);
    ~SourceCapture(); ///< stops
    SourceCapture(const SourceCapture&) = delete;
    SourceCapture& operator=(const SourceCapture&) = delete;

    /// Begins anew when it is running already.
    /// Errors: throws VelmoraError; nothing is left running.
    void start();
    /// When it returns, the capture thread is gone and both rings are empty.
    void stop();

    /// False while it is stopped, and once what it hears through has died; it is to be started
    /// again then.
    [[nodiscard]] bool isAlive() const;

    /// False when it hears other channels than a start would choose now: a device that has just
    /// come can be opened before all of its channels are there.
    [[nodiscard]] bool isUpToDate() const;

    [[nodiscard]] const AudioSource& source() const { return source_; }
    [[nodiscard]] const CaptureBoxes& boxes() const { return boxes_; }

    /// Whether an application is silenced on its own output; taken up by the next `start`.
    void setMuteDirect(bool muted) { muteDirect_ = muted; }

private:
    void startApp(std::int32_t pid);
    /// None for an application.
    [[nodiscard]] std::optional<InputRange> inputRange() const;
    void startPhysicalInput(const InputRange& range);

    Platform platform_;
    AudioSource source_;
    CaptureBoxes boxes_;
    bool muteDirect_;
    std::unique_ptr<ProcessTap> tap_;
    std::unique_ptr<InputUnit> input_;
    ChannelPair heard_{}; ///< of the input
};

/// The two channels to read of a device with `available` channels: `first` (1-based) and its
/// neighbour, or `first` twice when only one is wanted or there.
/// Errors: throws VelmoraError when the device has no channel `first`.
[[nodiscard]] ChannelPair
channelPair(std::int64_t first, std::int64_t count, std::int64_t available);

} // namespace velmora
