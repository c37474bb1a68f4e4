// The program worked through its commands alone, judged by what is heard and read.

#include "app/CommandRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velmora {
namespace {

using namespace support;
using testing::AllOf;
using testing::HasSubstr;
using testing::Optional;

constexpr double toneHz = 2300;
constexpr double toneDb = -20;

class CommandedProgram : public CommandRig {};

TEST_F(CommandedProgram, IsWorkedWholeByCommandsAlone) {
    const ToneApp app(session());
    app.play("music", toneHz, toneHz, toneDb);
    const Recorder mic(session(), microphone, {1});
    const Recorder atSpeakers(session(), speakers.name, {1});
    const Recorder atHeadphones(session(), interface4.name, {3});
    monitorOnTheInterface();
    ChildProcess mixer = headless();

    command({"add", playing(app.pid())});
    command({"on"});
    EXPECT_TRUE(mic.hears(0, toneHz, toneDb));
    EXPECT_TRUE(atHeadphones.hears(0, toneHz, toneDb));

    command({"gain", "1", "-6"});
    EXPECT_TRUE(mic.hears(0, toneHz, -26));
    command({"mute", "1"});
    EXPECT_TRUE(mic.isSilentAt(0, toneHz));
    command({"mute", "1", "off"});
    EXPECT_TRUE(mic.hears(0, toneHz, -26));

    command({"volume", "microphone", "-3"});
    command({"volume", "headphones", "-12"});
    EXPECT_TRUE(mic.hears(0, toneHz, -29));
    EXPECT_TRUE(atHeadphones.hears(0, toneHz, -38));

    command({"effects", "1", "level=6"});
    EXPECT_TRUE(mic.hears(0, toneHz, -23));
    command({"bypass", "on"});
    EXPECT_TRUE(mic.hears(0, toneHz, -29));
    command({"bypass", "off"});
    EXPECT_TRUE(mic.hears(0, toneHz, -23));
    command({"effects", "1", "reset"});
    EXPECT_TRUE(mic.hears(0, toneHz, -29));

    command({"silence", "1", "on"});
    EXPECT_TRUE(atSpeakers.isSilentAt(0, toneHz));
    EXPECT_TRUE(mic.hears(0, toneHz, -29));
    command({"silence", "1", "off"});
    EXPECT_TRUE(atSpeakers.hears(0, toneHz, toneDb));

    command({"preset", "save", "Evening"});
    command({"gain", "1", "-40"});
    EXPECT_TRUE(mic.hears(0, toneHz, -63, 1.5));
    command({"off"});
    EXPECT_TRUE(mic.isSilentAt(0, toneHz));
    EXPECT_EQ(json({"status"})["running"], false);
    command({"quit"});
    EXPECT_THAT(mixer.wait(patience), Optional(0));
}

TEST_F(CommandedProgram, RefusesWithASentenceAndChangesNothing) {
    const ToneApp app(session());
    app.play("music", toneHz, toneHz, toneDb);
    ChildProcess mixer = headless();
    command({"add", playing(app.pid())});
    const auto before = json({"status"});

    for (const auto& words : std::vector<std::vector<std::string>>{{"gain", "1", "7"},
                                                                   {"gain", "1", "nan"},
                                                                   {"gain", "Nobody", "-3"},
                                                                   {"effects", "1", "echo=1"},
                                                                   {"add", "Nobody"},
                                                                   {"monitor", "Nowhere"},
                                                                   {"preset", "apply", "None"}}) {
        const Said said = velmora(words);
        EXPECT_EQ(said.status, 1) << words.front();
        EXPECT_EQ(said.output, "");
        EXPECT_THAT(said.error, AllOf(testing::StartsWith("velmora: "), testing::EndsWith(".\n")));
    }
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"jump"}, {"gain", "1"}, {"mute", "1", "perhaps"}, {"on", "--json"}}) {
        EXPECT_EQ(velmora(words).status, 2) << words.front();
    }

    EXPECT_EQ(json({"status"}), before);
}

