#include "operations/PushToTalk.h"

#include "operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::Each;

class PushToTalkTest : public OperationsFixture {
protected:
    PushToTalkTest() {
        engine.replaceSources({player});
        engine.start();
    }

    /// What the virtual microphone carries, once a fade has passed.
    std::vector<float> heardInMic() {
        machine.advanceCycles(10);
        machine.sound.forgetHeard();
        machine.advanceCycles(2);
        return machine.sound.heard(mic, 1);
    }
};

TEST_F(PushToTalkTest, OpensTheMicrophoneWhileTheKeyIsHeldOnly) {
    EXPECT_THAT(heardInMic(), Each(0.25F));
    talk.setOn(true);
    EXPECT_THAT(heardInMic(), Each(0.0F));
    talk.hold(true);
    EXPECT_THAT(heardInMic(), Each(0.25F));
    talk.hold(false);
    EXPECT_THAT(heardInMic(), Each(0.0F));
}

TEST_F(PushToTalkTest, OpensTheMicrophoneWhenItIsSwitchedOff) {
    talk.setOn(true);
    heardInMic();

    talk.setOn(false);

    EXPECT_THAT(heardInMic(), Each(0.25F));
    EXPECT_FALSE(engine.isMicrophoneClosed());
}

TEST_F(PushToTalkTest, AKeyChangesNothingWhileItIsOff) {
    talk.hold(true);
    talk.hold(false);

    EXPECT_FALSE(engine.isMicrophoneClosed());
}

TEST_F(PushToTalkTest, IsNeitherKeptNorInAPreset) {
    talk.setOn(true);
    command("preset save Closed");
    talk.setOn(false);

    command("preset apply Closed");
    EXPECT_FALSE(talk.isOn());
    EXPECT_FALSE(engine.isMicrophoneClosed());

    talk.setOn(true);
    command("preset apply Closed");
    EXPECT_TRUE(engine.isMicrophoneClosed());
    AudioEngine later(machine.platform());
    EXPECT_FALSE(PushToTalk(later).isOn());
    EXPECT_FALSE(later.isMicrophoneClosed());
}

} // namespace
} // namespace velmora
