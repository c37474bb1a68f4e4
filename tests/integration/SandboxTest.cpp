// Programs in sandboxes with process namespaces of their own: every one of them counts itself as
// the same process.

#include "MixerTest.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace support;
namespace fs = std::filesystem;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Sandboxes : public ListeningMixerTest {
protected:
    ~Sandboxes() override {
        for (const auto& entry : entries_) {
            fs::remove(entry);
        }
    }

    /// The desktop entry of a program that lies in this test's folder.
    std::string
    install(const std::string& id, const std::string& name, const std::string& program) {
        entries_.push_back(session().applicationsFolder() / (id + ".desktop"));
        std::ofstream(entries_.back()) << "[Desktop Entry]\nType=Application\nName=" << name
                                       << "\nExec=" << program << "\nIcon=" << id << "\n";
        return program;
    }
    /// An installed player of the Pulse protocol.
    SandboxedPlayer::Look player(const std::string& id, const std::string& name) {
        const fs::path program = folder.path() / id;
        fs::copy_file(fs::canonical("/usr/bin/paplay"), program);
        return {.program = install(id, name, program),
                .arguments = {"--playback", "--file-format=wav"}};
    }

    /// The playing applications of this name, once there are so many.
    std::vector<AudioSource> playingAs(const std::string& name, std::size_t count) {
        std::vector<AudioSource> found;
        EXPECT_TRUE(waitUntil([&] {
            discovery.refresh();
            found.clear();
            for (const AudioSource& source : discovery.runningApps()) {
                if (source.name() == name && discovery.playingPIDs().contains(source.app()->pid)) {
                    found.push_back(source);
                }
            }
            return found.size() == count;
        })) << found.size()
            << " play as " << name;
        found.resize(count, AppSource{.pid = 0, .name = "missing", .bundleID = "missing"});
        return found;
    }
    void expectHeardWithout(double heard, double absent) {
        EXPECT_TRUE(mic.hears(0, heard, playedDb));
        EXPECT_TRUE(mic.isSilentAt(0, absent));
    }

    const Tone one{.hz = {leftHz, rightHz}, .db = playedDb};
    const Tone other{.hz = {otherLeftHz, otherRightHz}, .db = playedDb};

private:
    std::vector<fs::path> entries_;
};

TEST_F(Sandboxes, OfTwoPlayersAreTwoApplicationsEachHeardByItself) {
    const auto jukebox = player("org.example.jukebox", "Jukebox");
    const auto radio = player("org.example.radio", "Radio");
    const SandboxedPlayer first(session(), one, jukebox);
    const SandboxedPlayer second(session(), other, radio);

    const AudioSource source = playingAs("Jukebox", 1).front();
    EXPECT_EQ(source.app()->bundleID, "org.example.jukebox");
    EXPECT_EQ(platform.applications.icon(source.app()->bundleID), "org.example.jukebox");
    EXPECT_EQ(playingAs("Radio", 1).front().app()->bundleID, "org.example.radio");
    EXPECT_THAT(platform.applications.byBundleID("org.example.radio"), SizeIs(1));

    mix({source});
    expectHeardWithout(leftHz, otherLeftHz);
}

TEST_F(Sandboxes, OfOneProgramTwiceAreNeverJoined) {
    const auto jukebox = player("org.example.jukebox", "Jukebox");
    const SandboxedPlayer first(session(), one, jukebox);
    const SandboxedPlayer second(session(), other, jukebox);

    const auto twins = playingAs("Jukebox", 2);

    mix({twins.front()});
    EXPECT_TRUE(waitUntil([&] {
        return mic.toneDb(0, leftHz) > playedDb - 1 || mic.toneDb(0, otherLeftHz) > playedDb - 1;
    }));
    const bool isFirst = mic.toneDb(0, leftHz) > mic.toneDb(0, otherLeftHz);
    expectHeardWithout(isFirst ? leftHz : otherLeftHz, isFirst ? otherLeftHz : leftHz);
}

TEST_F(Sandboxes, OfAnUnknownProgramAreListedAsItCallsItself) {
    const SandboxedPlayer first(session(), one, {});
    const SandboxedPlayer second(session(), other, {});

    const auto twins = playingAs("paplay", 2);

    EXPECT_NE(twins[0].id(), twins[1].id());
}

TEST_F(Sandboxes, MadeForAnApplicationGiveItsNameToWhateverRunsInside) {
    install("org.example.Boxed", "Boxed", "true");
    install("org.example.Other", "Other", "true");
    const SandboxedPlayer first(
        session(), one, {.flatpakInfo = "[Application]\nname=org.example.Boxed\n"});
    const SandboxedPlayer second(
        session(), other, {.flatpakInfo = "[Application]\nname=org.example.Other\n"});

    const AudioSource source = playingAs("Other", 1).front();
    EXPECT_EQ(source.app()->bundleID, "org.example.Other");
    EXPECT_THAT(playingAs("Boxed", 1), SizeIs(1));

    mix({source});
    expectHeardWithout(otherLeftHz, leftHz);
}

TEST_F(Sandboxes, OfPipeWiresOwnClientsAreToldApartAsWell) {
    const SandboxedPlayer first(session(), one, {.program = "pw-play"});
    const SandboxedPlayer second(session(), other, {.program = "pw-play"});

    const auto twins = playingAs("pw-cat", 2);

    EXPECT_LT(twins[0].app()->pid, firstStandIn);
    EXPECT_LT(twins[1].app()->pid, firstStandIn);
    EXPECT_NE(twins[0].app()->pid, twins[1].app()->pid);
}

} // namespace
} // namespace velmora
