// Downmix.h: which port of an output stream feeds which side of a tap.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <cstddef>
#include <vector>

namespace velmora::pipewire {

/// The inputs of a tap. Centre counts on both sides and the surround inputs on one, each at
/// `surroundGain`; left and right count at unity.
enum class TapInput { left, right, centre, surroundLeft, surroundRight };
inline constexpr std::size_t tapInputCount = 5;

/// Source: ITU-R BS.775, downmix to two channels (1/√2; the LFE channel is left out).
inline constexpr float surroundGain = 0.70710678F;

struct TapFeed {
    Serial port{};
    GlobalId portId{};
    TapInput input{};
};

/// The links that make a stereo mixdown of one stream.
///
/// A stream shows the layout of the sink it plays to, whatever its material: channels that the
/// material does not have hold copies of others, so only those count that it has. What it has but
/// the sink does not was mixed into a neighbour of the same side, which then counts instead.
///
/// Channels that say nothing of their place, as those of JACK programs, count where the program
/// plays them: by the side of the output's channel that they are linked to. When it plays to no
/// output all of them count, left and right in turn.
[[nodiscard]] std::vector<TapFeed> stereoMixdown(const Graph& graph, const Node& stream);

} // namespace velmora::pipewire
