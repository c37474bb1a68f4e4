#include "ui/control/PresetMenu.h"

#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

namespace velmora {

std::vector<GumMenuItem> presetMenuItems(const PresetStore& presets,
                                         const AppSettings& settings,
                                         const PresetMenuActions& actions) {
    std::vector<GumMenuItem> items{
        {.title = QString::fromStdString(settings.t("Enregistrer le setup actuel…")),
         .action = actions.save}};
    for (const Preset& preset : presets.presets()) {
        items.push_back({.title = QString::fromStdString(preset.name),
                         .checked = presets.activeID() == preset.id,
                         .onDelete = [remove = actions.remove, id = preset.id] { remove(id); },
                         .action = [apply = actions.apply, preset] { apply(preset); }});
    }
    return items;
}

} // namespace velmora
