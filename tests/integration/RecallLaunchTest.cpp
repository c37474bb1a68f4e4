// Recalling a preset with applications that are closed: they are started through their desktop
// entries, found again and heard.

#include "MixerTest.h"

#include "presets/PresetRecall.h"
#include "settings/AppSettings.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <vector>

namespace velmora {
namespace {

using namespace support;
namespace fs = std::filesystem;
using ::testing::Optional;
using ::testing::SizeIs;

/// Plays 2300 and 3100 Hz into the interface, whose first pair every preset here holds.
class RecallLaunch : public ListeningMixerTest {
protected:
    RecallLaunch() { fs::create_directories(programs()); }
    ~RecallLaunch() override {
        for (const auto& id : installed_) {
            fs::remove(entryFile(id));
            end(id);
        }
    }

    // -- applications that are installed and closed --

    [[nodiscard]] fs::path programs() const { return folder.path() / "programs"; }
    [[nodiscard]] static fs::path entryFile(const std::string& id) {
        return session().applicationsFolder() / (id + ".desktop");
    }

    /// A renamed copy of the tone application, so that its file name is its own.
    [[nodiscard]] std::string playerProgram(const std::string& name) const {
        const fs::path copy = programs() / name;
        fs::copy_file(clientProgram("velmora_tone_app"), copy);
        return copy;
    }
    [[nodiscard]] static std::string toPlay(double left, double right) {
        std::ostringstream arguments;
        arguments << " --play " << left << ' ' << right << ' ' << playedDb;
        return arguments.str();
    }
    [[nodiscard]] std::string script(const std::string& name, const std::string& text) const {
        const fs::path file = programs() / name;
        std::ofstream(file) << text;
        fs::permissions(file, fs::perms::owner_all);
        return file;
    }

    void install(const std::string& id, const std::string& exec, const std::string& more = "") {
        std::ofstream(entryFile(id))
            << "[Desktop Entry]\nType=Application\nName=" << id << "\nExec=" << exec << "\n"
            << more;
        installed_.push_back(id);
    }
    void end(const std::string& id) const {
        EXPECT_TRUE(waitUntil([&] {
            const auto instances = platform.applications.byBundleID(id);
            for (const auto& instance : instances) {
                kill(instance.pid, SIGKILL);
            }
            return instances.empty();
        }));
    }

    // -- a preset of them --

    [[nodiscard]] static PresetSource app(const std::string& id, float gain) {
        return {.kind = PresetSource::Kind::app,
                .name = "Saved " + id,
                .bundleID = id,
                .gain = gain,
                .fx = {}};
    }
    [[nodiscard]] static PresetSource interfacePair() {
        return {.kind = PresetSource::Kind::deviceChannels,
                .name = "Pair",
                .deviceUID = interface4.name,
                .first = 1,
                .count = 2};
    }
    /// The mix plays already when the preset is chosen.
    void choose(const std::vector<PresetSource>& sources) {
        mix({input(interface4.description, 1, 2)});
        recall.apply({.id = Uuid::random(), .name = "Setup", .sources = sources},
                     {.launchClosedApps = true, .quiet = false});
    }

    // -- what has become of it --

    /// The sources' names, once there are so many.
    [[nodiscard]] std::vector<std::string> names(std::size_t count) const {
        EXPECT_TRUE(waitUntil([&] { return engine.sources().size() == count; }));
        std::vector<std::string> names;
        for (const auto& source : engine.sources()) {
            names.push_back(source.name());
        }
        return names;
    }
    void expectThePairHeard() const {
        EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
        EXPECT_TRUE(mic.hears(1, inputRightHz, playedDb));
    }
    void expectHeardAt(const std::string& id, double left, double right, double db) {
        EXPECT_THAT(platform.applications.byBundleID(id), SizeIs(1));
        EXPECT_TRUE(mic.hears(0, left, db));
        EXPECT_TRUE(mic.hears(1, right, db));
        EXPECT_EQ(engine.lastError(), std::nullopt);
    }
    void expectToldWhileTheMixGoesOn(const std::string& message) {
        EXPECT_TRUE(waitUntil([&] { return engine.lastError() == message; }))
            << engine.lastError().value_or("no message");
        EXPECT_EQ(names(1), std::vector<std::string>{"Pair"});
        EXPECT_TRUE(mic.waitForFreshSound());
        expectThePairHeard();
    }

    static constexpr float halfGain = 0.5F; // −6.02 dB
    static constexpr double halved = playedDb - 6.02;

