#include "app/GlyphFollower.h"

#include "app/MeterGlyph.h"
#include "engine/AudioEngine.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <vector>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;

/// A picture, and when it was shown.
struct Shown {
    TrayGlyph glyph;
    std::chrono::nanoseconds at{};
};

class GlyphFollowerTest : public testing::Test {
protected:
    GlyphFollowerTest() {
        machine.addSpeakers();
        machine.addVirtualMic();
        machine.startApplication(4711, "Player", "org.player");
        machine.sound.play(4711, silence());
        engine.replaceSources({player});
    }

    void play(int step) { machine.sound.play(4711, constant(levelOfStep(step))); }
    void follow() {
        follower.emplace(engine, machine.mainQueue, [this](TrayGlyph glyph) {
            shown.push_back({glyph, machine.now()});
        });
    }
    [[nodiscard]] std::vector<TrayGlyph> glyphs() const {
        std::vector<TrayGlyph> result;
        for (const Shown& one : shown) {
            result.push_back(one.glyph);
        }
        return result;
    }

    SimulatedPlatform machine;
    AudioEngine engine{machine.platform()};
    const AudioSource player = AppSource{4711, "Player", "org.player"};
    std::vector<Shown> shown;
    std::optional<GlyphFollower> follower;
};

TEST_F(GlyphFollowerTest, ShowsTheMixerAtRestAtOnce) {
    follow();

    EXPECT_THAT(glyphs(), ElementsAre(std::nullopt));
}

TEST_F(GlyphFollowerTest, ShowsTheMeterWhileTheMixRuns) {
    follow();
    engine.start();
    machine.advance(150ms);

    EXPECT_THAT(glyphs(), ElementsAre(std::nullopt, 0));
}

TEST_F(GlyphFollowerTest, ShowsTheMixerAtRestWhateverTheLastLevelWas) {
    play(16);
    engine.start();
    machine.advance(1s);
    follow();
    ASSERT_THAT(glyphs(), ElementsAre(16));

    machine.advance(1s);
    engine.stop();

    EXPECT_THAT(glyphs(), ElementsAre(16, std::nullopt));
}

TEST_F(GlyphFollowerTest, SaysNothingWhileThePictureStaysTheSame) {
    play(8);
    engine.start();
    machine.advance(1s);
    follow();

    machine.advance(5s);

    EXPECT_THAT(glyphs(), ElementsAre(8));
}

TEST_F(GlyphFollowerTest, ShowsAtMostTenPicturesASecond) {
    machine.sound.play(4711, [](std::int64_t frame, std::size_t) {
        return frame / 19200 % 2 == 0 ? 1.0F : 0.0F; // up at once, then slowly down
    });
    follow();
    shown.clear();
    engine.start();

    machine.advance(3s);

    std::vector<std::chrono::nanoseconds> pauses;
    for (std::size_t i = 1; i < shown.size(); ++i) {
        pauses.push_back(shown[i].at - shown[i - 1].at);
    }
    EXPECT_THAT(pauses, Each(Ge(100ms)));
    EXPECT_GE(shown.size(), 10U);
}

TEST_F(GlyphFollowerTest, ShowsTheLastOfSeveralQuickChanges) {
    follow();
    play(16);
    engine.start();
    machine.advance(40ms);
    engine.stop(); // all of it within the first pause

    machine.advance(1s);

    EXPECT_THAT(glyphs(), ElementsAre(std::nullopt));
}

TEST_F(GlyphFollowerTest, IsQuietOnceItIsGone) {
    follow();
    shown.clear();
    engine.start();

    follower.reset();
    machine.advance(1s);

    EXPECT_THAT(shown, IsEmpty());
}

} // namespace
} // namespace velmora
