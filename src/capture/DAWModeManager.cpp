#include "capture/DAWModeManager.h"

#include "capture/DeviceQueries.h"
#include "platform/DefaultsStore.h"
#include "platform/PublicSinks.h"

#include <string_view>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view enabledKey = "dawMode.enabled";
constexpr std::string_view interfaceKey = "dawMode.interfaceUID";

constexpr const char* sinkName = "Velmora DAW";

bool isPhysical(const AudioDevices& devices, AudioObjectID device) {
    return devices.transport(device).value_or(Transport::other) == Transport::other;
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
    deviceConnection_ = platform.devices.changed().connect([this] { onDeviceChange(); });
}

void DAWModeManager::onDeviceChange() {
    if (!enabled_) {
        return;
    }
    if (!membersAreThere()) {
        isRefused_ = false;
    } else if (!isRefused_ && !findDevice(platform_.devices, dawSinkUID)) {
        build();
        changed_.emit();
    }
}

std::optional<std::string> DAWModeManager::microphoneUID() const {
    return findVirtualMicDevice(platform_.devices).and_then([this](AudioObjectID microphone) {
        return deviceUID(platform_.devices, microphone);
    });
}

bool DAWModeManager::membersAreThere() const {
    // A device is listed before its ports are, and without them nothing can play into it.
    const auto canBePlayedTo = [this](AudioObjectID device) {
        return channelCount(platform_.devices, device, Scope::output) > 0;
    };
    const auto chosen = findDevice(platform_.devices, interfaceUID_.value_or(""));
    const auto microphone = findVirtualMicDevice(platform_.devices);
    return chosen && microphone && canBePlayedTo(*chosen) && canBePlayedTo(*microphone);
}

void DAWModeManager::setEnabled(bool enabled) {
    enabled_ = enabled;
    persist();
    if (!enabled_) {
        remove();
        problem_.reset();
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
    const AudioDevices& devices = platform_.devices;
    const auto output = devices.defaultOutputDevice();
    if (!output || !isPhysical(devices, *output)) {
        return;
    }
    if (auto uid = deviceUID(devices, *output)) {
        interfaceUID_ = std::move(uid);
        persist();
    }
}

void DAWModeManager::build() {
    remove();
    if (interfaceUID_.value_or("").empty()) {
        return;
    }
    const auto microphone = microphoneUID();
    if (!microphone) {
        problem_ = {.kind = Problem::Kind::noDriver};
        return;
    }
    const auto made = platform_.sinks.create({.name = sinkName,
                                              .uid = std::string(dawSinkUID),
                                              .masterUID = *interfaceUID_,
                                              .followerUID = *microphone});
    isRefused_ = !made && membersAreThere();
    if (!made) {
        problem_ = {.kind = Problem::Kind::publicSinkRefused, .status = made.error()};
        return;
    }
    aggregateID_ = *made;
    problem_.reset();
}

void DAWModeManager::remove() {
    if (aggregateID_ == 0) {
        aggregateID_ = findDevice(platform_.devices, dawSinkUID).value_or(0);
    }
    if (aggregateID_ != 0) {
        // Whether it was still there makes no difference to what follows.
        static_cast<void>(platform_.sinks.remove(aggregateID_));
        aggregateID_ = 0;
    }
}

} // namespace velmora
