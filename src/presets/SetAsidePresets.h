// SetAsidePresets.h: kept lists that could not be read, until they can.
#pragma once

#include "platform/DefaultsStore.h"
#include "presets/Preset.h"

#include <string>
#include <vector>

namespace velmora {

/// Copies of what lay under "presets" and could not be read, under "presets.unreadable", then
/// "presets.unreadable.2", ".3" and so on. One preset that cannot be read makes a whole list
/// unreadable: here each counts for itself, so the others can be had again at once, and the rest as
/// soon as a version of the program knows how to read it. The same for lists that a store kept
/// beside one that the program had not read, under "presets.unsaved", ".2" and so on.
///
/// Threads: main. Errors: silent; the defaults store tells what it could not write.
class SetAsidePresets {
public:
    /// Reads what earlier launches set aside.
    explicit SetAsidePresets(DefaultsStore& defaults);

    /// Copies a list that cannot be read, unless the same lies here already.
    void add(const DefaultsValue& list);

    /// Those that can be read, as they were kept.
    [[nodiscard]] const std::vector<Preset>& readable() const { return readable_; }
    /// Something lies here that still cannot be read.
    [[nodiscard]] bool hasUnreadable() const { return !rests_.empty(); }
    /// The readable ones are in the user's list now: only the rest stays.
    void forgetReadable();

    /// There is something here of which the user has not been told.
    [[nodiscard]] bool isNews() const;
    /// He has; kept under "presets.unreadable.told", so that no later launch tells it again.
    void markTold();

private:
    void read();
    /// What is here, in short: it differs as soon as more is set aside or more can be read.
    [[nodiscard]] std::string summary() const;

    DefaultsStore& defaults_;
    std::vector<std::string> keys_;    ///< of the copies, oldest first in each family of keys
    std::vector<DefaultsValue> rests_; ///< of the copies, what cannot be read, where there is any
    std::vector<Preset> readable_;
};

} // namespace velmora
