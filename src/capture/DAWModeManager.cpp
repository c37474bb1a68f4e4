#include "capture/DAWModeManager.h"

#include "capture/DeviceQueries.h"
#include "platform/DefaultsStore.h"

#include <string_view>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view enabledKey = "dawMode.enabled";
constexpr std::string_view interfaceKey = "dawMode.interfaceUID";

constexpr const char* aggregateName = "Velmora DAW";
constexpr const char* aggregateUID = "app.velmora.daw.aggregate";

AggregateDescription describe(const std::string& interfaceUID, const std::string& microphoneUID) {
    return {.name = aggregateName,
            .uid = aggregateUID,
            .isPrivate = false,
            .tapAutoStart = false,
            .taps = {},
            .stacked = true,
            .masterUID = interfaceUID,
            .subDevices = {{.uid = interfaceUID, .driftCompensation = false},
                           {.uid = microphoneUID, .driftCompensation = true}}};
}

bool isPhysical(const AudioHardware& hardware, AudioObjectID device) {
    return hardware.transport(device).value_or(Transport::other) == Transport::other;
}

} // namespace

DAWModeManager::DAWModeManager(const Platform& platform)
    : platform_(platform), enabled_(platform.defaults.read<bool>(enabledKey).value_or(false)),
      interfaceUID_(platform.defaults.read<std::string>(interfaceKey)) {
    persist();
    if (enabled_) {
        build();
        build();
    }
}

void DAWModeManager::setEnabled(bool enabled) {
    enabled_ = enabled;
    persist();
    if (!enabled_) {
        remove();
    } else {
        if (!interfaceUID_) {
            chooseDefaultOutput();
        }
        build();
    }
    changed_.emit();
}

void DAWModeManager::setInterfaceUID(std::optional<std::string> uid) {
    interfaceUID_ = std::move(uid);
    persist();
    if (enabled_) {
        build();
    }
    changed_.emit();
}

void DAWModeManager::persist() {
    platform_.defaults.set(enabledKey, enabled_);
    if (interfaceUID_) {
        platform_.defaults.set(interfaceKey, *interfaceUID_);
    } else {
        platform_.defaults.remove(interfaceKey);
    }
}

void DAWModeManager::create() {
    build();
    changed_.emit();
}

void DAWModeManager::chooseDefaultOutput() {
    const AudioHardware& hardware = platform_.hardware;
    const auto output = hardware.defaultOutputDevice();
    if (!output || !isPhysical(hardware, *output)) {
        return;
    }
    if (auto uid = deviceUID(hardware, *output)) {
        interfaceUID_ = std::move(uid);
        persist();
    }
}

void DAWModeManager::build() {
    remove();
    if (interfaceUID_.value_or("").empty()) {
        return;
    }
    const auto microphoneUID =
        findVirtualMicDevice(platform_.hardware).and_then([this](AudioObjectID microphone) {
            return deviceUID(platform_.hardware, microphone);
        });
    if (!microphoneUID) {
        lastError_ = "Driver Velmora introuvable";
        return;
    }
    const auto made = platform_.hardware.createAggregate(describe(*interfaceUID_, *microphoneUID));
    if (!made) {
        lastError_ = "Création du device DAW refusée (err " + std::to_string(made.error()) + ")";
        return;
    }
    aggregateID_ = *made;
    lastError_.reset();
}

void DAWModeManager::remove() {
    if (aggregateID_ == 0) {
        aggregateID_ = findDevice(platform_.hardware, aggregateUID).value_or(0);
    }
    if (aggregateID_ != 0) {
        // Whether it was still there makes no difference to what follows.
        static_cast<void>(platform_.hardware.destroyAggregate(aggregateID_));
        aggregateID_ = 0;
    }
}

} // namespace velmora
