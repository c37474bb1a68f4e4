#include "operations/Commands.h"

#include "operations/MixerState.h"
#include "operations/OperationsFixture.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace velmora {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Json = nlohmann::json;

class CommandsTest : public OperationsFixture {
protected:
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const AudioSource& source : engine.sources()) {
            all.push_back(source.name());
        }
        return all;
    }
    Json json(const std::string& line) { return Json::parse(command(line + " --json").output); }
    /// What is refused leaves everything as it is.
    std::string refused(const std::string& line) {
        const MixerState before = stateOf(parts);
        const CommandReply reply = command(line);
        EXPECT_EQ(reply.status, 1) << line;
        EXPECT_EQ(reply.output, "") << line;
        EXPECT_EQ(stateOf(parts), before) << line;
        return reply.error;
    }
    std::string misused(const std::string& line) {
        const MixerState before = stateOf(parts);
        const CommandReply reply = command(line);
        EXPECT_EQ(reply.status, 2) << line;
        EXPECT_EQ(stateOf(parts), before) << line;
        return reply.error;
    }
};

// -- the list --

TEST_F(CommandsTest, AddsApplicationsAndInputsByAnyOfTheirNames) {
    EXPECT_EQ(command("add org.player"), done);
    EXPECT_EQ(command("add brow"), done);
    EXPECT_EQ(command("add " + wholeInput.id()), done);

    EXPECT_THAT(engine.sources(), ElementsAre(player, browser, wholeInput));
}

TEST_F(CommandsTest, AddsChannelsByTheNumberThatAvailableShows) {
    const Json offered = json("available");
    const auto pair = std::ranges::find_if(
        offered, [](const Json& one) { return one["name"] == "Interface — Inputs 3-4"; });
    ASSERT_NE(pair, offered.end());

    EXPECT_EQ(command("add " + (*pair)["number"].dump()), done);

    // One source in every language: only what is shown is translated.
    EXPECT_THAT(names(), ElementsAre("Interface — Entrées 3-4"));
    EXPECT_EQ(json("sources")[0]["name"], "Interface — Inputs 3-4");
    EXPECT_EQ(commands.run(std::vector<std::string>{"gain", "interface — inputs", "-3"}), done);
}

TEST_F(CommandsTest, AvailableTellsWhatPlays) {
    EXPECT_EQ(json("available")[0],
              (Json{{"number", 1},
                    {"id", "app-org.player-4711"},
                    {"name", "Player"},
                    {"kind", "application"},
                    {"playing", true}}));
    EXPECT_THAT(command("available").output,
                HasSubstr("1   Player  app-org.player-4711, playing now\n"));
}

TEST_F(CommandsTest, NamesAreWordsThatCommandsTake) {
    machine.startApplication(4713, "Browser", "org.browser.beta");
    engine.replaceSources({player, browser, AppSource{4713, "Browser", "org.browser.beta"}});
    ASSERT_EQ(command("preset save Evening"), done);

    EXPECT_EQ(command("names sources").output,
              "Player\napp-org.browser-4712\napp-org.browser.beta-4713\n");
    EXPECT_EQ(json("names presets"), Json::array({"Evening"}));
    EXPECT_EQ(json("names devices")[0], "Default output");
    for (const std::string name : json("names available")) {
        EXPECT_EQ(commands.run(std::vector<std::string>{"add", name}), done) << name;
    }
    EXPECT_THAT(misused("names colours"), HasSubstr("sources"));
}

TEST_F(CommandsTest, AddingTwiceIsAddingOnce) {
    EXPECT_EQ(command("add Player"), done);
    EXPECT_EQ(command("add Player"), done);

    EXPECT_THAT(names(), ElementsAre("Player"));
}

TEST_F(CommandsTest, RemovesByNumber) {
    engine.replaceSources({player, browser});

    EXPECT_EQ(command("remove 1"), done);

    EXPECT_THAT(names(), ElementsAre("Browser"));
}

