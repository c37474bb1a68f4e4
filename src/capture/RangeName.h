// RangeName.h: what some channels of a device are called.
#pragma once

#include "capture/LastingKey.h"
#include "engine/AudioSource.h"

#include <string>
#include <string_view>

namespace velmora {

/// "Entrée" and "Entrées", as the user reads them.
struct RangeWords {
    std::string_view one;
    std::string_view several;
};
inline constexpr RangeWords frenchRangeWords{.one = "Entrée", .several = "Entrées"};

/// "Entrées 3-4"
[[nodiscard]] std::string rangeLabel(ChannelRange range, const RangeWords& words);

/// The name that a source keeps: "Interface — Entrées 3-4". Always in French, because sources are
/// compared by their names as well: the same channels are the same source in every language.
[[nodiscard]] std::string rangeName(std::string_view device, ChannelRange range);

/// The source's name, its range with the user's words.
[[nodiscard]] std::string shownName(const AudioSource& source, const RangeWords& words);

} // namespace velmora