    Feeder feeder{
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb}};
    AppSettings settings{platform};
    PresetRecall recall{platform, engine};

private:
    std::vector<std::string> installed_;
};

TEST_F(RecallLaunch, AClosedApplicationJoinsAtItsPlaceAndIsHeardAtItsGain) {
    using Clock = std::chrono::steady_clock;
    install("org.example.radio", playerProgram("radio") + toPlay(leftHz, rightHz));

    const auto chosenAt = Clock::now();
    choose({app("org.example.radio", halfGain), interfacePair()});

    EXPECT_EQ(names(1), std::vector<std::string>{"Pair"});
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(names(2), (std::vector<std::string>{"Saved org.example.radio", "Pair"}));
    EXPECT_GE(Clock::now() - chosenAt, AppLauncher::settlingTime);
    EXPECT_EQ(engine.sources().front().app()->bundleID, "org.example.radio");
    expectHeardAt("org.example.radio", leftHz, rightHz, halved);
    expectThePairHeard();
}

TEST_F(RecallLaunch, TheProgramThatAShellWrapperStartsIsHeard) {
    const std::string player = playerProgram("inner-player");
    install("org.example.wrapped",
            script("start-wrapped",
                   "#!/bin/sh\n'" + player + "'" + toPlay(leftHz, rightHz) + "\nexit $?\n"));

    choose({interfacePair(), app("org.example.wrapped", halfGain)});

    EXPECT_EQ(names(2), (std::vector<std::string>{"Pair", "Saved org.example.wrapped"}));
    expectHeardAt("org.example.wrapped", leftHz, rightHz, halved);
    expectThePairHeard();
}

TEST_F(RecallLaunch, AnApplicationThatCanAlsoBeStartedOverDBusIsHeard) {
    install("org.example.Activatable",
            playerProgram("activatable") + toPlay(leftHz, rightHz),
            "DBusActivatable=true\n");

    choose({interfacePair(), app("org.example.Activatable", halfGain)});

    EXPECT_EQ(names(2), (std::vector<std::string>{"Pair", "Saved org.example.Activatable"}));
    expectHeardAt("org.example.Activatable", leftHz, rightHz, halved);
}

TEST_F(RecallLaunch, SeveralStandInThePresetsOrderAndKeepTheirEffects) {
    const FXParams quieter{.autoGain = false, .manualDB = -9};
    auto withEffects = app("org.example.second", halfGain);
    withEffects.fx = quieter;
    install("org.example.first", playerProgram("first") + toPlay(leftHz, rightHz));
    install("org.example.second", playerProgram("second") + toPlay(otherLeftHz, otherRightHz));

    choose({app("org.example.first", 1), interfacePair(), withEffects});

    EXPECT_EQ(
        names(3),
        (std::vector<std::string>{"Saved org.example.first", "Pair", "Saved org.example.second"}));
    EXPECT_THAT(engine.storedFX(engine.sources().back()), Optional(quieter));
    expectHeardAt("org.example.first", leftHz, rightHz, playedDb);
    expectHeardAt("org.example.second", otherLeftHz, otherRightHz, halved - 9);
    expectThePairHeard();
}

TEST_F(RecallLaunch, AnApplicationThatRunsAlreadyIsNotStartedAgain) {
    const std::string player = playerProgram("running");
    install("org.example.running", player + toPlay(otherLeftHz, otherRightHz));
    const ToneApp running(session(), {.program = player});
    running.play("music", leftHz, rightHz, playedDb);
    EXPECT_EQ(playing(running.pid()).app()->bundleID, "org.example.running");

    choose({app("org.example.running", halfGain), interfacePair()});

    EXPECT_EQ(names(2), (std::vector<std::string>{"Saved org.example.running", "Pair"}));
    EXPECT_EQ(engine.sources().front().app()->pid, running.pid());
    expectHeardAt("org.example.running", leftHz, rightHz, halved);
}

TEST_F(RecallLaunch, AnApplicationThatThePresetHoldsTwiceIsInTheMixOnceWhileItRunsOnce) {
    const std::string player = playerProgram("single");
    install("org.example.single", player + toPlay(otherLeftHz, otherRightHz));
    const ToneApp running(session(), {.program = player});
    running.play("music", leftHz, rightHz, playedDb);
    EXPECT_EQ(playing(running.pid()).app()->bundleID, "org.example.single");

    choose({app("org.example.single", 1), app("org.example.single", 1), interfacePair()});

    EXPECT_EQ(names(2), (std::vector<std::string>{"Saved org.example.single", "Pair"}));
    EXPECT_EQ(engine.lastError(), "Introuvable : Saved org.example.single");
    EXPECT_THAT(platform.applications.byBundleID("org.example.single"), SizeIs(1));
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb)) << "not 6 dB more";
    EXPECT_TRUE(mic.hears(1, rightHz, playedDb));
}

TEST_F(RecallLaunch, AnApplicationThatThePresetHoldsTwiceIsTwoInstancesWhenTheyRun) {
    const std::string player = playerProgram("double");
    install("org.example.double", player);
    const ToneApp first(session(), {.program = player});
    first.play("music", leftHz, rightHz, playedDb);
    static_cast<void>(playing(first.pid()));
    const ToneApp second(session(), {.program = player});
    second.play("music", otherLeftHz, otherRightHz, playedDb);
    static_cast<void>(playing(second.pid()));

    choose({app("org.example.double", 1), app("org.example.double", halfGain)});

    ASSERT_THAT(names(2), SizeIs(2));
    EXPECT_EQ(engine.sources()[0].app()->pid, first.pid());
    EXPECT_EQ(engine.sources()[1].app()->pid, second.pid());
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(0, otherLeftHz, halved));
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(RecallLaunch, AProgramThatEndsAtOnceIsToldAndTheMixGoesOn) {
    install("org.example.brief", script("brief", "#!/bin/sh\nexit 1\n"));

    choose({app("org.example.brief", 1), interfacePair()});

    expectToldWhileTheMixGoesOn("Impossible de lancer Saved org.example.brief");
}

TEST_F(RecallLaunch, AProgramThatCannotBeStartedIsToldAndTheMixGoesOn) {
    install("org.example.broken", script("broken", "#!/nowhere/interpreter\n"));

    choose({interfacePair(), app("org.example.broken", 1)});

    expectToldWhileTheMixGoesOn("Impossible de lancer Saved org.example.broken");
}

TEST_F(RecallLaunch, AnEntryWithoutItsProgramIsMissingAndTheMixGoesOn) {
    install("org.example.gone", (programs() / "gone").string());

    choose({interfacePair(), app("org.example.gone", 1)});

    expectToldWhileTheMixGoesOn("Introuvable : Saved org.example.gone");
}

} // namespace
} // namespace velmora
