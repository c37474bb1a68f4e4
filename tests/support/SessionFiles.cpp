#include "support/SessionFiles.h"

#include "support/SessionDevices.h"

#include <fstream>
#include <stdexcept>
#include <string_view>

namespace velmora::support {
namespace {

namespace fs = std::filesystem;

/// A bus that activates no services: nothing of the desktop may join the session.
std::string busConfiguration(const fs::path& folder) {
    return R"(<busconfig>
  <type>session</type>
  <listen>unix:path=)" +
           folder.string() + R"(/run/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

/// Outranks every device as the clock of those in its group, and of what they are linked to.
/// @param priority  among several clocks that meet
std::string patientClock(const std::string& group, int ppm, int priority) {
    return "    { factory = spa-node-factory args = { factory.name = velmora.patient-clock "
           "library.name = libvelmora-patient-clock node.name = " +
           clockOf(group) + " node.group = " + group + " clock.ppm = " + std::to_string(ppm) +
           " priority.driver = " + std::to_string(100'000 + priority) + " } }\n";
}

/// The devices, and blocks as short as programs ask for also in a virtual machine.
std::string serverConfiguration(const PrivateSession::Setup& setup) {
    std::string text =
        "context.properties = { vm.overrides = { default.clock.min-quantum = 16 } }\n"
        "context.objects = [\n";
    // Not for devices that come later: PipeWire 0.3.65 starts a new node of a running group before
    // it has a format, and crashes. Where all come later, the clock is in the group of the mixer's
    // nodes, and drives the devices that these are linked to.
    const std::string shared = setup.devices.empty() ? "velmora" : "devices";
    for (const auto& device : setup.devices) {
        const std::string& group = device.ownClockPpm ? device.name : shared;
        const std::string membership = setup.patientClock ? " node.group = " + group : "";
        text += "    { factory = adapter args = " + adapterArguments(device, membership) + " }\n";
        if (device.ownClockPpm) {
            text += patientClock(group, *device.ownClockPpm, device.priority);
        }
    }
    if (setup.patientClock) {
        text += patientClock(shared, 0, 0);
    }
    return text + "]\n";
}

/// No sound cards, cameras or headsets of the machine, no portal. For WirePlumber 0.4, and as
/// `managerProfile` for 0.5; each leaves the other's files alone.
constexpr std::string_view managerConfiguration = R"(alsa_monitor.enabled = false
v4l2_monitor.enabled = false
libcamera_monitor.enabled = false
default_access.properties["enable-flatpak-portal"] = false
)";
constexpr std::string_view headsetConfiguration = "bluez_monitor.enabled = false\n";
constexpr std::string_view managerProfile = R"(wireplumber.profiles = {
  main = {
    hardware.audio = disabled
    hardware.bluetooth = disabled
    hardware.video-capture = disabled
    script.client.access-portal = disabled
    support.portal-permissionstore = disabled
  }
}
)";

} // namespace

void writeFile(const fs::path& file, std::string_view text) {
    fs::create_directories(file.parent_path());
    std::ofstream out(file);
    out << text;
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

std::string adapterArguments(const SessionDevice& device, std::string_view more) {
    std::string positions;
    for (const auto& position : device.positions) {
        positions += position + " ";
    }
    const std::string priority = std::to_string(device.priority);
    const bool isVirtualSource = device.mediaClass == "Audio/Source/Virtual";
    // WirePlumber 0.4.13 crashes when a device goes while it is waiting to be suspended.
    return "{ factory.name = support.null-audio-sink node.name = " + device.name +
           " node.description = \"" + device.description + "\" media.class = " + device.mediaClass +
           " audio.position = [ " + positions + "] priority.session = " + priority +
           " priority.driver = " + priority +
           (isVirtualSource ? " monitor.channel-volumes = true" : "") +
           " session.suspend-timeout-seconds = 0 object.linger = true" + std::string(more) + " }";
}

void writeSessionFiles(const fs::path& folder, const PrivateSession::Setup& setup) {
    for (const char* name : {"run", "home", "state", "data/applications", "cache", "log"}) {
        fs::create_directories(folder / name);
    }
    fs::permissions(folder / "run", fs::perms::owner_all);
    writeFile(folder / "bus.conf", busConfiguration(folder));

    const fs::path fragments = folder / "config/pipewire/pipewire.conf.d";
    writeFile(fragments / "session-devices.conf", serverConfiguration(setup));
    if (setup.virtualMicrophone) {
        fs::copy_file(VELMORA_MICROPHONE_FRAGMENT, fragments / "velmora-microphone.conf");
    }

    const fs::path manager = folder / "config/wireplumber";
    writeFile(manager / "main.lua.d/60-private-session.lua", managerConfiguration);
    writeFile(manager / "bluetooth.lua.d/60-private-session.lua", headsetConfiguration);
    writeFile(manager / "wireplumber.conf.d/60-private-session.conf", managerProfile);
}

} // namespace velmora::support
