// TerminalMixer.h: the mixer operated with keys in a terminal.
#pragma once

#include "app/MixerScreen.h"
#include "app/TerminalKeys.h"
#include "app/TerminalMenu.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class AppSettings;
class AudioEngine;
class AudioSource;
class PresetRecall;
class PresetStore;
class SourceManager;
struct Platform;

/// What the keys do and what the screen shows; knows no terminal. Threads: main.
class TerminalMixer {
public:
    struct Parts {
        const Platform& platform;
        AudioEngine& engine;
        SourceManager& sources;
        PresetStore& presets;
        PresetRecall& recall;
        AppSettings& settings;
    };

    explicit TerminalMixer(Parts parts);

    void press(const KeyPress& key);
    [[nodiscard]] MixerView view() const;
    [[nodiscard]] bool wantsToQuit() const { return wantsToQuit_; }

private:
    void pressInMix(const KeyPress& key);
    void pressInMenu(const KeyPress& key);
    void pressInName(const KeyPress& key);

    void moveSelection(int direction);
    void changeGain(int direction);
    void withSelectedSource(const std::function<void(const AudioSource&)>& action);
    void openSourceMenu();
    void openEffectsMenu();
    void openPresetMenu();
    void openMonitoringMenu();
    void savePreset();
    [[nodiscard]] std::vector<MenuItem> sourceItems();
    [[nodiscard]] std::vector<MenuItem> presetItems();
    [[nodiscard]] std::vector<MenuItem> monitoringItems();
    [[nodiscard]] std::vector<StripView> strips() const;
    [[nodiscard]] std::string t(const char* text) const;

    Parts parts_;
    std::size_t selected_ = 0; // index among the strips: the sources, then the two volumes
    std::optional<TerminalMenu> menu_;
    std::optional<std::string> presetName_; // being typed
    bool wantsToQuit_ = false;
};

} // namespace velmora
