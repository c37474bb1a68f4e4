#include "operations/Mixer.h"

namespace velmora {

Mixer::Mixer(const Platform& platform)
    : platform_(platform), engine_(platform), sources_(platform), presetStore_(platform.defaults),
      settings_(platform), dawMode_(platform), recall_(platform, engine_) {
}

void Mixer::start() {
    presetStore_.restoreActive(recall_);
}

MixerParts Mixer::parts() {
    return {.platform = platform_,
            .engine = engine_,
            .sources = sources_,
            .presets = presetStore_,
            .recall = recall_,
            .settings = settings_,
            .talk = talk_};
}

} // namespace velmora
