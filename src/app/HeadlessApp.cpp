#include "app/HeadlessApp.h"

namespace velmora {

HeadlessApp::HeadlessApp(const Platform& platform)
    : platform_(platform), engine_(platform), sources_(platform), presetStore_(platform.defaults),
      settings_(platform), dawMode_(platform), recall_(platform, engine_) {
}

void HeadlessApp::start() {
    presetStore_.restoreActive(recall_);
}

MixerParts HeadlessApp::parts() {
    return {.platform = platform_,
            .engine = engine_,
            .sources = sources_,
            .presets = presetStore_,
            .recall = recall_,
            .settings = settings_};
}

} // namespace velmora
