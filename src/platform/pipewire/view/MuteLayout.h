// MuteLayout.h: the shape of a mute sink.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <string>
#include <vector>

namespace velmora::pipewire {

/// The channel positions, as a property value, of the sink that the first of `streams` plays to; of
/// the default sink when none plays. A mute sink of the same shape lets the streams keep their
/// ports, and with them the links that capture them.
[[nodiscard]] std::string targetLayout(const Graph& graph, const std::vector<Serial>& streams);

} // namespace velmora::pipewire
