// Input devices that vanish under a running mix, and come back.

#include "MixerTest.h"

#include <array>
#include <chrono>
#include <cmath>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

/// A microphone that sings by itself, so that nothing but its own link can click.
class InputLoss : public ListeningMixerTest {
protected:
    InputLoss() { engine.setMonitoringSelection(interface4.name + "#3"); }

    void TearDown() override {
        engine.stop();
        ListeningMixerTest::TearDown();
    }

    void plugIn() const {
        box.sing(singer, leftHz, leftHz, playedDb);
        EXPECT_TRUE(waitUntil([] { return isThere(); }));
    }
    void unplug() const {
        box.stop(singer);
        EXPECT_TRUE(waitUntil([] { return !isThere(); }));
    }
    static bool isThere() {
        const AudioGraph graph = session().graph();
        const GraphNode* const node = graph.node(singer);
        return node != nullptr && node->outputPorts > 0;
    }

    /// Whom the mix listens to.
    static std::set<std::string> heard() {
        std::set<std::string> names;
        const AudioGraph graph = session().graph();
        for (const GraphLink& link : graph.links()) {
            if (link.to.starts_with("velmora.mix.")) {
                names.insert(link.from);
            }
        }
        return names;
    }

    /// The sharpest edge of the tone's first 50 ms: the largest second difference of neighbouring
    /// samples. What an overloaded machine drops later is not counted.
    static float sharpestEdge(std::span<const float> samples) {
        const auto loud = std::ranges::find_if(samples, [](float one) { return one > 0.002F; });
        const auto onset = static_cast<std::size_t>(loud - samples.begin());
        const std::size_t begin = onset - std::min<std::size_t>(onset, 480);
        float sharpest = 0;
        for (std::size_t at = begin; at + 2 < std::min(begin + 2400, samples.size()); ++at) {
            sharpest =
                std::max(sharpest, std::abs(samples[at + 2] - 2 * samples[at + 1] + samples[at]));
        }
        return sharpest;
    }

    /// Away for so long, back under another number, heard again without a click.
    void comesBackAfter(std::chrono::milliseconds absence) {
        plugIn();
        const AudioSource source = input(singer, 1, 2);
        const ToneApp app(session());
        app.play("music", otherLeftHz, otherRightHz, besideDb);
        mix({source, playing(app.pid())});
        ASSERT_TRUE(mic.hears(0, leftHz, playedDb));
        EXPECT_EQ(heard(), (std::set<std::string>{"music", singer}));
        const auto number = session().graph().node(singer)->id;

        unplug();
        // They take the numbers that have come free, of which the lowest are given first.
        const std::array takers{Recorder(session(), speakers.name, {1}),
                                Recorder(session(), speakers.name, {1}),
                                Recorder(session(), speakers.name, {1})};
        static_cast<void>(waitUntil([] { return false; }, absence));
        EXPECT_TRUE(mic.isSilentAt(0, leftHz));
        EXPECT_TRUE(mic.hears(0, otherLeftHz, besideDb)) << "only its own source is silent";
        EXPECT_EQ(heard(), std::set<std::string>{"music"}) << "nothing in its place";
        const float edge = edgeOfReturn();
        EXPECT_EQ(heard(), (std::set<std::string>{"music", singer}));
        EXPECT_NE(session().graph().node(singer)->id, number);
        EXPECT_LT(edge, sharpestAllowed);
    }

    float edgeOfReturn() {
        const std::size_t from = mic.frames();
        plugIn();
        EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
        return sharpestEdge(mic.all().channel(0, from));
    }

    /// With w = 2π 440 / 48000 = 0.058 the sine's own second difference is at most 0.1 w² =
    /// 0.00033. Where it begins on a zero, its edge is 0.1 w = 0.0058, elsewhere more.
    static constexpr float sharpestAllowed = 0.0015F;

    /// Too quiet to count: on a starved machine the whole graph now and then leaves out a block
    /// when a node joins it, an edge of twice the amplitude that is not the device's.
    static constexpr double besideDb = -80;

    static inline const std::string singer = "test.singer";
    const ToneApp box{session()};
};

TEST_F(InputLoss, ATenthOfASecondLaterItIsHeardAgain) {
    comesBackAfter(100ms);
}

TEST_F(InputLoss, ThreeSecondsLaterItIsHeardAgain) {
    comesBackAfter(3s);
}

TEST_F(InputLoss, ThirtySecondsLaterItIsHeardAgain) {
    comesBackAfter(30s);
}

} // namespace
} // namespace velmora