TEST_F(CommandsTest, ASourceThatIsNotThereIsRefusedWithTheWayToSeeThem) {
    EXPECT_THAT(refused("remove Radio"), AllOf(HasSubstr("“Radio”"), HasSubstr("velmora sources")));
    EXPECT_THAT(refused("add Radio"), HasSubstr("velmora available"));
    EXPECT_THAT(refused("add Interface\xe2"), HasSubstr("velmora available"));
    engine.replaceSources({player, AppSource{browserPid, "Player 2", "org.browser"}});
    EXPECT_THAT(refused("gain play -3"), HasSubstr("numbers"));
}

// -- on and off --

TEST_F(CommandsTest, SwitchesTheMix) {
    engine.replaceSources({player});

    EXPECT_EQ(command("on"), done);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(command("toggle"), done);
    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(command("toggle"), done);
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(command("off"), done);
    EXPECT_FALSE(engine.isRunning());
}

TEST_F(CommandsTest, SwitchingOnWhatIsOnInterruptsNothing) {
    engine.replaceSources({player});
    command("on");
    const auto taps = machine.sound.openedTaps().size();

    EXPECT_EQ(command("on"), done);

    EXPECT_EQ(machine.sound.openedTaps().size(), taps);
}

TEST_F(CommandsTest, AMixThatCannotStartSaysWhy) {
    const CommandReply reply = command("on");

    EXPECT_EQ(reply.status, 1);
    EXPECT_EQ(reply.error, settings.t("Choisir d'abord une source"));
}

// -- levels --

TEST_F(CommandsTest, SetsALevelThatIsHeard) {
    engine.replaceSources({player});
    command("on");

    EXPECT_EQ(command("gain Player -6"), done);

    machine.advanceCycles(200);
    EXPECT_NEAR(machine.sound.heard(mic, 1).back(), 0.25 * 0.501187, 1e-4);
    EXPECT_EQ(json("sources")[0]["db"], -6.0);
}

TEST_F(CommandsTest, TakesSilenceAsALevel) {
    engine.replaceSources({player});

    EXPECT_EQ(command("gain 1 -inf"), done);

    EXPECT_EQ(engine.gain(player), 0.0F);
    EXPECT_EQ(json("sources")[0]["db"], nullptr);
    EXPECT_EQ(json("sources")[0]["muted"], true);
}

TEST_F(CommandsTest, ALevelOutOfRangeIsRefusedWithTheRange) {
    engine.replaceSources({player});
    for (const char* word : {"6.1", "-61", "nan", "inf", "1e300"}) {
        EXPECT_THAT(refused(std::string("gain 1 ") + word), HasSubstr("from -60 to 6 dB")) << word;
        EXPECT_THAT(refused(std::string("volume microphone ") + word), HasSubstr("-60 to 6 dB"));
    }
    EXPECT_THAT(misused("gain 1 loud"), HasSubstr("“loud”"));
}

TEST_F(CommandsTest, MutingFindsTheWayBackThatTheWindowFinds) {
    engine.replaceSources({player});
    engine.setGain(0.5F, player);

    EXPECT_EQ(command("mute Player on"), done);
    EXPECT_EQ(engine.gain(player), 0.0F);
    EXPECT_EQ(command("mute Player on"), done);
    EXPECT_EQ(engine.gain(player), 0.0F);
    EXPECT_EQ(command("mute Player"), done);
    EXPECT_EQ(engine.gain(player), 0.5F);
    EXPECT_EQ(command("mute Player off"), done);
    EXPECT_EQ(engine.gain(player), 0.5F);
}

TEST_F(CommandsTest, SetsAndMutesBothVolumes) {
    EXPECT_EQ(command("volume microphone -6"), done);
    EXPECT_EQ(command("volume headphones -12"), done);
    EXPECT_EQ(json("status")["microphone"]["db"], -6.0);
    EXPECT_EQ(json("status")["headphones"]["db"], -12.0);

    EXPECT_EQ(command("volume microphone mute"), done);
    EXPECT_EQ(command("volume headphones toggle"), done);
    EXPECT_EQ(engine.streamVolume(), 0.0F);
    EXPECT_EQ(engine.headphoneVolume(), 0.0F);
    EXPECT_EQ(command("volume microphone unmute"), done);
    EXPECT_EQ(json("status")["microphone"]["db"], -6.0);
    EXPECT_THAT(refused("volume speakers -3"), HasSubstr("“speakers”"));
}