TEST_F(CommandedProgram, SaysThatThereIsNoMixerAndOpensOneWhenAsked) {
    const Said alone = velmora({"status"});
    EXPECT_EQ(alone.status, 1);
    EXPECT_THAT(alone.error, HasSubstr("Velmora is not open. With --start"));

    const Said opened = velmora({"--start", "status"});
    EXPECT_EQ(opened.status, 0) << opened.error;
    EXPECT_THAT(opened.output, HasSubstr("Stopped\n"));
    command({"quit"});
    EXPECT_TRUE(waitUntil([&] { return velmora({"status"}).status == 1; }));
}

TEST_F(CommandedProgram, WatchesUntilTheMixerIsGone) {
    ChildProcess mixer = headless();
    ChildProcess watcher = start({VELMORA_PROGRAM, "watch"}, "watch");
    ChildProcess reader = start({VELMORA_PROGRAM, "watch", "--json"}, "reader");
    const auto lines = [&] { return textOf(home.path() / "watch.output"); };
    const auto documents = [&] { return textOf(home.path() / "reader.output"); };
    // They are there once they have seen a change.
    EXPECT_TRUE(waitUntil([&] {
        command({"bypass", "toggle"});
        return !lines().empty() && !documents().empty();
    }));
    command({"bypass", "off"});

    command({"volume", "microphone", "-3"});

    EXPECT_TRUE(waitUntil([&] { return lines().ends_with("Virtual microphone  -3.0 dB\n"); }))
        << lines();
    EXPECT_TRUE(waitUntil([&] {
        const std::string all = documents();
        const auto last = all.rfind('\n', all.size() - 2);
        const auto state =
            nlohmann::json::parse(all.substr(last == all.npos ? 0 : last + 1), nullptr, false);
        return state.is_object() && state["microphone"]["db"] == -3.0;
    })) << documents();
    command({"quit"});
    EXPECT_THAT(watcher.wait(patience), Optional(1));
    EXPECT_THAT(textOf(home.path() / "watch.error"), HasSubstr("Velmora has quit."));
}

TEST_F(CommandedProgram, NeedsADisplayForItsWindowsAloneAndSaysSo) {
    const Said said = velmora({});

    EXPECT_EQ(said.status, 1);
    EXPECT_THAT(said.error, AllOf(HasSubstr("No display"), HasSubstr("--headless")));
    auto broken = environment();
    broken["DISPLAY"] = ":7777";
    ChildProcess program({.arguments = {VELMORA_PROGRAM}, .environment = broken});
    EXPECT_THAT(program.wait(patience), Optional(1));
}

TEST_F(CommandedProgram, SaysThatItsMixerIsNotInstalled) {
    const auto copy = home.path() / "velmora";
    std::filesystem::copy_file(VELMORA_PROGRAM, copy);

    const Said said = run({copy, "--headless"});

    EXPECT_EQ(said.status, 1);
    EXPECT_THAT(said.error, HasSubstr("Velmora could not be opened."));
}

TEST_F(CommandedProgram, ExplainsItselfInTheKeptLanguageWithoutADisplay) {
    EXPECT_THAT(velmora({"--help"}).output, HasSubstr("set a source's level"));
    settings().set("language", std::string("fr"));
    EXPECT_THAT(velmora({"--help"}).output, HasSubstr("régler le niveau d'une source"));
    EXPECT_THAT(velmora({"--version"}).output, testing::StartsWith("Velmora 0.1.0 ("));
    EXPECT_EQ(velmora({"--loud"}).status, 2);
}

TEST_F(CommandedProgram, ASecondMixerIsRefused) {
    ChildProcess mixer = headless();

    const Said second = velmora({"--headless"});

    EXPECT_EQ(second.status, 1);
    EXPECT_THAT(second.error, HasSubstr("Velmora is already open."));
}

} // namespace
} // namespace velmora
