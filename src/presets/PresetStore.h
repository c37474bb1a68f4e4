// PresetStore.h: the user's presets, and which one is active.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/Signal.h"
#include "presets/Preset.h"
#include "presets/SetAsidePresets.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace velmora {

class PresetRecall;

/// What one edit took out of the list, for `PresetStore::bringBack`.
struct DisplacedPresets {
    struct Entry {
        Preset preset;
        std::size_t index{}; ///< in the list before the edit
    };
    std::vector<Entry> entries{}; ///< in the order of the list; empty = the edit took nothing away
    bool wereReplaced{};          ///< by others under their ids, which take their places
    std::optional<Uuid> activeBefore{};
    std::optional<Uuid> activeAfter{};
};

/// Keeps the list under "presets" (bytes of JSON) and the active id under "activePresetID".
///
/// A list that cannot be read counts as empty and is overwritten by the next save. So that nothing
/// of the user's is lost by that, it is set aside first; see `SetAsidePresets`.
///
/// Threads: main. Errors: silent here; the defaults store tells what it could not write.
class PresetStore {
public:
    explicit PresetStore(DefaultsStore& defaults);

    /// In the order of creation.
    [[nodiscard]] const std::vector<Preset>& presets() const { return presets_; }
    /// The preset last saved or applied, if it still exists.
    [[nodiscard]] const std::optional<Uuid>& activeID() const { return activeID_; }
    [[nodiscard]] const Preset* active() const;
    [[nodiscard]] bool didRestore() const { return didRestore_; }

    /// Makes the preset active. One of exactly the same name is replaced in its place and gives
    /// its id; otherwise the preset comes last.
    /// A preset with a number that is not finite stays in the list, but nothing of the list is
    /// written while it is there: what was kept before stays kept.
    DisplacedPresets save(Preset preset);
    DisplacedPresets remove(const Uuid& id);
    /// Undoes an edit, whatever has been edited since. A preset that was replaced returns to its
    /// place; a deleted one too, under a name of its own if another has taken its name meanwhile.
    /// It is active again unless another preset has become so.
    void bringBack(const DisplacedPresets& displaced);
    void removeAll(std::span<const Uuid> ids);
    /// Presets from elsewhere come last, each under an id of its own and a name that is still free;
    /// which one is active stays. Gives their ids.
    std::vector<Uuid> add(std::vector<Preset> presets);

    /// What could not be read.
    [[nodiscard]] const SetAsidePresets& setAside() const { return setAside_; }
    /// Presets among it that can be read come last, under their ids; a name that is taken is kept
    /// apart.
    void bringBackSetAside();
    /// The user knows of it.
    void markSetAsideTold();

    /// To be told by whoever applied a preset.
    void setActive(const Uuid& id);

    /// Once per store: applies the active preset, without launching anything and without a message;
    /// devices that come late join.
    void restoreActive(PresetRecall& recall);

    /// Any published value changed.
    [[nodiscard]] Signal& changed() { return changed_; }

private:
    void load();
    /// False when there is a number that cannot be written.
    bool persist();

    DefaultsStore& defaults_;
    SetAsidePresets setAside_;
    std::vector<Preset> presets_;
    std::optional<Uuid> activeID_;
    bool didRestore_ = false;
    Signal changed_;
};

} // namespace velmora
