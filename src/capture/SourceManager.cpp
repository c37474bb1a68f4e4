#include "capture/SourceManager.h"

#include "capture/DeviceQueries.h"

#include <utility>

namespace velmora {

void SourceManager::refresh() {
    const AudioDevices& devices = platform_.devices;
    auto [apps, playing] = listAudioApps(platform_.taps, platform_.applications);
    Lists fresh{.runningApps = std::move(apps),
                .playingPIDs = std::move(playing),
                .inputDevices = listInputDevices(devices),
                .inputDeviceInfos = listInputDeviceInfos(devices),
                .outputDevices = listOutputDevices(devices),
                .outputDeviceInfos = listOutputDeviceInfos(devices)};
    if (fresh == lists_) {
        return;
    }
    lists_ = std::move(fresh);
    changed_.emit();
}

} // namespace velmora
