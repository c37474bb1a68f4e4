#include "engine/Audience.h"

#include "capture/DeviceQueries.h"
#include "engine/MeterBank.h"
#include "platform/ApplicationTaps.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace velmora {
namespace {

/// A program that starts to record, or begins anew, is waited for.
constexpr int patience = 2 * meterTicksPerSecond;
/// Between two songs, or two sentences.
constexpr int longestSilence = 5 * meterTicksPerSecond;
constexpr float wholeVolume = 0.999F; // linear; mixers round

} // namespace

Audience::Audience(const Platform& platform)
    : platform_(platform), silentTicks_(longestSilence),
      connection_(platform.devices.changed().connect([this] { followService(); })) {
    followService();
}

void Audience::followService() {
    const auto published = [this] { return std::tuple(isMissing_, processes(), reduction()); };
    const auto before = published();
    const AudioDevices& devices = platform_.devices;
    microphone_ = findMixMicrophone(devices);
    recorders_ = microphone_ ? devices.recorders(*microphone_) : std::nullopt;
    volume_ = microphone_ ? devices.recordingVolume(*microphone_) : std::nullopt;
    if (hasListeners()) {
        unheardTicks_ = 0;
        isMissing_ = false;
    }
    if (published() != before) {
        changed_.emit();
    }
}

void Audience::tick(bool isSounding) {
    silentTicks_ = isSounding ? 0 : std::min(silentTicks_ + 1, longestSilence);
    const bool isUnheard = silentTicks_ < longestSilence && !hasListeners();
    unheardTicks_ = isUnheard ? std::min(unheardTicks_ + 1, patience) : 0;
    const bool isMissing = unheardTicks_ == patience;
    if (std::exchange(isMissing_, isMissing) != isMissing) {
        changed_.emit();
    }
}

void Audience::rest() {
    silentTicks_ = longestSilence;
    unheardTicks_ = 0;
    isMissing_ = false;
}

std::vector<AudioObjectID> Audience::processes() const {
    return recorders_ ? recorders_->processes : std::vector<AudioObjectID>{};
}

bool Audience::includes(const AudioSource& source) const {
    const auto* const app = source.app();
    if (app == nullptr || !recorders_ || recorders_->processes.empty()) {
        return false;
    }
    const AudioObjectID process = platform_.taps.processForPid(app->pid).value_or(0);
    return process != 0 && std::ranges::binary_search(recorders_->processes, process);
}

std::optional<DeviceVolume> Audience::reduction() const {
    const bool isLess = volume_ && (volume_->isMuted || volume_->linear < wholeVolume);
    return isLess ? volume_ : std::nullopt;
}

void Audience::restoreVolume() {
    if (microphone_) {
        platform_.devices.setRecordingVolume(*microphone_, {});
    }
}

} // namespace velmora
