// Programs whose process nobody can tell, and programs that the session manager does not know.

#include "MixerTest.h"

#include "platform/ProgramClaim.h"

#include <array>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velmora {
namespace {

using namespace support;

/// A port that nobody listens on.
std::uint16_t freePort() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (probe < 0 || ::bind(probe, general, length) != 0 ||
        ::getsockname(probe, general, &length) != 0) {
        throw std::system_error(errno, std::generic_category(), "no port");
    }
    ::close(probe);
    return ntohs(address.sin_port);
}

class UnknownProcess : public ListeningMixerTest {
protected:
    UnknownProcess() { engine.setMonitoringSelection(interface4.name + "#3"); }
    ~UnknownProcess() override { engine.stop(); }

    /// `paplay` over the network.
    /// @param properties  what it says of itself in the place of what is so
    ChildProcess playFromAfar(const std::string& properties, double left, double right) {
        const auto file = folder.path() / (std::to_string(left) + ".wav");
        writeWav(file, makeTone({.hz = {left, right}, .db = playedDb}, 60));
        return session().start({"env", server(), "PULSE_PROP=" + properties, "paplay", file},
                               "far-paplay");
    }

    /// The only application that plays and has no process.
    AudioSource stranger() {
        std::vector<AudioSource> found;
        EXPECT_TRUE(waitUntil([&] {
            discovery.refresh();
            found.clear();
            for (const AudioSource& source : discovery.runningApps()) {
                if (source.app()->pid >= firstStandIn &&
                    discovery.playingPIDs().contains(source.app()->pid)) {
                    found.push_back(source);
                }
            }
            return found.size() == 1;
        }));
        return found.empty() ? AppSource{.pid = 0, .name = "missing", .bundleID = "missing"}
                             : found.front();
    }

    void expectHeardAndSilenced(const AudioSource& source) {
        engine.setDirectMuted(true, source);
        mix({source});
        EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
        EXPECT_TRUE(mic.hears(1, rightHz, playedDb));
        EXPECT_TRUE(atSpeakers.isSilentAt(0, leftHz));
        engine.stop();
        EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    }

    [[nodiscard]] ApplicationSound soundOf(pid_t pid) const {
        return platform.taps.sound(platform.taps.processForPid(pid).value_or(0))
            .value_or(ApplicationSound{});
    }

private:
    /// Where the Pulse protocol is spoken over the network, from now on.
    static const std::string& server() {
        static const std::string name = [] {
            const std::string port = std::to_string(freePort());
            runToEnd({"pactl",
                      "load-module",
                      "module-native-protocol-tcp",
                      "listen=127.0.0.1",
                      "port=" + port},
                     session().environment());
            return "PULSE_SERVER=tcp:127.0.0.1:" + port;
        }();
        return name;
    }
};

TEST_F(UnknownProcess, OfAPulseClientOnAnotherMachineIsHeardAndSilencedByItself) {
    const ChildProcess here = session().start({"sleep", "60"}, "sleep");
    const ChildProcess player =
        playFromAfar("application.process.id=" + std::to_string(here.pid()) +
                         " application.process.host=studio"
                         " application.process.machine-id=0123456789abcdef0123456789abcdef",
                     leftHz,
                     rightHz);

    const AudioSource source = stranger();

    EXPECT_EQ(source.name(), "paplay");
    EXPECT_FALSE(listed(here.pid()).has_value()) << "has the number by chance";
    expectHeardAndSilenced(source);
}

TEST_F(UnknownProcess, OfAPulseClientThatDoesNotSayItsNumberIsHeardAndSilencedByItself) {
    const ChildProcess player = playFromAfar("application.process.id=none", leftHz, rightHz);

    const AudioSource source = stranger();

    EXPECT_EQ(source.name(), "paplay");
    expectHeardAndSilenced(source);
}

TEST_F(UnknownProcess, IsNotThatOfAnotherClientThatCannotBeTold) {
    const ChildProcess player = playFromAfar("application.process.id=none", leftHz, rightHz);
    const AudioSource source = stranger();
    const ChildProcess other =
        playFromAfar("application.process.id=none", otherLeftHz, otherRightHz);
    ASSERT_TRUE(atSpeakers.hears(0, otherLeftHz, playedDb));

    mix({source});

    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.isSilentAt(0, otherLeftHz));
}

TEST_F(UnknownProcess, DoesNotMatterToAClientOfTheSameMachineOverTheNetwork) {
    const ChildProcess player = playFromAfar("media.role=music", leftHz, rightHz);

    const AudioSource source = playing(player.pid());

    EXPECT_EQ(source.name(), "paplay");
    expectHeardAndSilenced(source);
}

/// A filter of PipeWire's own that plays what nobody feeds it.
TEST_F(UnknownProcess, IsNoneOfAFilterThatPlaysWhichIsHeardAndHasNoSwitch) {
    const Feeder filter(
        session(), speakers.name, {1, 2}, {.hz = {leftHz, rightHz}, .db = playedDb});

    const AudioSource source = playing(filter.pid());

    mix({source});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(1, rightHz, playedDb));
    EXPECT_TRUE(atSpeakers.hears(0, leftHz, playedDb));
    EXPECT_FALSE(soundOf(filter.pid()).canBeMuted);
}

} // namespace
} // namespace velmora
