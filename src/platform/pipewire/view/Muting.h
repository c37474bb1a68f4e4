// Muting.h: what the graph says about sending an application's streams to a silent sink.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <string>
#include <vector>

namespace velmora::pipewire {

/// A stream that the session manager sends elsewhere when it is told to. It knows nothing of JACK
/// programs, leaves alone what links itself, and some programs forbid it: of those, WirePlumber
/// 0.4.13 ignores the order, or ends the stream when the new target goes.
[[nodiscard]] bool isMovableStream(const Node& stream);
/// All of them are, as far as is known.
[[nodiscard]] bool canBeMuted(const Graph& graph, const std::vector<Serial>& streams);

/// False when all of them are of programs, as those that come through JACK, that link themselves
/// and that the session manager does not know.
[[nodiscard]] bool knowsSessionManager(const Graph& graph, const std::vector<Serial>& streams);

/// One of them plays a form of sound other than samples, which is left to the output to decode: its
/// ports cannot be linked to ours.
[[nodiscard]] bool isAnyUndecoded(const Graph& graph, const std::vector<Serial>& streams);

/// The stream plays to an output device; ours for silenced applications are none.
[[nodiscard]] bool isHeard(const Graph& graph, Serial stream);

/// The channel positions, as a property value, of the sink that the first of `streams` plays to; of
/// the default sink when none plays. A mute sink of the same shape lets the streams keep their
/// ports, and with them the links that capture them.
[[nodiscard]] std::string targetLayout(const Graph& graph, const std::vector<Serial>& streams);

/// The links from `stream` to other outputs that are older than its links to `sink`, and that the
/// same client has made.
///
/// A session manager takes a stream's links away before it makes those to a new target. One whose
/// links are still under way at that moment loses sight of them (WirePlumber 0.4.13, about once in
/// a hundred times), and the stream plays to both. Links that the user has made by hand are another
/// client's, and are not among these; nor are those to programs that record the stream.
[[nodiscard]] std::vector<Serial> leftLinks(const Graph& graph, Serial stream, Serial sink);

} // namespace velmora::pipewire
