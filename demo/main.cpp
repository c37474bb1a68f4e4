// velmora_demo: mixes real programs with the real mixer in a private audio session, shows the mix
// in the real window, records what other programs hear of it, and says whether that is what the
// gains and effects predict.
//
// velmora_demo [--seconds <n>] [--quantum <frames>] [--results <folder>]

#include "Mix.h"
#include "MixWindow.h"
#include "Options.h"
#include "Report.h"
#include "Scene.h"
#include "Stage.h"
#include "Take.h"

#include "support/Prediction.h"
#include "support/VirtualDisplay.h"
#include "support/Wait.h"
#include "support/WavFile.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <iostream>
#include <optional>

#include <QApplication>

namespace velmora::demo {
namespace {

constexpr std::uint32_t sides = 2;

/// Every recorder of the stage.
struct Takes {
    explicit Takes(const Stage& stage)
        : microphone(stage.microphone), monitoring(stage.monitoring), speakers(stage.speakers),
          musicDirect(stage.musicDirect), callDirect(stage.callDirect),
          instrumentDirect(stage.instrumentDirect) {}

    template <typename Action>
    void forEach(Action action) {
        for (Take* take :
             {&microphone, &monitoring, &speakers, &musicDirect, &callDirect, &instrumentDirect}) {
            action(*take);
        }
    }

    Take microphone, monitoring, speakers, musicDirect, callDirect, instrumentDirect;
};

/// What the mix made of each source, at both of its outputs.
std::vector<Finding> findMix(const Scene& scene, const Takes& takes, double seconds) {
    std::vector<Finding> findings;
    for (const SceneSource* source : {&scene.music, &scene.call, &scene.instrument}) {
        const auto predicted =
            support::predictedDb(source->tone, source->gainDb, source->fx, seconds);
        for (std::uint32_t side = 0; side < sides; ++side) {
            const double hz = source->tone.hz[side];
            findings.push_back({.recording = "microphone.wav",
                                .source = source->what,
                                .hz = hz,
                                .predictedDb = predicted[side],
                                .foundDb = takes.microphone.settled(side, hz)});
            findings.push_back({.recording = "monitoring.wav",
                                .source = source->what,
                                .hz = hz,
                                .predictedDb = predicted[side] + scene.monitoringDb,
                                .foundDb = takes.monitoring.settled(side, hz)});
        }
    }
    return findings;
}

/// What the players sound like on the speakers: the muted one before and after the mix only.
std::vector<Finding> findDirect(const Scene& scene, const Takes& takes, const Stage& stage) {
    std::vector<Finding> findings;
    const auto add =
        [&](const std::string& when, const SceneSource& source, auto predict, auto find) {
            for (std::uint32_t side = 0; side < sides; ++side) {
                const double hz = source.tone.hz[side];
                findings.push_back({.recording = "speakers.wav" + when,
                                    .source = source.what,
                                    .hz = hz,
                                    .predictedDb = predict(source),
                                    .foundDb = find(side, hz)});
            }
        };
    const auto asPlayed = [](const SceneSource& source) { return source.tone.db; };
    const auto absent = [](const SceneSource&) { return Finding::absent; };
    add(", before", scene.music, asPlayed, std::bind_front(&Take::before, &takes.speakers));
    add("", scene.music, absent, std::bind_front(&Take::loudest, &takes.speakers));
    add("", scene.call, asPlayed, std::bind_front(&Take::settled, &takes.speakers));
    static_cast<void>(stage.speakers.hears(0, scene.music.tone.hz[0], scene.music.tone.db));
    add(", after",
        scene.music,
        asPlayed,
        std::bind_front(&support::Recording::toneDb, &stage.speakers));
    return findings;
}

std::vector<Continuity> compareContinuity(const Scene& scene, const Takes& takes) {
    const auto compare = [&](const SceneSource& source, const Take& direct) {
        return Continuity{.source = source.what,
                          .directBreaks = direct.breaks(0, source.tone.hz[0]),
                          .mixedBreaks = takes.microphone.breaks(0, source.tone.hz[0])};
    };
    return {compare(scene.music, takes.musicDirect),
            compare(scene.call, takes.callDirect),
            compare(scene.instrument, takes.instrumentDirect)};
}

void keepRecordings(const Stage& stage, const std::filesystem::path& folder) {
    support::writeWav(folder / "microphone.wav", stage.microphone.all());
    support::writeWav(folder / "monitoring.wav", stage.monitoring.all());
    support::writeWav(folder / "speakers.wav", stage.speakers.all());
}

int run(const Options& options) {
    const Scene scene;
    std::cout << "Starting a private audio session, the players and the recorders ..." << std::endl;
    Stage stage(scene, options.quantum);
    stage.session.enter();
    support::betweenLooks = [] { QApplication::processEvents(); };

    Mix mix(scene, stage);
    for (const std::string& line : mix.discovered()) {
        std::cout << "  discovered " << line << '\n';
    }
    Takes takes(stage);
    takes.forEach([](Take& take) { take.markStart(); });
    mix.start();
    MixWindow window(mix.platform(), mix.engine());
    std::filesystem::create_directories(options.results);
    std::vector<std::string> pictures;
    const bool toTheEnd =
        mix.run(options.seconds, [&] { pictures = window.takePictures(options.results); });
    if (!toTheEnd) {
        std::cout << "Stopped before the end; nothing was checked.\n";
        return 1;
    }
    takes.forEach([](Take& take) { take.markEnd(); });
    const auto rings = mix.rings();
    mix.stop();

    auto findings = findMix(scene, takes, options.seconds);
    const auto direct = findDirect(scene, takes, stage);
    findings.insert(findings.end(), direct.begin(), direct.end());
    const auto continuity = compareContinuity(scene, takes);

    keepRecordings(stage, options.results);
    std::ofstream table(options.results / "table.txt");
    for (std::ostream* out :
         {static_cast<std::ostream*>(&std::cout), static_cast<std::ostream*>(&table)}) {
        print(*out, findings);
        print(*out, rings);
        print(*out, continuity);
    }
    const bool good = allAsPredicted(findings);
    std::cout << "\nThe recordings, these tables and pictures of the window (" << pictures.front()
              << " and " << pictures.size() - 1 << " more) are in " << options.results.string()
              << ".\n"
              << (good ? "Everything was found as predicted.\n"
                       : "The recordings do not hold what they should.\n");
    return good ? 0 : 1;
}

} // namespace
} // namespace velmora::demo

namespace {

bool hasDesktop() {
    return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

} // namespace

int main(int argc, char** argv) {
    try {
        const auto options =
            velmora::demo::parseOptions({argv + 1, static_cast<std::size_t>(argc - 1)});
        std::optional<velmora::support::VirtualDisplay> display;
        if (!hasDesktop()) {
            display.emplace();
            display->enter();
        }
        const QApplication application(argc, argv);
        QApplication::setApplicationName("velmora");
        return velmora::demo::run(options);
    } catch (const std::exception& error) {
        std::cerr << "velmora_demo: " << error.what() << '\n';
        return 1;
    }
}
