#include "operations/ShortcutKeys.h"

#include "operations/OperationsFixture.h"

#include <gmock/gmock.h>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using Json = nlohmann::json;
using State = GlobalShortcuts::State;

class ShortcutKeysTest : public OperationsFixture {
protected:
    ShortcutKeysTest() { machine.shortcuts.appear(); }

    void useThem() { keys->use(true); }
    void tap(const std::string& id) {
        machine.shortcuts.press(id);
        machine.shortcuts.release(id);
    }
    /// What was said since the last time.
    std::vector<std::string> said() { return std::exchange(machine.notices.shown, {}); }
    /// The next run of the program.
    void restart() {
        keys.reset();
        keys = std::make_unique<ShortcutKeys>(parts);
    }

    std::unique_ptr<ShortcutKeys> keys = std::make_unique<ShortcutKeys>(parts);
};

TEST_F(ShortcutKeysTest, AskForNothingUntilTheUserWantsThem) {
    EXPECT_EQ(keys->state(), State::unused);
    EXPECT_FALSE(keys->areUsed());

    useThem();

    EXPECT_EQ(keys->state(), State::bound);
    EXPECT_THAT(machine.shortcuts.wanted(), SizeIs(5));
    EXPECT_EQ(machine.shortcuts.wanted().front().description, "Start or stop the mix");
    EXPECT_EQ(keys->keys().at(2).does, "Push to talk");
    EXPECT_EQ(keys->keys().at(2).trigger, "CTRL+LOGO+t");
}

TEST_F(ShortcutKeysTest, AreBoundAgainInTheNextRun) {
    useThem();
    restart();
    EXPECT_EQ(keys->state(), State::bound);

    keys->use(false);
    restart();
    EXPECT_EQ(keys->state(), State::unused);
}

TEST_F(ShortcutKeysTest, AreNotAskedForAgainOnceTheUserRefused) {
    machine.shortcuts.refuse();
    useThem();
    EXPECT_EQ(keys->state(), State::refused);
    EXPECT_FALSE(keys->areUsed());

    machine.shortcuts.allow();
    restart();
    EXPECT_EQ(keys->state(), State::unused);
}

TEST_F(ShortcutKeysTest, StayWantedWhenTheDesktopGoesOrFails) {
    useThem();
    machine.shortcuts.fail();
    restart();
    EXPECT_EQ(keys->state(), State::bound);

    machine.shortcuts.vanish();
    EXPECT_EQ(keys->state(), State::unavailable);
    machine.shortcuts.appear();
    EXPECT_EQ(keys->state(), State::bound);
}

TEST_F(ShortcutKeysTest, SwitchTheMixAndSayWhatIsSo) {
    engine.replaceSources({player});
    useThem();

    tap("mix");
    EXPECT_TRUE(engine.isRunning());
    EXPECT_THAT(said(), ElementsAre("The mix is running"));
    tap("mix");
    EXPECT_FALSE(engine.isRunning());
    EXPECT_THAT(said(), ElementsAre("The mix is stopped"));
}

TEST_F(ShortcutKeysTest, SayWhyTheMixDoesNotStart) {
    useThem();

    tap("mix");

    EXPECT_FALSE(engine.isRunning());
    EXPECT_THAT(said(), ElementsAre(command("on").error));
}

TEST_F(ShortcutKeysTest, MuteTheMicrophoneAndBringItsVolumeBack) {
    engine.setStreamVolume(0.5F);
    engine.replaceSources({player});
    engine.start();
    useThem();

    tap("mute");
    EXPECT_EQ(engine.streamVolume(), 0.0F);
    EXPECT_THAT(said(), ElementsAre("The virtual microphone is muted"));
    tap("mute");
    EXPECT_EQ(engine.streamVolume(), 0.5F);
    EXPECT_THAT(said(), ElementsAre("The microphone is open"));
}

TEST_F(ShortcutKeysTest, BypassTheEffects) {
    useThem();

    tap("bypass");
    EXPECT_TRUE(engine.fxBypassed());
    tap("bypass");

    EXPECT_THAT(said(), ElementsAre("Effects bypassed", "Effects heard"));
}

TEST_F(ShortcutKeysTest, RecallTheNextPresetOrSayThatThereIsNone) {
    useThem();
    tap("preset");
    EXPECT_THAT(said(), ElementsAre(HasSubstr("no preset yet")));
    command("preset save One");
    command("preset save Two");

    tap("preset");
    tap("preset");

    EXPECT_THAT(said(), ElementsAre("Preset “One”", "Preset “Two”"));
    EXPECT_EQ(presets.active()->name, "Two");
}

TEST_F(ShortcutKeysTest, OpenTheMicrophoneWhileTheKeyForItIsHeld) {
    engine.replaceSources({player});
    engine.start();
    useThem();
    ASSERT_EQ(command("push-to-talk on"), done);
    EXPECT_TRUE(engine.isMicrophoneClosed());

    machine.shortcuts.press("talk");
    EXPECT_FALSE(engine.isMicrophoneClosed());
    machine.shortcuts.release("talk");
    EXPECT_TRUE(engine.isMicrophoneClosed());

    EXPECT_THAT(
        said(),
        ElementsAre("The microphone is open", "The microphone is closed: hold the key to talk"));
}

TEST_F(ShortcutKeysTest, SayThatTheKeyForTheMicrophoneDoesNothingWhilePushToTalkIsOff) {
    useThem();

    tap("talk");

    EXPECT_FALSE(engine.isMicrophoneClosed());
    EXPECT_THAT(said(), ElementsAre("Push to talk is off: the key changes nothing"));
}

TEST_F(ShortcutKeysTest, CloseTheMicrophoneWhenTheDesktopVanishesWhileTheKeyIsHeld) {
    useThem();
    talk.setOn(true);
    machine.shortcuts.press("talk");
    ASSERT_FALSE(engine.isMicrophoneClosed());

    machine.shortcuts.vanish();

    EXPECT_TRUE(engine.isMicrophoneClosed());
    EXPECT_EQ(command("push-to-talk off"), done);
    EXPECT_FALSE(engine.isMicrophoneClosed());
}

TEST_F(ShortcutKeysTest, GivenUpTheyOpenTheMicrophone) {
    useThem();
    talk.setOn(true);

    keys->use(false);

    EXPECT_FALSE(talk.isOn());
    EXPECT_FALSE(engine.isMicrophoneClosed());
}

TEST_F(ShortcutKeysTest, PushToTalkIsRefusedWhereNoKeyCouldOpenTheMicrophone) {
    const CommandReply refused = command("push-to-talk on");

    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.error, HasSubstr("settings"));
    EXPECT_FALSE(engine.isMicrophoneClosed());
    EXPECT_EQ(command("push-to-talk off"), done);
}

TEST_F(ShortcutKeysTest, StatusSaysThatTheMicrophoneIsClosed) {
    EXPECT_EQ(Json::parse(command("status --json").output)["microphone"]["closed"], false);
    useThem();
    command("push-to-talk");

    EXPECT_EQ(Json::parse(command("status --json").output)["microphone"]["closed"], true);
    EXPECT_THAT(command("status").output, HasSubstr("0.0 dB, closed by push to talk\n"));
}

TEST_F(ShortcutKeysTest, TellEachChange) {
    int told = 0;
    const auto connection = keys->changed().connect([&] { ++told; });

    useThem();
    EXPECT_GT(told, 0);
    told = 0;
    talk.setOn(true);
    EXPECT_EQ(told, 1);
    machine.shortcuts.vanish();
    EXPECT_EQ(told, 2);
}

} // namespace
} // namespace velmora
