#include "capture/RangeName.h"

namespace velmora {

std::string rangeLabel(ChannelRange range, const RangeWords& words) {
    std::string label(range.count == 1 ? words.one : words.several);
    label += " " + std::to_string(range.first);
    if (range.count > 1) {
        label += "-" + std::to_string(range.first + range.count - 1);
    }
    return label;
}

std::string rangeName(std::string_view device, ChannelRange range) {
    return std::string(device) + " — " + rangeLabel(range, frenchRangeWords);
}

std::string shownName(const AudioSource& source, const RangeWords& words) {
    std::string name = source.name();
    if (const auto* const channels = source.deviceChannels()) {
        const ChannelRange range{.first = channels->first, .count = channels->count};
        const std::string kept = rangeName("", range);
        if (name.ends_with(kept)) {
            name.resize(name.size() - kept.size());
            name += " — " + rangeLabel(range, words);
        }
    }
    return name;
}

} // namespace velmora
