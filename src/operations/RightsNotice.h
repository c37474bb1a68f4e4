// RightsNotice.h: says once that the machine gives the mix no priority.
#pragma once

#include "platform/Signal.h"

namespace velmora {

class AudioEngine;
class DefaultsStore;

/// Tells it through the engine, with what the user can do, the first time that it is so in any run.
/// The mix works without; who leaves it so does not want to read it at every start.
///
/// Threads: main.
class RightsNotice {
public:
    /// Both outlive this object.
    RightsNotice(AudioEngine& engine, DefaultsStore& defaults);

private:
    void look();

    AudioEngine& engine_;
    DefaultsStore& defaults_;
    Signal::Connection connection_;
};

} // namespace velmora