TEST_F(CommandsTest, SilencesApplicationsOnly) {
    engine.replaceSources({player, wholeInput});

    EXPECT_EQ(command("silence Player on"), done);
    EXPECT_TRUE(engine.isDirectMuted(player));
    EXPECT_EQ(command("silence Player"), done);
    EXPECT_FALSE(engine.isDirectMuted(player));
    EXPECT_THAT(refused("silence Interface on"), HasSubstr("no application"));
    EXPECT_THAT(misused("silence Player yes"), HasSubstr("“yes”"));
}

TEST_F(CommandsTest, LevelsAreThoseOfTheMeters) {
    engine.replaceSources({player});
    command("on");
    machine.advanceCycles(200);

    const Json levels = json("levels");

    EXPECT_NEAR(levels["level"].get<double>(), 0.25, 1e-3);
    EXPECT_NEAR(levels["sources"][player.id()].get<double>(), 0.25, 1e-3);
    EXPECT_EQ(command("levels").output, "1   Player  -12.0 dB\n");
}

// -- effects --

TEST_F(CommandsTest, SetsSeveralEffectsAtOnce) {
    engine.replaceSources({player});

    EXPECT_EQ(command("effects Player lowcut=75 noise=on level=-3"), done);

    EXPECT_EQ(engine.fx(player).lowcut, 1);
    EXPECT_TRUE(engine.fx(player).denoise);
    EXPECT_EQ(engine.fx(player).manualDB, -3.0F);
    EXPECT_EQ(json("effects 1")["lowcut"], "75");
    EXPECT_THAT(command("effects 1").output, HasSubstr("noise=on\n"));
}

TEST_F(CommandsTest, OneWrongEffectChangesNone) {
    engine.replaceSources({player});

    EXPECT_THAT(refused("effects Player noise=on echo=1"), HasSubstr("“echo”"));
    EXPECT_THAT(refused("effects Player noise=on tone=1000"), HasSubstr("-100 ... 100"));
    EXPECT_THAT(misused("effects Player noise=on tone"), HasSubstr("NAME=VALUE"));
}

TEST_F(CommandsTest, ResetsEffects) {
    engine.replaceSources({player});
    command("effects Player noise=on");

    EXPECT_EQ(command("effects Player reset"), done);

    EXPECT_TRUE(engine.fx(player).isNeutral());
}

TEST_F(CommandsTest, Bypasses) {
    EXPECT_EQ(command("bypass"), done);
    EXPECT_TRUE(engine.fxBypassed());
    EXPECT_EQ(command("bypass on"), done);
    EXPECT_TRUE(engine.fxBypassed());
    EXPECT_EQ(command("bypass off"), done);
    EXPECT_FALSE(engine.fxBypassed());
}

// -- monitoring --

TEST_F(CommandsTest, ChoosesTheMonitoringOutput) {
    EXPECT_EQ(command("monitor interface#3"), done);
    EXPECT_EQ(engine.monitoringSelection(), "interface#3");
    EXPECT_EQ(json("monitor")[3]["chosen"], true);

    EXPECT_EQ(command("monitor 1"), done);
    EXPECT_EQ(engine.monitoringSelection(), std::nullopt);
    EXPECT_THAT(command("monitor").output, HasSubstr("1 * Default output\n"));
    EXPECT_THAT(refused("monitor Radio"), HasSubstr("velmora monitor"));
}

// -- presets --

