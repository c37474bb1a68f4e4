// EngineSettings.h: what the engine keeps across launches.
#pragma once

#include "effects/FXParams.h"
#include "engine/FXParamsStore.h"

#include <map>
#include <optional>
#include <set>
#include <string>

namespace velmora {

class DefaultsStore;

/// Under which a number holds the gain of a source that is muted, for when it is unmuted.
[[nodiscard]] std::string gainBeforeMuteKey(const std::string& id);

/// The persisted half of the engine's state. Every setter writes the store at once.
///
/// Keys: "sourceGains" (map of numbers), "sourceMuteDirect" (map of booleans), "sourceFX" (bytes of
/// a JSON object, source id to effect parameters), "headphoneVolume", "streamVolume" (numbers),
/// "monitoringSelection" (string). A value that is missing or of the wrong form counts as empty,
/// as 1.0 or as none.
///
/// Everything about one source goes by its id.
///
/// Threads: main.
class EngineSettings {
public:
    explicit EngineSettings(DefaultsStore& store);

    /// Linear.
    [[nodiscard]] std::optional<float> gain(const std::string& id) const;
    void setGain(const std::string& id, float gain);

    /// Only settings that are not neutral.
    [[nodiscard]] std::optional<FXParams> fxOf(const std::string& id) const;
    /// A neutral value removes the entry.
    void setFX(const std::string& id, const FXParams& params);

    [[nodiscard]] std::optional<bool> muteDirect(const std::string& id) const;
    void setMuteDirect(const std::string& id, bool muted);

    /// What is kept for `from` is kept for `to` as well, in the place of what was.
    void copy(const std::string& from, const std::string& to);

    /// Of every source that anything is kept for.
    [[nodiscard]] std::set<std::string> ids() const;
    void forget(const std::set<std::string>& ids);

    [[nodiscard]] float headphoneVolume() const { return headphoneVolume_; }
    void setHeadphoneVolume(float volume);
    [[nodiscard]] float streamVolume() const { return streamVolume_; }
    void setStreamVolume(float volume);

    [[nodiscard]] const std::optional<std::string>& monitoringSelection() const {
        return monitoringSelection_;
    }
    void setMonitoringSelection(std::optional<std::string> selection);

private:
    void storeGains();
    void storeFX();

    DefaultsStore& store_;
    float headphoneVolume_;
    float streamVolume_;
    std::optional<std::string> monitoringSelection_;
    std::map<std::string, float> gains_;
    FXParamsStore fx_;
    std::map<std::string, bool> muteDirect_;
};

} // namespace velmora
