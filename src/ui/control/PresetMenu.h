// PresetMenu.h: the kept setups, as a menu.
#pragma once

#include "presets/Preset.h"
#include "ui/kit/menu/GumMenuItem.h"

#include <functional>
#include <vector>

namespace velmora {

class AppSettings;
class PresetStore;

struct PresetMenuActions {
    std::function<void()> save; ///< keep the present setup under a name
    std::function<void(const Preset&)> apply;
    std::function<void(const Uuid&)> remove;
};

/// Threads: main.
[[nodiscard]] std::vector<GumMenuItem> presetMenuItems(const PresetStore& presets,
                                                       const AppSettings& settings,
                                                       const PresetMenuActions& actions);

} // namespace velmora
