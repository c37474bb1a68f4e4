// SourceCondition.h: what has become of a source in the list.
#pragma once

#include "engine/AudioSource.h"
#include "platform/Applications.h"
#include "platform/Platform.h"

#include <optional>

namespace velmora {

class AudioEngine;

enum class SourceCondition {
    fine,    ///< captured, or the mix is off
    awaited, ///< its application runs and has not played since it connected
    failed,  ///< it is there, and could not be captured
    gone,    ///< its application has ended, or its device is not there
};

/// While the audio service is away every source is fine: what they lack is told as a whole.
/// Threads: main.
[[nodiscard]] SourceCondition
conditionOf(const Platform& platform, const AudioEngine& engine, const AudioSource& source);

/// A running instance of the same application, that can take the place of one that has ended; it
/// is not in the mix already, and rather one that has played. An application that the desktop does
/// not know is known by its name. Threads: main.
[[nodiscard]] std::optional<AudioSource>
successorOf(const Platform& platform, const AudioEngine& engine, const AudioSource& source);

/// What can be opened to get back a source whose application has ended: none of it runs.
/// Threads: main.
[[nodiscard]] std::optional<InstalledApplication> closedApplication(const Platform& platform,
                                                                    const AudioSource& source);

} // namespace velmora