TEST_F(CommandsTest, SavesListsAppliesAndRemovesPresets) {
    engine.replaceSources({player});
    EXPECT_EQ(command("preset save One"), done);
    engine.replaceSources({browser});
    EXPECT_EQ(command("preset save Two"), done);
    EXPECT_EQ(command("preset list").output, "1   One\n2 * Two\n");

    EXPECT_EQ(command("preset apply one"), done);
    EXPECT_THAT(engine.sources(), ElementsAre(player));
    EXPECT_EQ(json("status")["preset"], "One");
    EXPECT_EQ(command("preset next"), done);
    EXPECT_THAT(engine.sources(), ElementsAre(browser));
    EXPECT_EQ(command("preset next"), done);
    EXPECT_THAT(engine.sources(), ElementsAre(player));

    EXPECT_EQ(command("preset remove One"), done);
    EXPECT_EQ(json("preset list"),
              Json::parse(R"([{"number": 1, "name": "Two", "active": false}])"));
}

TEST_F(CommandsTest, PresetsThatAreNotThereAreRefused) {
    EXPECT_THAT(refused("preset apply One"), HasSubstr("velmora preset list"));
    EXPECT_THAT(refused("preset next"), HasSubstr("velmora preset save"));
    EXPECT_EQ(commands.run(std::vector<std::string>{"preset", "save", " \t"}).error,
              "A preset needs a name.");
    EXPECT_THAT(presets.presets(), IsEmpty());
}

TEST_F(CommandsTest, CarriesPresetsInFiles) {
    const support::TemporaryFolder folder("velmora-presets");
    const std::string all = folder.path() / "all.json";
    const std::string one = folder.path() / "one.json";
    command("preset save One");
    command("preset save Two");

    EXPECT_EQ(command("preset export " + all), done);
    EXPECT_EQ(command("preset export " + one + " two"), done);
    EXPECT_EQ(command("preset remove One"), done);
    EXPECT_EQ(command("preset import " + all), done);
    EXPECT_EQ(command("preset import " + one), done);

    EXPECT_EQ(command("preset list").output, "1 * Two\n2   One\n3   Two (2)\n4   Two (3)\n");
}

TEST_F(CommandsTest, FilesThatHoldNoPresetsAreRefused) {
    const support::TemporaryFolder folder("velmora-presets");
    const std::string file = folder.path() / "notes.txt";
    std::ofstream(file) << "milk, eggs";

    EXPECT_THAT(refused("preset import " + file), HasSubstr("no file of Velmora presets"));
    EXPECT_THAT(refused("preset import " + file + ".gone"), HasSubstr("cannot be read"));
    EXPECT_THAT(refused("preset import /dev/zero"), HasSubstr("cannot be read"));
    EXPECT_THAT(refused("preset export " + file), HasSubstr("velmora preset save"));
    command("preset save One");
    EXPECT_THAT(refused("preset export " + folder.path().string()), HasSubstr("cannot be written"));
    EXPECT_THAT(refused("preset export /nowhere/one.json"), HasSubstr("cannot be written"));
    EXPECT_THAT(refused("preset export " + file + " Three"), HasSubstr("velmora preset list"));
}

TEST(CommandTable, AFileIsNamedFromTheRoot) {
    const auto whole = [](std::vector<std::string> words) {
        return withWholePaths(std::move(words), "/home/me");
    };
    EXPECT_THAT(whole({"preset", "export", "a b.json", "One"}),
                ElementsAre("preset", "export", "/home/me/a b.json", "One"));
    EXPECT_THAT(whole({"preset", "import", "/tmp/a.json"}),
                ElementsAre("preset", "import", "/tmp/a.json"));
    EXPECT_THAT(whole({"preset", "import"}), ElementsAre("preset", "import"));
    EXPECT_THAT(whole({"preset", "save", "a"}), ElementsAre("preset", "save", "a"));
}

// -- what is shown --

