// LeftLinks.h: links that a stream should have lost when it was sent elsewhere.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <vector>

namespace velmora::pipewire {

/// The links from `stream` to any other node that are older than its links to `sink`, and that the
/// same client has made.
///
/// A session manager takes a stream's links away before it makes those to a new target. One whose
/// links are still under way at that moment loses sight of them (WirePlumber 0.4.13, about once in
/// a hundred times), and the stream plays to both. Links that the user has made by hand are another
/// client's, and are not among these.
[[nodiscard]] std::vector<Serial> leftLinks(const Graph& graph, Serial stream, Serial sink);

} // namespace velmora::pipewire
