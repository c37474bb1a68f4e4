#include "operations/DeviceOptions.h"

#include "capture/DeviceQueries.h"
#include "capture/SourceManager.h"
#include "settings/AppSettings.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr std::int64_t mostChannels = 32;

struct Output {
    std::string uid;
    std::string name;
    std::int64_t channels{};
};

std::vector<Output> physicalOutputs(const AudioDevices& devices, const SourceManager& sources) {
    std::vector<Output> outputs;
    for (const InputDeviceInfo& device : sources.outputDeviceInfos()) {
        const auto uid = deviceUID(devices, device.deviceID);
        const Transport transport = devices.transport(device.deviceID).value_or(Transport::other);
        if (uid && transport == Transport::other) {
            outputs.push_back({*uid, device.name, device.channels});
        }
    }
    return outputs;
}

} // namespace

DeviceOptions monitoringOptions(const AudioDevices& devices,
                                const SourceManager& sources,
                                const AppSettings& settings) {
    DeviceOptions options{{"", settings.t("Sortie par défaut")}};
    for (const Output& output : physicalOutputs(devices, sources)) {
        const std::int64_t channels = std::min(output.channels, mostChannels);
        if (channels < 3) {
            options.push_back({output.uid + "#1", output.name});
            continue;
        }
        for (std::int64_t first = 1; first < channels; first += 2) {
            const std::string pair = std::to_string(first) + "-" + std::to_string(first + 1);
            options.push_back({output.uid + "#" + std::to_string(first),
                               output.name + " — " + settings.t("Sorties") + " " + pair});
        }
    }
    return options;
}

DeviceOptions dawInterfaceOptions(const AudioDevices& devices,
                                  const SourceManager& sources,
                                  const AppSettings& settings) {
    DeviceOptions options{{"", settings.t("Choisir…")}};
    for (const Output& output : physicalOutputs(devices, sources)) {
        options.push_back({output.uid, output.name});
    }
    return options;
}

} // namespace velmora
