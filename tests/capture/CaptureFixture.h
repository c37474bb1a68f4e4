// CaptureFixture.h: a machine and the boxes that a capture writes into.
#pragma once

#include "capture/SourceCapture.h"
#include "effects/EffectsChain.h"
#include "engine/realtime/LevelMeter.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/RingBuffer.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace velmora {

class CaptureFixture : public testing::Test {
protected:
    static constexpr std::int32_t player = 4711;
    static constexpr std::size_t blockFloats = 256; // 128 frames

    CaptureFixture() { machine.startApplication(player, "Player", "org.player"); }

    /// Everything that the ring holds.
    static std::vector<float> drain(RingBuffer& ring) {
        std::vector<float> samples(static_cast<std::size_t>(ring.availableToRead()));
        ring.read(samples.data(), static_cast<std::int64_t>(samples.size()));
        return samples;
    }

    /// What the stream ring receives during one cycle.
    std::vector<float> captureOneBlock() {
        boxes.streamRing->clear();
        machine.advanceCycles(1);
        return drain(*boxes.streamRing);
    }

    /// `signal` from the machine's next frame on, interleaved, after `chain`.
    std::vector<float> processedBlock(EffectsChain& chain, const Waveform& signal, float gain) {
        const auto first = static_cast<std::int64_t>(machine.sound.heard(speakers, 1).size());
        std::vector<float> block;
        for (std::int64_t frame = first; frame < first + 128; ++frame) {
            block.push_back(gain * signal(frame, 0));
            block.push_back(gain * signal(frame, 1));
        }
        chain.process(block.data(), static_cast<std::int64_t>(block.size()));
        return block;
    }

    SimulatedPlatform machine;
    AudioObjectID speakers = machine.addSpeakers();
    CaptureBoxes boxes{.streamRing = std::make_shared<RingBuffer>(192000),
                       .monitorRing = std::make_shared<RingBuffer>(192000),
                       .gain = std::make_shared<ParamBox>(1.0F),
                       .fx = std::make_shared<EffectsChain>(),
                       .meter = std::make_shared<LevelMeter>()};
    const SimulatedSound::Census nothingLeft{};
};

/// What `action` throws, as the user reads it.
template <typename Action>
std::string messageOf(Action action) {
    try {
        action();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "nothing was thrown";
}

} // namespace velmora
