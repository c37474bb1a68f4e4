#include "support/Recording.h"

#include "support/ToneAnalysis.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <system_error>

namespace velmora::support {
namespace {

constexpr double heardSeconds = 0.25;
constexpr std::uint32_t recordedHz = 48000;
constexpr auto heardFrames = static_cast<std::size_t>(heardSeconds * recordedHz);

} // namespace

std::size_t Recording::frames() const {
    std::error_code absent;
    const auto bytes = std::filesystem::file_size(file_, absent);
    return absent ? 0 : bytes / (channels_ * sizeof(float));
}

Sound Recording::all() const {
    return latest(static_cast<double>(frames()) / recordedHz);
}

Sound Recording::latest(double seconds) const {
    Sound sound{.samples = {}, .channels = channels_, .rateHz = recordedHz};
    const std::size_t present = frames();
    const auto wanted =
        std::min(present, static_cast<std::size_t>(std::llround(seconds * recordedHz)));
    sound.samples.resize(wanted * channels_);
    std::ifstream in(file_, std::ios::binary);
    in.seekg(static_cast<std::streamoff>((present - wanted) * channels_ * sizeof(float)));
    in.read(reinterpret_cast<char*>(sound.samples.data()),
            static_cast<std::streamsize>(sound.samples.size() * sizeof(float)));
    return sound;
}

double Recording::toneDb(std::uint32_t channel, double hz) const {
    const auto samples = latest(heardSeconds).channel(channel);
    return support::toneDb(samples.size() < heardFrames ? std::vector<float>{} : samples, hz);
}

bool Recording::waitForMore(std::size_t more, std::chrono::milliseconds limit) const {
    const std::size_t enough = frames() + more;
    return waitUntil([&] { return frames() >= enough; }, limit);
}

bool Recording::waitForFreshSound() const {
    return waitForMore(heardFrames);
}

bool Recording::hears(std::uint32_t channel,
                      double hz,
                      double db,
                      double tolerance,
                      std::chrono::milliseconds limit) const {
    return waitUntil([&] { return std::abs(toneDb(channel, hz) - db) <= tolerance; }, limit);
}

bool Recording::isSilentAt(std::uint32_t channel, double hz, double threshold) const {
    return waitForFreshSound() && waitUntil([&] { return toneDb(channel, hz) < threshold; });
}

} // namespace velmora::support
