// SilencedRestarts.h: an application in the mix, silent on its own output, that stops and starts.
#pragma once

#include "MixerTest.h"

#include "support/ThreadWaits.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

namespace velmora {

/// The second copy of the mix goes to the interface, so that the speakers hold direct sound only.
class SilencedRestarts : public ListeningMixerTest {
protected:
    /// One start of its stream.
    struct Restart {
        std::chrono::duration<double, std::milli> heard;       ///< on the speakers
        std::chrono::duration<double, std::milli> longestWait; ///< of our control thread
    };

    /// It went by unheard, or our control thread was not let run in time.
    static bool isExcusable(const Restart& restart) {
        using namespace std::chrono_literals;
        return restart.heard == 0ms || restart.longestWait > 2ms;
    }

    std::vector<Restart> restart(int times) {
        engine.setMonitoringSelection(support::interface4.name + "#3");
        app.play("music", leftHz, rightHz, playedDb);
        const AudioSource source = playing(app.pid());
        engine.setDirectMuted(true, source);
        mix({source});
        EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
        support::ThreadWaits waits(support::threadNamed("velmora-control"));
        std::vector<Restart> restarts;
        for (int count = 0; count < times; ++count) {
            app.stop("music");
            EXPECT_TRUE(support::waitUntil([&] { return levelInMix() < -60; }));
            const std::size_t from = atSpeakers.frames();
            static_cast<void>(waits.takeLongest());
            app.play("music", leftHz, rightHz, playedDb);
            EXPECT_TRUE(support::waitUntil([&] { return levelInMix() > playedDb - 1; }));
            const auto longestWait = waits.takeLongest();
            EXPECT_TRUE(atSpeakers.waitForMore(afterwards));
            restarts.push_back({.heard = heardSince(from), .longestWait = longestWait});
        }
        return restarts;
    }

private:
    static constexpr std::size_t afterwards = 4800; // frames; more than a recorder holds back

    [[nodiscard]] double levelInMix() const {
        return support::toneDb(mic.latest(0.05).channel(0), leftHz);
    }

    [[nodiscard]] std::chrono::duration<double, std::milli> heardSince(std::size_t from) const {
        const double audible = support::fromDb(-60);
        const auto samples =
            atSpeakers.latest(static_cast<double>(atSpeakers.frames() - from) / 48000).channel(0);
        const auto loud = std::ranges::count_if(
            samples, [&](float sample) { return std::abs(sample) > audible; });
        return std::chrono::duration<double, std::milli>(static_cast<double>(loud) / 48);
    }

    support::ToneApp app{session()};
};

} // namespace velmora
