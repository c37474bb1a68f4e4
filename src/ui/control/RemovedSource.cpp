#include "ui/control/RemovedSource.h"

#include "engine/AudioEngine.h"

#include <algorithm>

namespace velmora {

RemovedSource removeSource(AudioEngine& engine, const AudioSource& source) {
    RemovedSource removed{.source = source};
    for (std::size_t place = 0; place < engine.sources().size(); ++place) {
        if (engine.sources()[place] == source) {
            removed.places.push_back(place);
        }
    }
    const bool ran = engine.isRunning();
    engine.remove(removed.source); // `source` may live in the list
    removed.rest = engine.sources();
    removed.stoppedMix = ran && !engine.isRunning();
    return removed;
}

void putBack(AudioEngine& engine, const RemovedSource& removed) {
    if (isInMix(engine, removed.source)) {
        return;
    }
    const bool isToStart = removed.stoppedMix && engine.sources() == removed.rest;
    for (const std::size_t place : removed.places) {
        engine.insertSource(removed.source, place);
    }
    if (engine.isRunning()) {
        engine.restart();
    } else if (isToStart) {
        engine.start();
    }
}

bool isInMix(const AudioEngine& engine, const AudioSource& source) {
    return std::ranges::find(engine.sources(), source) != engine.sources().end();
}

} // namespace velmora
