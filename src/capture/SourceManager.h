// SourceManager.h: what can be captured and where sound can go, as lists to show.
#pragma once

#include "capture/InputDeviceInfo.h"
#include "engine/AudioSource.h"
#include "platform/Platform.h"
#include "platform/Signal.h"

#include <cstdint>
#include <set>
#include <vector>

namespace velmora {

/// Lists that are filled when `refresh` is called, and only then.
///
/// Threads: main.
class SourceManager {
public:
    explicit SourceManager(const Platform& platform) : platform_(platform) {}

    /// Reads everything anew.
    void refresh();

    /// Told after a refresh that changed a list.
    [[nodiscard]] Signal& changed() { return changed_; }

    /// Applications that may be captured: playing ones first, then by name.
    [[nodiscard]] const std::vector<AudioSource>& runningApps() const { return lists_.runningApps; }
    /// Those of them that are producing sound.
    [[nodiscard]] const std::set<std::int32_t>& playingPIDs() const { return lists_.playingPIDs; }
    [[nodiscard]] const std::vector<AudioSource>& inputDevices() const {
        return lists_.inputDevices;
    }
    [[nodiscard]] const std::vector<InputDeviceInfo>& inputDeviceInfos() const {
        return lists_.inputDeviceInfos;
    }
    [[nodiscard]] const std::vector<AudioSource>& outputDevices() const {
        return lists_.outputDevices;
    }
    [[nodiscard]] const std::vector<InputDeviceInfo>& outputDeviceInfos() const {
        return lists_.outputDeviceInfos;
    }

private:
    struct Lists {
        std::vector<AudioSource> runningApps;
        std::set<std::int32_t> playingPIDs;
        std::vector<AudioSource> inputDevices;
        std::vector<InputDeviceInfo> inputDeviceInfos;
        std::vector<AudioSource> outputDevices;
        std::vector<InputDeviceInfo> outputDeviceInfos;

        bool operator==(const Lists&) const = default;
    };

    Platform platform_;
    Signal changed_;
    Lists lists_;
};

} // namespace velmora
