#include "operations/ChangeTeller.h"

#include "engine/AudioEngine.h"
#include "platform/DefaultsStore.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <utility>

namespace velmora {

ChangeTeller::ChangeTeller(const MixerParts& parts, Listener listener)
    : parts_(parts), listener_(std::move(listener)), state_(stateOf(parts)),
      engineConnection_(parts.engine.changedBesidesLevels().connect([this] { gather(); })),
      presetsConnection_(parts.presets.changed().connect([this] { gather(); })),
      settingsConnection_(parts.settings.changed().connect([this] { gather(); })),
      storeConnection_(parts.platform.defaults.problemsChanged().connect([this] { gather(); })) {
}

void ChangeTeller::gather() {
    if (!gathering_) {
        gathering_ = parts_.platform.mainQueue.after(gatheringTime, [this] { tell(); });
    }
}

void ChangeTeller::tell() {
    gathering_.reset();
    MixerState now = stateOf(parts_);
    if (now != state_) {
        const MixerState before = std::exchange(state_, std::move(now));
        listener_(before, state_);
    }
}

} // namespace velmora
