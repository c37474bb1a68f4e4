// PushToTalk.h: the microphone is closed unless a key is held.
#pragma once

#include "platform/Signal.h"

namespace velmora {

class AudioEngine;

/// Off at every start: it is never kept. Switched off, it opens the microphone, whether the key is
/// held or not.
///
/// Threads: main.
class PushToTalk {
public:
    /// `engine` outlives this object.
    explicit PushToTalk(AudioEngine& engine) : engine_(engine) {}
    PushToTalk(const PushToTalk&) = delete;
    PushToTalk& operator=(const PushToTalk&) = delete;

    [[nodiscard]] bool isOn() const { return isOn_; }
    void setOn(bool on);

    /// The key is pressed, or not any more.
    void hold(bool held);

    /// Told after it was switched on or off. The microphone is the engine's.
    [[nodiscard]] Signal& changed() { return changed_; }

private:
    void follow();

    AudioEngine& engine_;
    bool isOn_ = false;
    bool isHeld_ = false;
    Signal changed_;
};

} // namespace velmora
