// EngineSettings.h: what the engine keeps across launches.
#pragma once

#include "effects/FXParams.h"
#include "engine/FXParamsStore.h"

#include <map>
#include <optional>
#include <string>

namespace velmora {

class DefaultsStore;

/// The persisted half of the engine's state. Every setter writes the store at once.
///
/// Keys: "sourceGains" (map of numbers), "sourceMuteDirect" (map of booleans), "sourceFX" (bytes of
/// a JSON object, source id to effect parameters), "headphoneVolume", "streamVolume" (numbers),
/// "monitoringSelection" (string). A value that is missing or of the wrong form counts as empty,
/// as 1.0 or as none.
///
/// Threads: main.
class EngineSettings {
public:
    explicit EngineSettings(DefaultsStore& store);

    /// By source id, linear.
    [[nodiscard]] const std::map<std::string, float>& gains() const { return gains_; }
    void setGain(const std::string& id, float gain);

    /// By source id; only settings that are not neutral.
    [[nodiscard]] const std::map<std::string, FXParams>& fx() const { return fx_.params(); }
    /// A neutral value removes the entry.
    void setFX(const std::string& id, const FXParams& params);

    /// By source id.
    [[nodiscard]] const std::map<std::string, bool>& muteDirect() const { return muteDirect_; }
    void setMuteDirect(const std::string& id, bool muted);

    [[nodiscard]] float headphoneVolume() const { return headphoneVolume_; }
    void setHeadphoneVolume(float volume);
    [[nodiscard]] float streamVolume() const { return streamVolume_; }
    void setStreamVolume(float volume);

    [[nodiscard]] const std::optional<std::string>& monitoringSelection() const {
        return monitoringSelection_;
    }
    void setMonitoringSelection(std::optional<std::string> selection);

private:
    DefaultsStore& store_;
    float headphoneVolume_;
    float streamVolume_;
    std::optional<std::string> monitoringSelection_;
    std::map<std::string, float> gains_;
    FXParamsStore fx_;
    std::map<std::string, bool> muteDirect_;
};

} // namespace velmora
