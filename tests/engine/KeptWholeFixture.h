// KeptWholeFixture.h: a mix around which everything goes and comes.
#pragma once

#include "engine/EngineFixture.h"

#include <chrono>

namespace velmora {

class KeptWholeFixture : public EngineFixture {
protected:
    void unplugInterface() { machine.sound.removeDevice(interface4); }
    void plugInterface() {
        ASSERT_EQ(machine.sound.addDevice(
                      {.uid = "interface", .name = "Interface", .outputs = {4}, .inputs = {4}}),
                  interface4);
        machine.sound.setInput(interface4, channelNumbers(0.0625F));
    }
    void loseService() {
        machine.sound.loseService();
        machine.advance(std::chrono::milliseconds{10});
    }
    void returnService() {
        machine.sound.returnService();
        machine.sound.play(playerPid, constant(0.25F));
        machine.advance(std::chrono::milliseconds{10});
    }
    /// An application that has no sound yet, and is waited for.
    AudioSource silentApplication() {
        machine.startApplication(5000, "Silent", "org.silent");
        return AppSource{5000, "Silent", "org.silent"};
    }

    static constexpr std::chrono::seconds aWhile{10}; // longer than any pause between two attempts
};

} // namespace velmora
