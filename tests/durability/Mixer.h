// Mixer.h: the program as a user runs it, on a simulated machine that plays and a given store.
#pragma once

#include "engine/AudioEngine.h"
#include "platform/DefaultsStore.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/Preset.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmora {

/// A machine on which two applications and an interface play; every launch finds it the same, down
/// to the process and device ids.
class Studio {
public:
    static constexpr std::int64_t blockFrames = 128;

    Studio();

    [[nodiscard]] Platform with(DefaultsStore& defaults);
    [[nodiscard]] const std::vector<AudioSource>& sources() const { return sources_; }

    /// Turns the clock by one block and forgets what was heard before it.
    void playBlock();
    /// What every channel of the virtual microphone and of the speakers plays in one block, one
    /// channel after the other.
    [[nodiscard]] std::vector<float> nextBlock();

private:
    SimulatedPlatform machine_;
    AudioObjectID speakers_ = machine_.addSpeakers();
    AudioObjectID mic_ = machine_.addVirtualMic();
    std::vector<AudioSource> sources_;
};

/// Everything that a launch takes over from the one before.
struct KeptSettings {
    std::map<std::string, float> gains{}; ///< by source id, as the next two
    std::map<std::string, FXParams> fx{};
    std::set<std::string> muted{};
    float headphoneVolume = 1;
    float streamVolume = 1;
    std::optional<std::string> monitoring{};
    std::vector<Preset> presets{};
    std::optional<Uuid> activeID{};

    bool operator==(const KeptSettings&) const = default;
};

/// One launch. Has loaded what was kept, and does not play yet.
struct Mixer {
    Mixer(Studio& machine, DefaultsStore& defaults);

    [[nodiscard]] KeptSettings kept() const;

    Studio& studio;
    Platform platform;
    AppSettings settings{platform};
    AudioEngine engine{platform};
    PresetStore presets{platform.defaults};
    PresetRecall recall{platform, engine};
};

} // namespace velmora
