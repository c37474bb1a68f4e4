// Change.h: what a user changes, drawn at random, done to a mixer, and predicted.
#pragma once

#include "durability/Mixer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace velmora {

// Sources are counted as in Studio::sources.

struct SetGain {
    std::size_t source{};
    float gain{};
};
struct SetFX {
    std::size_t source{};
    FXParams fx;
};
struct SetDirectMuted {
    std::size_t source{};
    bool muted{};
};
struct SetHeadphoneVolume {
    float volume{};
};
struct SetStreamVolume {
    float volume{};
};
struct SetMonitoring {
    std::optional<std::string> selection;
};
/// Puts these sources into the mix and keeps the setup under this name.
struct SavePreset {
    Uuid id;
    std::string name;
    std::vector<std::size_t> sources;
};
struct RemovePreset {
    std::string name;
};
struct ApplyPreset {
    std::string name;
};
/// A start of the program: everything plays, then the active preset is restored.
struct Launch {};

using Change = std::variant<SetGain,
                            SetFX,
                            SetDirectMuted,
                            SetHeadphoneVolume,
                            SetStreamVolume,
                            SetMonitoring,
                            SavePreset,
                            RemovePreset,
                            ApplyPreset,
                            Launch>;

/// Any but a launch. Depends on the number alone, so that two processes agree on every change.
[[nodiscard]] Change randomChange(std::uint64_t number);

void perform(const Change& change, Mixer& mixer);

/// Does to `kept` what `change` is to do to the store, calling `written` after every write that
/// may reach the disk on its own.
void predict(
    const Change& change,
    const std::vector<AudioSource>& sources,
    KeptSettings& kept,
    const std::function<void()>& written = [] {});

} // namespace velmora
