// OperationsFixture.h: a mixer on a simulated machine, and what its commands say.
#pragma once

#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/Commands.h"
#include "operations/PushToTalk.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace velmora {

/// Two applications, one of which plays, an interface with four inputs, speakers, and English.
class OperationsFixture : public testing::Test {
protected:
    static constexpr std::int32_t playerPid = 4711;
    static constexpr std::int32_t browserPid = 4712;

    OperationsFixture() {
        machine.startApplication(playerPid, "Player", "org.player");
        machine.startApplication(browserPid, "Browser", "org.browser");
        machine.sound.play(browserPid, constant(0.25F));
        machine.sound.pause(browserPid); // has played, and can be captured since
        machine.sound.play(playerPid, constant(0.25F));
        settings.setLanguage("en");
    }

    /// @param line  words, parted by single spaces
    CommandReply command(const std::string& line) {
        std::vector<std::string> words;
        std::istringstream stream(line);
        for (std::string word; std::getline(stream, word, ' ');) {
            words.push_back(word);
        }
        return commands.run(words);
    }

    SimulatedPlatform machine;
    AudioObjectID speakers = machine.addSpeakers();
    AudioObjectID mic = machine.addVirtualMic();
    AudioObjectID interface4 = machine.sound.addDevice(
        {.uid = "interface", .name = "Interface", .outputs = {4}, .inputs = {4}});
    const AudioSource player = AppSource{playerPid, "Player", "org.player"};
    const AudioSource browser = AppSource{browserPid, "Browser", "org.browser"};
    const AudioSource wholeInput = DeviceSource{interface4, "Interface"};
    AudioEngine engine{machine.platform()};
    SourceManager sources{machine.platform()};
    PresetStore presets{machine.defaults};
    PresetRecall recall{machine.platform(), engine};
    AppSettings settings{machine.platform()};
    PushToTalk talk{engine};
    const MixerParts parts{.platform = machine.platform(),
                           .engine = engine,
                           .sources = sources,
                           .presets = presets,
                           .recall = recall,
                           .settings = settings,
                           .talk = talk};
    int quits = 0;
    Commands commands{parts, [this] { ++quits; }};
    const CommandReply done{};
};

} // namespace velmora
