#include "durability/Mixer.h"

namespace velmora {

Studio::Studio() {
    machine_.startApplication(4711, "Player", "org.player");
    machine_.startApplication(4712, "Browser", "org.browser");
    machine_.sound.play(4711, sine(440, 0.25F));
    machine_.sound.play(4712, sine(1000, 0.125F));
    const AudioObjectID interface = machine_.sound.addDevice(
        {.uid = "interface", .name = "Interface", .outputs = {4}, .inputs = {4}});
    machine_.sound.setInput(interface, sine(2300, 0.125F));
    sources_ = {AppSource{4711, "Player", "org.player"},
                AppSource{4712, "Browser", "org.browser"},
                DeviceSource{interface, "Interface"},
                DeviceChannelsSource{interface, 3, 2, "Interface 3-4"}};
}

Platform Studio::with(DefaultsStore& defaults) {
    const Platform machine = machine_.platform();
    return {.devices = machine.devices,
            .taps = machine.taps,
            .sinks = machine.sinks,
            .units = machine.units,
            .applications = machine.applications,
            .defaults = defaults,
            .mainQueue = machine.mainQueue,
            .appearance = machine.appearance,
            .loginItem = machine.loginItem,
            .shortcuts = machine.shortcuts,
            .notices = machine.notices};
}

void Studio::playBlock() {
    machine_.sound.forgetHeard();
    machine_.advanceCycles(1);
}

std::vector<float> Studio::nextBlock() {
    playBlock();
    std::vector<float> block;
    for (const AudioObjectID device : {mic_, speakers_}) {
        for (const std::size_t channel : {1U, 2U}) {
            const auto heard = machine_.sound.heard(device, channel);
            block.insert(block.end(), heard.begin(), heard.end());
        }
    }
    return block;
}

Mixer::Mixer(Studio& machine, DefaultsStore& defaults)
    : studio(machine), platform(machine.with(defaults)) {
}

KeptSettings Mixer::kept() const {
    KeptSettings kept{.headphoneVolume = engine.headphoneVolume(),
                      .streamVolume = engine.streamVolume(),
                      .monitoring = engine.monitoringSelection(),
                      .presets = presets.presets(),
                      .activeID = presets.activeID()};
    for (const auto& source : studio.sources()) {
        if (const auto gain = engine.storedGain(source)) {
            kept.gains[source.id()] = *gain;
        }
        if (const auto fx = engine.storedFX(source)) {
            kept.fx[source.id()] = *fx;
        }
        if (engine.isDirectMuted(source)) {
            kept.muted.insert(source.id());
        }
    }
    return kept;
}

} // namespace velmora
