// What becomes of a mix when the sound server or its session manager is killed and started again.

#include "MixerTest.h"

#include "support/ProcessFigures.h"

#include <chrono>
#include <unistd.h>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// How long a mix may take from a known default output to being whole.
constexpr auto wholeAgain = 3s;
constexpr int rounds = 20;

class ServiceLoss : public MixerTest {
protected:
    ServiceLoss() {
        support::betweenLooks = [this, look = lookBefore_] {
            const auto begin = Clock::now();
            look();
            longestLook = std::max(longestLook, Clock::now() - begin);
        };
    }

    void TearDown() override {
        support::betweenLooks = lookBefore_;
        engine.stop();
        session().startServices(); // what a failed test left dead
        MixerTest::TearDown();
    }

    AudioSource pair(std::int64_t first) { return input(interface4.description, first, 2); }

    [[nodiscard]] bool saysServiceIsAway() const {
        return engine.isRunning() && engine.lastError() == serviceAway;
    }

    [[nodiscard]] bool isWhole() const {
        return engine.isRunning() && !engine.lastError() &&
               engine.statistics().size() == engine.sources().size();
    }

    /// Waits for the mix to be whole. Returns how long that took from the moment when a default
    /// output was known.
    Clock::duration timeToBeWhole() {
        EXPECT_TRUE(waitUntil([&] { return platform.devices.defaultOutputDevice().has_value(); }));
        const auto known = Clock::now();
        EXPECT_TRUE(waitUntil([&] { return isWhole(); }))
            << engine.lastError().value_or("no message");
        return Clock::now() - known;
    }

    /// A new client plays into the interface: the mix, which captures it, has a level.
    bool carriesSound() {
        return waitUntil([this] {
            const Feeder feeder = newFeeder();
            return waitUntil([&] { return engine.level() > 0.05F; }, clientPatience);
        });
    }

    /// And it leaves again by the microphone.
    static bool isHeard() {
        return waitUntil([] {
            const Feeder feeder = newFeeder();
            const Recorder mic(session(), microphone, {1, 2});
            return mic.hears(0, leftHz, playedDb, 0.5, clientPatience) &&
                   mic.hears(1, rightHz, playedDb, 0.5, clientPatience);
        });
    }

    struct Figures {
        std::int64_t resident{};
        std::int64_t descriptors{};
    };
    static Figures figures() {
        returnFreedMemory();
        return {.resident = residentBytes(getpid()), .descriptors = openDescriptors(getpid())};
    }

    /// Loses the service again and again by `accident`; the mix is whole again each time.
    template <typename Accident>
    void survive(Accident accident) {
        constexpr int settled = 3; // from here on nothing is made for the first time
        Figures before;
        Clock::duration slowest{};
        for (int round = 1; round <= rounds; ++round) {
            accident();
            ASSERT_TRUE(waitUntil([&] { return saysServiceIsAway(); })) << round;
            session().startServices();
            slowest = std::max(slowest, timeToBeWhole());
            ASSERT_TRUE(carriesSound()) << round;
            if (round == settled) {
                before = figures();
            }
        }
        RecordProperty("slowestMilliseconds", milliseconds(slowest));
        EXPECT_LE(milliseconds(slowest), milliseconds(wholeAgain));
        EXPECT_TRUE(isHeard());
        EXPECT_LT(longestLook, 1s) << "the main thread was held up";
        // The last program that came and went may still be taken leave of.
        EXPECT_TRUE(waitUntil([&] { return figures().descriptors <= before.descriptors; }))
            << figures().descriptors << " instead of " << before.descriptors;
        const Figures after = figures();
        RecordProperty("growthBytes", std::to_string(after.resident - before.resident));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // their own would be counted
        EXPECT_LT(after.resident - before.resident, 1 << 20);
#endif
    }

    Clock::duration longestLook{};

private:
    static Feeder newFeeder() {
        return {session(), interface4.name, {1, 2}, {.hz = {leftHz, rightHz}, .db = playedDb}};
    }

    /// A new session manager takes the devices' ports away and makes them anew. A client that is
    /// linked to them at that time stays linked without sound until it is started again; the mixer
    /// does not.
    static constexpr std::chrono::milliseconds clientPatience = 3s;
    std::function<void()> lookBefore_ = support::betweenLooks;
};

/// In a session of its own: WirePlumber 0.4.13, after so many starts beside running nodes, may link
/// nothing any more.
class ManagerLoss : public ServiceLoss {};

TEST_F(ServiceLoss, TwentyKilledDaemonsLeaveTheMixWholeAndNothingBehind) {
    mix({pair(1), pair(3)});

    survive([] { session().killDaemon(); });
}

TEST_F(ServiceLoss, AProgramThatConnectsLongAfterwardsIsInTheMixAgain) {
    const ToneApp app(session());
    app.play("music", otherLeftHz, otherRightHz, playedDb);
    const AudioSource source = playing(app.pid());
    mix({pair(1), source});
    session().killDaemon();
    ASSERT_TRUE(waitUntil([&] { return saysServiceIsAway(); }));
    session().startServices();

    // The others do not wait for it.
    EXPECT_TRUE(waitUntil([&] {
        return engine.lastError().value_or("").starts_with(source.name() + " : ");
    })) << engine.lastError().value_or("no message");
    EXPECT_TRUE(isHeard());
    EXPECT_TRUE(engine.isRunning());

    app.reconnect();
    app.play("music", otherLeftHz, otherRightHz, playedDb);
    const Recorder mic(session(), microphone, {1, 2});
    EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_TRUE(isHeard());
}

TEST_F(ServiceLoss, AMixThatTheUserStopsMeanwhileStaysStopped) {
    mix({pair(1)});
    session().killDaemon();
    ASSERT_TRUE(waitUntil([&] { return saysServiceIsAway(); }));

    engine.stop();
    session().startServices();

    EXPECT_TRUE(waitUntil([&] { return !engine.lastError(); })) << "it is back, and says so";
    const Recorder mic(session(), microphone, {1});
    EXPECT_TRUE(mic.isSilentAt(0, leftHz));
    EXPECT_FALSE(engine.isRunning());
}

TEST_F(ServiceLoss, AMixerThatIsThereBeforeTheDaemonSaysSoAndWaitsForIt) {
    const AudioSource source = pair(1);
    session().killDaemon();

    RealPlatform earlyMachine{folder.path() / "early.db"};
    AudioEngine early{earlyMachine.platform()};
    EXPECT_EQ(early.lastError(), serviceAway);
    early.replaceSources({source});
    early.start();
    EXPECT_EQ(early.lastError(), serviceAway);
    session().startServices();

    EXPECT_TRUE(isHeard());
    EXPECT_EQ(early.lastError(), std::nullopt);
    EXPECT_TRUE(early.isRunning());
}

TEST_F(ManagerLoss, TwentyKilledSessionManagersLeaveTheMixWholeAndNothingBehind) {
    mix({pair(1), pair(3)});

    survive([] { session().killManager(); });
}

} // namespace
} // namespace velmora
