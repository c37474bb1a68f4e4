// LevelView.h: the running mix in a terminal, or as one line a second where there is none.
#pragma once

#include "Terminal.h"

namespace velmora {
class AudioEngine;
}

namespace velmora::demo {

/// Threads: main.
class LevelView {
public:
    explicit LevelView(AudioEngine& engine) : engine_(engine) {}

    /// Call about 25 times a second.
    /// @param secondsLeft  until the demonstration ends
    void show(double secondsLeft);

private:
    AudioEngine& engine_;
    Terminal terminal_;
    int lastSecond_ = -1;
};

} // namespace velmora::demo