TEST_F(CommandsTest, StatusIsDescribedByItsMembers) {
    engine.replaceSources({player});
    engine.setDirectMuted(true, player);

    const Json expected = Json::parse(R"({
        "running": false, "bypassed": false, "blockFrames": 0, "missedBlocks": 0,
        "microphone": {"db": 0.0, "muted": false, "closed": false}, "headphones": {"db": 0.0, "muted": false},
        "monitor": "", "preset": null, "problems": [],
        "sources": [{"number": 1, "id": "app-org.player-4711", "name": "Player",
                     "kind": "application", "db": 0.0, "muted": false, "silenced": true,
                     "effects": {"lowcut": "off", "tone": "0", "compressor": "off",
                                 "reverb": "0", "room": "studio", "level": "auto",
                                 "plosives": "off", "noise": "off"}}]})");
    EXPECT_EQ(json("status"), expected);
    EXPECT_EQ(command("--json status"), command("status --json"));
}

TEST_F(CommandsTest, StatusTellsPresetsThatCouldNotBeRead) {
    machine.defaults.set("presets", Bytes{'d', 'a', 'm', 'a', 'g', 'e', 'd'});
    PresetStore unread(machine.defaults);
    Commands later({.platform = parts.platform,
                    .engine = engine,
                    .sources = sources,
                    .presets = unread,
                    .recall = recall,
                    .settings = settings,
                    .talk = talk},
                   [] {});
    const std::vector<std::string> words{"status"};

    EXPECT_THAT(later.run(words).output, HasSubstr("! Some saved presets cannot be read."));
    unread.markSetAsideTold();
    EXPECT_THAT(later.run(words).output, Not(HasSubstr("!")));
}

TEST_F(CommandsTest, StatusSaysHowSoundComesWhileTheMixRuns) {
    engine.replaceSources({player});
    engine.start();
    machine.advance(std::chrono::seconds(1));

    EXPECT_THAT(command("status").output,
                HasSubstr("\nBlocks of 128 samples, 0 missed in a minute\n"));
    EXPECT_EQ(json("status")["blockFrames"], 128);
    EXPECT_EQ(json("status")["missedBlocks"], 0);
}

TEST_F(CommandsTest, StatusReadsInTheUsersLanguage) {
    engine.replaceSources({player});
    settings.setLanguage("fr");

    EXPECT_EQ(command("status").output,
              "Arrêté\nMicro virtuel  0.0 dB\nCasque  0.0 dB\nÉcoute  Sortie par défaut\n"
              "Preset  -\n1   Player  0.0 dB\n");
    EXPECT_THAT(refused("gain 9 0"), HasSubstr("introuvable"));
}

TEST_F(CommandsTest, NamesThatAreNotUtf8AreStillShown) {
    engine.replaceSources({AppSource{playerPid, "Pl\xe4yer", "org.player"}});

    EXPECT_EQ(json("sources")[0]["name"], "Pl\xef\xbf\xbdyer");
}

// -- the words --

TEST_F(CommandsTest, WhatIsNoCommandIsMisused) {
    EXPECT_THAT(misused("jump"), AllOf(HasSubstr("“jump”"), HasSubstr("--help")));
    EXPECT_THAT(misused("preset"), HasSubstr("“preset”"));
    EXPECT_THAT(misused("gain 1"), HasSubstr("velmora gain SOURCE DB"));
    EXPECT_THAT(misused("on now"), HasSubstr("velmora on"));
    EXPECT_THAT(misused("status --xml"), HasSubstr("“--xml”"));
    EXPECT_THAT(misused("on --json"), HasSubstr("“velmora on”"));
    EXPECT_EQ(commands.run({}).status, 2);
}

TEST_F(CommandsTest, QuitsWhenAsked) {
    EXPECT_EQ(command("quit"), done);
    EXPECT_EQ(quits, 1);
}

TEST_F(CommandsTest, EveryCommandOfTheTableIsCarriedOut) {
    engine.replaceSources({player});
    for (const CommandInfo& info : commandTable()) {
        std::string line(info.name);
        for (std::size_t word = 0; word < info.least; ++word) {
            line += info.name == "volume"                ? (word == 0 ? " microphone" : " -3")
                    : info.arguments.starts_with("FILE") ? " /nowhere/presets.json"
                    : info.name == "names"               ? " sources"
                                                         : " 1";
        }
        EXPECT_NE(command(line).status, 2) << line;
    }
}

} // namespace
} // namespace velmora
