#include "platform/pipewire/node/RecordingPart.h"

#include <algorithm>

namespace velmora::pipewire {

RecordingPart::RecordingPart(std::uint32_t channels, ReceiveCallback receive)
    : receive_(std::move(receive)), blocks_(channels), handed_(channels), fades_(channels),
      silence_(static_cast<std::size_t>(largestBlockFrames)) {
}

StatusOr<std::unique_ptr<RecordingPart>> RecordingPart::open(std::shared_ptr<MixNode> node,
                                                             std::uint32_t channels,
                                                             ReceiveCallback receive) {
    std::unique_ptr<RecordingPart> recording(new RecordingPart(channels, std::move(receive)));
    auto part = MixPart::open(
        std::move(node), {.kind = MixPart::Kind::capture, .ports = channels}, *recording);
    if (!part) {
        return std::unexpected(part.error());
    }
    recording->part_ = *std::move(part);
    return recording;
}

void RecordingPart::process(const MixPart& part, std::uint32_t frames) noexcept {
    for (std::size_t at = 0; at < blocks_.size(); ++at) {
        blocks_[at] = part.buffer(at, frames);
        if (blocks_[at] == nullptr) {
            fades_[at].restart();
        }
    }
    for (std::size_t done = 0; done < frames;) {
        const std::size_t length = point(done, frames - done);
        receive_(static_cast<std::int64_t>(length), handed_);
        done += length;
    }
}

std::size_t RecordingPart::point(std::size_t from, std::size_t most) noexcept {
    const bool areAllRisen = std::ranges::all_of(fades_, &FadeIn::isOver);
    const std::size_t frames = std::min(most, areAllRisen ? silence_.size() : FadeIn::frames);
    for (std::size_t at = 0; at < blocks_.size(); ++at) {
        if (blocks_[at] == nullptr) {
            handed_[at] = silence_.data();
        } else if (fades_[at].isOver()) {
            handed_[at] = blocks_[at] + from;
        } else {
            handed_[at] = fades_[at].next({blocks_[at] + from, frames});
        }
    }
    return frames;
}

} // namespace velmora::pipewire
