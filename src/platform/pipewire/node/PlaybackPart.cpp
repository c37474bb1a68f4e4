#include "platform/pipewire/node/PlaybackPart.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace velmora::pipewire {

PlaybackPart::PlaybackPart(RenderCallback render)
    : render_(std::move(render)), unheardLeft_(static_cast<std::size_t>(largestBlockFrames)),
      unheardRight_(static_cast<std::size_t>(largestBlockFrames)) {
}

StatusOr<std::unique_ptr<PlaybackPart>> PlaybackPart::open(std::shared_ptr<MixNode> node,
                                                           RenderCallback render) {
    std::unique_ptr<PlaybackPart> playback(new PlaybackPart(std::move(render)));
    auto part = MixPart::open(
        std::move(node), {.kind = MixPart::Kind::output, .ports = playbackPortCount}, *playback);
    if (!part) {
        return std::unexpected(part.error());
    }
    playback->part_ = *std::move(part);
    return playback;
}

void PlaybackPart::process(const MixPart& part, std::uint32_t frames) noexcept {
    Ports ports{};
    for (std::size_t at = 0; at < ports.size(); ++at) {
        ports[at] = part.buffer(at, frames);
    }
    const bool isLinked = std::ranges::any_of(ports, [](float* port) { return port != nullptr; });
    if (isLinked && !std::exchange(isHeard_, true)) {
        dropWhatCameBefore();
    }
    const std::size_t largest = unheardLeft_.size();
    for (std::size_t done = 0; done < frames; done += largest) {
        render(ports, done, std::min(frames - done, largest));
    }
}

void PlaybackPart::dropWhatCameBefore() noexcept {
    static_assert(largestBacklogFrames <= largestBlockFrames);
    render({}, 0, static_cast<std::size_t>(largestBacklogFrames));
}

void PlaybackPart::render(const Ports& ports, std::size_t from, std::size_t frames) noexcept {
    const auto block = [&](PlaybackPort at) { return ports[static_cast<std::size_t>(at)]; };
    const auto audible = [from](float* port, std::vector<float>& unheard) {
        return port == nullptr ? unheard.data() : port + from;
    };
    const std::array<float*, 2> channels = {audible(block(PlaybackPort::left), unheardLeft_),
                                            audible(block(PlaybackPort::right), unheardRight_)};
    render_(static_cast<std::int64_t>(frames), channels);
    if (float* const mono = block(PlaybackPort::mono)) {
        for (std::size_t frame = 0; frame < frames; ++frame) {
            mono[from + frame] = 0.5F * (channels[0][frame] + channels[1][frame]);
        }
    }
}

} // namespace velmora::pipewire
