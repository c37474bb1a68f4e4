#include "ui/window/WindowScene.h"

#include "presets/PresetSnapshot.h"

#include <string>

namespace velmora {

namespace {

void furnish(SimulatedPlatform& machine) {
    machine.startApplication(4711, "Web Browser", "org.browser");
    machine.startApplication(4712, "Music Player", "org.player");
    machine.sound.play(4711, sine(440, 0.5F));
    machine.sound.play(4712, sine(660, 0.25F));
    machine.applications.install(
        {.bundleID = "org.call", .name = "Video Call", .location = "/apps/org.call.desktop"});
    machine.sound.addDevice(
        {.uid = "loop", .name = "Loopback", .inputs = {2}, .transport = Transport::virtualDevice});
}

AudioObjectID addInterface(SimulatedPlatform& machine) {
    const auto device =
        machine.sound.addDevice({.uid = "interface", .name = "Interface", .inputs = {4}});
    machine.sound.setInput(device, sine(220, 0.1F));
    return device;
}

} // namespace

WindowScene::WindowScene(SimulatedPlatform& machine, AppSettings& settings)
    : machine_(machine), speakers_(machine.addSpeakers()), virtualMic_(machine.addVirtualMic()),
      microphone_(machine.sound.addDevice({.uid = "mic", .name = "Microphone", .inputs = {1}})),
      interfaceInputs(DeviceChannelsSource{addInterface(machine), 3, 2, "Interface — Entrées 3-4"}),
      engine(machine.platform()), sources(machine.platform()), presets(machine.defaults),
      recall(machine.platform(), engine), talk(engine), model({.platform = machine.platform(),
                                                               .engine = engine,
                                                               .sources = sources,
                                                               .presets = presets,
                                                               .recall = recall,
                                                               .settings = settings,
                                                               .talk = talk},
                                                              &files) {
    furnish(machine);
}

void WindowScene::mixPodcast() {
    for (const AudioSource& source : {browser, interfaceInputs, player}) {
        engine.add(source);
    }
    engine.setGain(0.5F, browser);
    engine.setGain(0.0F, player);
    engine.setDirectMuted(true, browser);
    engine.setFX({.lowcut = 1, .tilt = 0.2F, .comp = 2, .plosive = true}, browser);
    engine.setStreamVolume(0.708F);
    presets.save(snapshotPreset(engine, machine_.devices, "Podcast"));
}

void WindowScene::mixMany(int count) {
    for (int i = 1; i <= count; ++i) {
        const std::string number = std::to_string(i);
        machine_.startApplication(5000 + i, "Instrument " + number, "org.instrument" + number);
        machine_.sound.play(5000 + i, sine(100.0 * i, 0.2F));
        engine.add(AppSource{5000 + i, "Instrument " + number, "org.instrument" + number});
    }
}

} // namespace velmora
