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

/// A started tap, which keeps the first `frames` frames of what it hears.
class HeardTap {
public:
    HeardTap(AudioHardware& hardware,
             AudioObjectID process,
             MuteBehavior mute,
             std::size_t frames = 2 * quarterSecond)
        : hardware_(hardware), heard_(std::make_shared<BlockCollector>(2 * frames)) {
        static int made = 0;
        const std::string uuid = "heard-tap-" + std::to_string(++made);
        tap_ = hardware.createTap({.process = process, .uuid = uuid, .mute = mute}).value_or(0);
        AggregateDescription description;
        description.taps = {uuid};
        device_ = hardware.createAggregate(description).value_or(0);
        proc_ =
            hardware
                .createIOProc(device_,
                              [heard = heard_](std::span<IOBuffer> buffers) {
                                  for (const IOBuffer& one : buffers) {
                                      heard->add({one.data, static_cast<std::size_t>(one.samples)});
                                  }
                              })
                .value_or(0);
        started_ = hardware.startDevice(device_, proc_);
    }
    ~HeardTap() { release(); }
    HeardTap(const HeardTap&) = delete;
    HeardTap& operator=(const HeardTap&) = delete;

    void release() {
        hardware_.stopDevice(device_, proc_);
        hardware_.destroyIOProc(device_, proc_);
        hardware_.destroyAggregate(device_);
        hardware_.destroyTap(tap_);
    }

    [[nodiscard]] Status started() const { return started_; }
    [[nodiscard]] Status startAgain() const { return hardware_.startDevice(device_, proc_); }
    [[nodiscard]] const BlockCollector& heard() const { return *heard_; }
    /// Level of a tone at the end of what was kept.
    [[nodiscard]] double db(std::size_t side, double hz) const {
        return support::toneDb(sideOf(heard_->latest(2 * quarterSecond), side), hz);
    }

private:
    AudioHardware& hardware_;
    std::shared_ptr<BlockCollector> heard_;
    AudioObjectID tap_{};
    AudioObjectID device_{};
    IOProcID proc_{};
    Status started_{};
};

class BackendTest : public support::SessionTest {
protected:
    AudioHardware& hardware() { return audio.hardware(); }

    std::optional<AudioObjectID> find(const std::string& uid) {
        for (const AudioObjectID device :
             hardware().devices().value_or(std::vector<AudioObjectID>{})) {
            if (hardware().deviceUID(device) == uid) {
                return device;
            }
        }
        return std::nullopt;
    }

    AudioObjectID processOf(std::int32_t pid) {
        AudioObjectID process = 0;
        EXPECT_TRUE(support::waitUntil([&] {
            process = hardware().processForPid(pid).value_or(0);
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
