// DAW mode, as music software and the programs behind both ends meet it.
//
// VELMORA_ALIGNMENT_SECONDS=60 makes the alignment test listen for a minute.

#include "MixerTest.h"

#include "capture/DAWModeManager.h"
#include "capture/DeviceQueries.h"

#include <cmath>
#include <cstdlib>
#include <random>
#include <span>

namespace velmora {
namespace {

using namespace support;

const std::string dawDevice = "app.velmora.daw.aggregate";
constexpr std::size_t second = 48000; // frames

std::size_t alignmentSeconds() {
    const char* const chosen = std::getenv("VELMORA_ALIGNMENT_SECONDS");
    return chosen == nullptr ? 15 : std::strtoul(chosen, nullptr, 10);
}

/// White, so that only the very same moment resembles itself.
Sound noise(std::size_t seconds) {
    Sound sound;
    std::mt19937 random(1);
    std::uniform_real_distribution<float> values(-0.25F, 0.25F);
    sound.samples.resize(2 * seconds * second);
    std::ranges::generate(sound.samples, [&] { return values(random); });
    return sound;
}

/// The frame after which a tenth of a second has no silent sample in `channel`.
std::optional<std::size_t> onset(const std::vector<float>& channel) {
    const auto isSound = [](float sample) { return sample != 0.0F; };
    const auto first = std::ranges::search_n(channel, second / 10, true, {}, isSound);
    return first.empty() ? std::nullopt
                         : std::optional(static_cast<std::size_t>(first.begin() - channel.begin()));
}

/// How many frames `late` runs behind `early` (negative: ahead), from the `length` frames at `at`.
std::ptrdiff_t lag(std::span<const float> early, std::span<const float> late, std::size_t at) {
    constexpr std::ptrdiff_t widest = 2048; // the session's largest block
    constexpr std::size_t length = second / 20;
    std::ptrdiff_t best = 0;
    double bestLikeness = -1;
    for (std::ptrdiff_t shift = -widest; shift <= widest; ++shift) {
        double likeness = 0;
        for (std::size_t i = at; i < at + length; ++i) {
            const auto shifted = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(i) + shift);
            likeness += static_cast<double>(early[i]) * static_cast<double>(late[shifted]);
        }
        if (likeness > bestLikeness) {
            bestLikeness = likeness;
            best = shift;
        }
    }
    return best;
}

class DawMode : public MixerTest {
protected:
    ~DawMode() override { manager.setEnabled(false); }

    DAWModeManager manager{platform};
};

TEST_F(DawMode, BothEndsCarryTheSameSoundAndStayAligned) {
    const std::size_t seconds = alignmentSeconds();
    manager.setInterfaceUID(speakers.name);
    manager.setEnabled(true);
    ASSERT_EQ(manager.lastError(), std::nullopt);
    // Both sides of the interface, then both of the microphone.
    const Recorder ends(session(),
                        speakers.name + "," + speakers.name + "," + microphone + "," + microphone,
                        {1, 2, 1, 2});
    const TargetedPlayer player(session(), dawDevice, noise(seconds + 5));

    std::optional<std::size_t> start;
    ASSERT_TRUE(waitUntil([&] { return (start = onset(ends.all().channel(0))).has_value(); }));
    const std::size_t end = *start + seconds * second;
    ASSERT_TRUE(waitUntil([&] { return ends.frames() >= end + second; },
                          std::chrono::seconds(seconds + 30)));

    const Sound heard = ends.all();
    for (const std::uint32_t side : {0U, 1U}) {
        const auto interface = heard.channel(side);
        const auto mic = heard.channel(side + 2);
        // The end that is the clock may be heard one block later than the other.
        const std::ptrdiff_t atFirst = lag(interface, mic, *start + second);
        RecordProperty("lagFrames", static_cast<int>(atFirst));
        EXPECT_EQ(lag(interface, mic, end), atFirst);
        for (std::size_t at = *start + second; at < end; ++at) {
            const auto there = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(at) + atFirst);
            ASSERT_EQ(mic[there], interface[at]) << "side " << side << ", frame " << at - *start;
        }
    }
}

TEST_F(DawMode, ALaterRunFindsTheDeviceAndReplacesIt) {
    manager.setInterfaceUID(speakers.name);
    manager.setEnabled(true);
    ASSERT_TRUE(session().graph().linked(dawDevice, speakers.name));

    DAWModeManager later(platform);
    EXPECT_EQ(later.lastError(), std::nullopt);
    EXPECT_TRUE(session().graph().linked(dawDevice, microphone));
    later.setInterfaceUID(interface4.name);
    EXPECT_TRUE(waitUntil([&] { return session().graph().linked(dawDevice, interface4.name); }));
    EXPECT_FALSE(session().graph().linked(dawDevice, speakers.name));
    later.setEnabled(false);

    EXPECT_EQ(findDevice(platform.devices, dawDevice), std::nullopt);
}

TEST_F(DawMode, TheDeviceOutlivesTheProgram) {
    {
        RealPlatform earlier(folder.path() / "earlier.db");
        DAWModeManager ended(earlier.platform());
        ended.setInterfaceUID(interface4.name);
        ended.setEnabled(true);
        ASSERT_EQ(ended.lastError(), std::nullopt);
    }

    EXPECT_TRUE(session().graph().linked(dawDevice, interface4.name));
    EXPECT_TRUE(session().graph().linked(dawDevice, microphone));
}

} // namespace
} // namespace velmora
