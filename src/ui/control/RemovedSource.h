// RemovedSource.h: takes a source out of the mix so that it can be put back.
#pragma once

#include "engine/AudioSource.h"

#include <cstddef>
#include <vector>

namespace velmora {

class AudioEngine;

/// A source that was in the mix. Its gain, mute and effects are kept by the engine.
struct RemovedSource {
    AudioSource source;
    std::vector<std::size_t> places{}; ///< in the list before, ascending
    std::vector<AudioSource> rest{};   ///< the list without it
    bool stoppedMix{};                 ///< nothing was left that a mix that was on could play
};

/// Threads: main.
[[nodiscard]] RemovedSource removeSource(AudioEngine& engine, const AudioSource& source);

/// Puts it where it was, as far as the list still reaches, and switches on again what its removal
/// switched off, unless the list has been edited since. Nothing happens when the source is back in
/// the mix already.
/// Threads: main.
void putBack(AudioEngine& engine, const RemovedSource& removed);

[[nodiscard]] bool isInMix(const AudioEngine& engine, const AudioSource& source);

} // namespace velmora
