// Audience.h: who hears the mix in the virtual microphone, and how much of it.
#pragma once

#include "engine/AudioSource.h"
#include "platform/AudioDevices.h"
#include "platform/Platform.h"
#include "platform/Signal.h"

#include <optional>
#include <vector>

namespace velmora {

/// Reads the audio service after each of its changes. What cannot be read counts as in order.
///
/// Threads: main.
class Audience {
public:
    explicit Audience(const Platform& platform);

    /// Told after any value below has changed, but not by `rest`.
    [[nodiscard]] Signal& changed() { return changed_; }

    /// To be called 30 times a second while a mix runs.
    void tick(bool isSounding);
    /// No mix runs any more.
    void rest();

    /// Some program records the microphone; true where that cannot be known.
    [[nodiscard]] bool hasListeners() const { return !recorders_ || recorders_->areAny; }
    /// A mix sounds, and no program has recorded the microphone for a while. A pause of a few
    /// seconds in what it plays makes no difference.
    [[nodiscard]] bool isMissing() const { return isMissing_; }
    /// The application of this source records the microphone.
    [[nodiscard]] bool includes(const AudioSource& source) const;

    /// What somebody made of the microphone in another mixer; none while it passes on everything.
    [[nodiscard]] std::optional<DeviceVolume> reduction() const;
    /// Takes that back.
    void restoreVolume();

private:
    void followService();
    [[nodiscard]] std::vector<AudioObjectID> processes() const;

    Platform platform_;
    Signal changed_;
    std::optional<AudioObjectID> microphone_;
    std::optional<Recorders> recorders_;
    std::optional<DeviceVolume> volume_;
    int silentTicks_;      ///< since the mix sounded, up to the longest pause
    int unheardTicks_ = 0; ///< that it sounded for nobody, up to what is waited for
    bool isMissing_ = false;
    Signal::Connection connection_;
};

} // namespace velmora
