// BackendTest.h: the PipeWire backend by itself on a private session.
#pragma once

#include "platform/contract/BlockCollector.h"
#include "platform/pipewire/PipeWireAudio.h"
#include "platform/qt/QtMainQueue.h"
#include "support/ClientPrograms.h"
#include "support/SessionTest.h"
#include "support/ToneAnalysis.h"
#include "support/Wait.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

inline constexpr std::size_t quarterSecond = 12000; // frames
inline constexpr double playedDb = -20;
inline constexpr double tolerance = 0.2; // dB
inline constexpr double silentDb = -80;

/// A sine on both sides.
class SteadyTone {
public:
    explicit SteadyTone(double hz) : hz_(hz) {}

    void operator()(std::int64_t frames, std::span<float* const> channels) {
        for (std::int64_t at = 0; at < frames; ++at) {
            const double phase = 2 * std::numbers::pi * hz_ * static_cast<double>(frame_++) / 48000;
            const auto value = static_cast<float>(support::fromDb(playedDb) * std::sin(phase));
            channels[0][at] = value;
            channels[1][at] = value;
        }
    }

private:
    double hz_;
    std::int64_t frame_ = 0;
};

/// A tap that keeps the first `frames` frames of what it hears.
class HeardTap {
public:
    HeardTap(ApplicationTaps& taps,
             AudioObjectID process,
             ApplicationTaps::Mute mute,
             std::size_t frames = 2 * quarterSecond,
             float divisor = 1.0F)
        : heard_(std::make_shared<BlockCollector>(2 * frames)) {
        auto opened = taps.open(process, mute, divisor, [heard = heard_](const TapBlock& block) {
            heard->add({block.data, static_cast<std::size_t>(block.samples)});
        });
        EXPECT_TRUE(opened.has_value());
        if (opened) {
            tap_ = *std::move(opened);
        }
    }

    void release() { tap_.reset(); }
    [[nodiscard]] bool isAlive() const { return tap_ && tap_->isAlive(); }
    [[nodiscard]] const BlockCollector& heard() const { return *heard_; }
    /// Level of a tone at the end of what was kept.
    [[nodiscard]] double db(std::size_t side, double hz) const {
        return support::toneDb(sideOf(heard_->latest(2 * quarterSecond), side), hz);
    }

private:
    std::shared_ptr<BlockCollector> heard_;
    std::unique_ptr<ApplicationTap> tap_;
};

class BackendTest : public support::SessionTest {
protected:
    AudioDevices& devices() { return audio.devices(); }
    ApplicationTaps& taps() { return audio.taps(); }

    std::optional<AudioObjectID> find(const std::string& uid) {
        for (const AudioObjectID device :
             devices().devices().value_or(std::vector<AudioObjectID>{})) {
            if (devices().deviceUID(device) == uid) {
                return device;
            }
        }
        return std::nullopt;
    }

    AudioObjectID processOf(std::int32_t pid) {
        AudioObjectID process = 0;
        EXPECT_TRUE(support::waitUntil([&] {
            process = taps().processForPid(pid).value_or(0);
            return process != 0;
        })) << "process "
            << pid << " has not played";
        return process;
    }

    /// A unit that plays a tone to the device from now on.
    std::unique_ptr<OutputUnit> play(const std::string& uid, double hz = 440) {
        auto unit = audio.units().makeOutput();
        EXPECT_EQ(unit->setDevice(find(uid).value_or(0)), statusOk);
        EXPECT_EQ(unit->start(SteadyTone(hz)), statusOk);
        return unit;
    }

    QtMainQueue queue;
    PipeWireAudio audio{queue};
};

} // namespace velmora
