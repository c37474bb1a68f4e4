// LargeDesktop.h: a machine with many open applications and input devices.
#pragma once

#include "platform/desktop/DesktopApplications.h"
#include "platform/simulated/SimulatedPlatform.h"

#include "platform/desktop/FakeDesktop.h" // of the tests

#include <cstdint>
#include <memory>
#include <string>

namespace velmora {

/// Simulated sound, and the real reading of desktop entries and processes from folders that look
/// like those of a desktop.
class LargeDesktop {
public:
    static constexpr std::int32_t applicationCount = 100;
    static constexpr int deviceCount = 20;
    static constexpr std::uint32_t channelsOfDevice = 8;

    LargeDesktop() {
        for (std::int32_t number = 0; number < applicationCount; ++number) {
            addApplication(number);
        }
        for (int number = 0; number < deviceCount; ++number) {
            const std::string name = "Device " + std::to_string(number);
            machine_.sound.addDevice(
                {.uid = name,
                 .name = name,
                 .inputs = {channelsOfDevice},
                 .transport = number % 2 == 0 ? Transport::other : Transport::virtualDevice});
        }
        machine_.addSpeakers();
        machine_.addVirtualMic();
        forgetApplications();
    }

    /// As when the program has just started: nothing of the applications has been read.
    void forgetApplications() {
        applications_ = std::make_unique<DesktopApplications>(
            machine_.mainQueue,
            DesktopApplications::Options{.procRoot = files_.proc(),
                                         .dataFolders = {files_.data()}});
    }

    [[nodiscard]] Platform platform() {
        const Platform machine = machine_.platform();
        return {.devices = machine.devices,
                .taps = machine.taps,
                .sinks = machine.sinks,
                .units = machine.units,
                .applications = *applications_,
                .defaults = machine.defaults,
                .mainQueue = machine.mainQueue,
                .appearance = machine.appearance,
                .loginItem = machine.loginItem,
                .shortcuts = machine.shortcuts,
                .notices = machine.notices};
    }

private:
    void addApplication(std::int32_t number) {
        const std::string name = "application" + std::to_string(number);
        const std::int32_t pid = 40'000 + number;
        files_.addProgram(name);
        files_.addEntry("org.example." + name,
                        "Name=Application " + std::to_string(number) + "\nIcon=" + name +
                            "\nExec=" + files_.program(name).string() + "\n");
        files_.addProcess({.pid = pid, .name = name, .executable = files_.program(name).string()});
        machine_.sound.addProcess(pid);
    }

    FakeDesktop files_;
    SimulatedPlatform machine_;
    std::unique_ptr<DesktopApplications> applications_;
};

} // namespace velmora
