#include "capture/SourceManager.h"

#include "capture/DeviceQueries.h"

#include <utility>

namespace velmora {

void SourceManager::refresh() {
    const AudioHardware& hardware = platform_.hardware;
    auto [apps, playing] = listAudioApps(hardware, platform_.applications);
    Lists fresh{.runningApps = std::move(apps),
                .playingPIDs = std::move(playing),
                .inputDevices = listInputDevices(hardware),
                .inputDeviceInfos = listInputDeviceInfos(hardware),
                .outputDevices = listOutputDevices(hardware),
                .outputDeviceInfos = listOutputDeviceInfos(hardware)};
    if (fresh == lists_) {
        return;
    }
    lists_ = std::move(fresh);
    changed_.emit();
}

} // namespace velmora
