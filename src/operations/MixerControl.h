// MixerControl.h: what commands and other programs may ask of the mixer.
#pragma once

#include "engine/AudioSource.h"
#include "operations/MixerParts.h"
#include "operations/NamedChoice.h"
#include "operations/Refusal.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

enum class Switch { off, on, toggle };
enum class Fader { microphone, headphones };

struct OfferedSource {
    AudioSource source;
    std::string name; ///< as it is shown
    bool isPlaying{}; ///< an application that is producing sound now
};

struct MonitorOffer {
    std::string tag;  ///< see `AudioEngine::monitoringSelection`; empty = the default output
    std::string name; ///< in the user's language
    bool isChosen{};
};

/// Every operation checks first and then does the whole of it, as a click in the window would, or
/// changes nothing and says why. A source, a device or a preset is named by a word (see `chosen`).
///
/// Threads: main. Errors: the refusal.
class MixerControl {
public:
    explicit MixerControl(const MixerParts& parts) : parts_(parts) {}

    /// Refused when the mix cannot be started.
    Answer<> switchMix(Switch wanted);
    /// All effects off, or heard again.
    void bypass(Switch wanted);

    /// Adding what is there already changes nothing.
    Answer<> add(std::string_view word);
    Answer<> remove(std::string_view word);

    /// @param db  −60 ... 6, or minus infinity for silence
    Answer<> setGain(std::string_view word, double db);
    Answer<> setGain(Fader fader, double db);
    /// Silence in the mix; switched off, the level from before comes back.
    Answer<> mute(std::string_view word, Switch wanted);
    void mute(Fader fader, Switch wanted);
    /// Silence on the application's own output while it is captured.
    Answer<> silence(std::string_view word, Switch wanted);

    /// The microphone is closed unless the key for it is held. Refused where no key is bound.
    Answer<> pushToTalk(Switch wanted);

    /// All changes or none.
    Answer<> setEffects(std::string_view word,
                        std::span<const std::pair<std::string, std::string>> changes);
    Answer<> resetEffects(std::string_view word);

    Answer<> setMonitor(std::string_view word);

    Answer<> applyPreset(std::string_view word);
    /// The one after the active preset, the first one after the last.
    Answer<> applyNextPreset();
    /// Spaces and tabs around the name go.
    Answer<> savePreset(std::string_view name);
    Answer<> removePreset(std::string_view word);

    /// All presets, or the one that the word names, into a file that `importPresets` takes.
    Answer<> exportPresets(const std::string& file, const std::optional<std::string>& word);
    /// The file's presets come last; names that are taken are kept apart. All of them or none.
    Answer<> importPresets(const std::string& file);

    // -- what the words may name, read anew --

    [[nodiscard]] Answer<AudioSource> source(std::string_view word) const;
    /// "microphone" or "headphones".
    [[nodiscard]] Answer<Fader> fader(std::string_view word) const;
    [[nodiscard]] std::vector<OfferedSource> available();
    /// Empty without a device of that kind but for the default output.
    [[nodiscard]] std::vector<MonitorOffer> monitors();
    /// Of "sources", "available", "devices" or "presets": a word for each that means it alone.
    [[nodiscard]] Answer<std::vector<std::string>> names(std::string_view list);

private:
    [[nodiscard]] Refusal
    refusal(std::string_view text, std::string_view name = {}, std::string_view command = {}) const;
    [[nodiscard]] Answer<std::size_t> find(std::span<const NamedChoice> choices,
                                           std::string_view word,
                                           std::string_view command) const;
    [[nodiscard]] std::vector<NamedChoice> sourceChoices() const;
    [[nodiscard]] std::vector<NamedChoice> presetChoices() const;
    [[nodiscard]] Answer<std::size_t> preset(std::string_view word) const;
    void apply(std::size_t preset);
    [[nodiscard]] Answer<float> gain(double db) const;

    MixerParts parts_;
};

} // namespace velmora
