#include "soak/Program.h"

#include "platform/sqlite/SqliteDefaultsStore.h"
#include "presets/PresetStore.h"
#include "support/ProcessFigures.h"
#include "support/SessionDevices.h"
#include "support/ToneAnalysis.h"

#include <cmath>
#include <fstream>
#include <iterator>

namespace velmora::soak {

namespace {

const std::string monitoringDevice = support::interface4.name + "#3";

double linear(const Level& level) {
    return level.isMuted ? 0 : support::fromDb(level.db);
}

bool isNear(double one, double other) {
    constexpr double rounding = 1e-4;
    return std::abs(one - other) < rounding;
}

} // namespace

Program::Program(const support::PrivateSession& session, bool hasWindow)
    : environment_(session.environment()), group_(session.processGroup()) {
    environment_["LC_ALL"] = "C.UTF-8";
    environment_["HOME"] = home_.path();
    environment_["XDG_DATA_HOME"] = home_.path() / "data";
    environment_["XDG_CONFIG_HOME"] = home_.path() / "config";
    // The players' desktop entries stay where they are.
    environment_["XDG_DATA_DIRS"] =
        (session.folder() / "data").string() + ":/usr/local/share:/usr/share";
    if (hasWindow) {
        display_.emplace().enter(environment_);
        environment_["QT_QPA_PLATFORM"] = "xcb";
        environment_["QT_QUICK_BACKEND"] = "software";
        environment_["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1";
    }
    SqliteDefaultsStore settings(settingsFile());
    settings.set("dawMode.interfaceUID", support::speakers.name);
    settings.set("language", std::string("en"));
    settings.set("monitoringSelection", monitoringDevice);
}

std::filesystem::path Program::settingsFile() const {
    return home_.path() / "data" / "velmora" / "settings.sqlite";
}

void Program::launch() {
    std::vector<std::string> arguments{VELMORA_PROGRAM};
    if (!display_) {
        arguments.emplace_back("--headless");
    }
    process_.emplace(support::Command{.arguments = arguments,
                                      .environment = environment_,
                                      .output = home_.path() / "output",
                                      .processGroup = group_});
}

std::string Program::printed() const {
    std::ifstream file(home_.path() / "output");
    return {std::istreambuf_iterator<char>(file), {}};
}

Rest Program::figures() const {
    return {.residentBytes = support::residentBytes(process_->pid()),
            .descriptors = support::openDescriptors(process_->pid())};
}

std::vector<std::string> Program::compareSettings(const World& world) const {
    std::vector<std::string> findings;
    SqliteDefaultsStore settings(settingsFile());
    const auto expect = [&](bool isSo, const std::string& what) {
        if (!isSo) {
            findings.push_back("kept wrongly: " + what);
        }
    };
    const auto number = [&](const char* key) { return settings.read<double>(key).value_or(1.0); };
    expect(isNear(number("streamVolume"), linear(world.microphone)), "the microphone's volume");
    expect(isNear(number("headphoneVolume"), linear(world.headphones)), "the headphones' volume");
    expect(settings.read<std::string>("language") == world.language, "the language");
    expect(settings.read<bool>("dawMode.enabled").value_or(false) == world.hasDawDevice,
           "whether there is a DAW device");
    expect(settings.read<std::string>("monitoringSelection") == monitoringDevice, "the monitor");

    const auto gains = settings.read<NumberMap>("sourceGains").value_or(NumberMap{});
    const auto silenced = settings.read<BooleanMap>("sourceMuteDirect").value_or(BooleanMap{});
    for (const std::string& word : world.sources) {
        if (world.playerOf(word) == nullptr) {
            continue; // what is kept of a process goes with it
        }
        const Strip strip = world.strip(word);
        const auto gain = gains.find(word);
        expect(isNear(gain == gains.end() ? 1.0 : gain->second, linear(strip.level)),
               "the level of " + word);
        const auto mute = silenced.find(word);
        expect((mute != silenced.end() && mute->second) == strip.isSilenced,
               "whether " + word + " is silenced");
    }

    const PresetStore presets(settings);
    expect(presets.presets().size() == world.presets.size(), "how many presets there are");
    for (const Preset& kept : presets.presets()) {
        const Setup* const setup = world.preset(kept.name);
        expect(setup != nullptr && kept.sources.size() == setup->entries.size() &&
                   isNear(kept.streamVolume, linear(setup->microphone)) &&
                   isNear(kept.headphoneVolume, linear(setup->headphones)),
               "the preset " + kept.name);
    }
    return findings;
}

} // namespace velmora::soak
