#include "platform/pipewire/view/Downmix.h"

#include "platform/pipewire/view/Devices.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <utility>

namespace velmora::pipewire {
namespace {

constexpr std::array<std::string_view, 7> leftChannels = {
    "SL", "RL", "FLC", "RLC", "FLW", "TFL", "TRL"};
constexpr std::array<std::string_view, 7> rightChannels = {
    "SR", "RR", "FRC", "RRC", "FRW", "TFR", "TRR"};
constexpr std::array<std::string_view, 5> centreChannels = {"FC", "RC", "TC", "TFC", "TRC"};

template <std::size_t Count>
bool contains(const std::array<std::string_view, Count>& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

std::optional<TapInput> inputOf(std::string_view channel) {
    if (channel == "FL") {
        return TapInput::left;
    }
    if (channel == "FR") {
        return TapInput::right;
    }
    if (contains(centreChannels, channel)) {
        return TapInput::centre;
    }
    if (contains(leftChannels, channel)) {
        return TapInput::surroundLeft;
    }
    if (contains(rightChannels, channel)) {
        return TapInput::surroundRight;
    }
    return std::nullopt;
}

TapFeed feed(const Port& port, TapInput input) {
    return {.port = port.serial, .portId = port.id, .input = input};
}

std::vector<TapFeed> bothSides(const Port& port) {
    return {feed(port, TapInput::left), feed(port, TapInput::right)};
}

bool has(const std::vector<std::string>& content, std::string_view channel) {
    return std::ranges::find(content, channel) != content.end();
}

bool hasAnyFor(const std::vector<std::string>& content, TapInput input) {
    return std::ranges::any_of(
        content, [input](const std::string& channel) { return inputOf(channel) == input; });
}

/// The ports that carry what the material has for one input.
void addFeeds(std::vector<TapFeed>& feeds,
              const std::vector<Port>& ports,
              const std::vector<std::string>& content,
              TapInput input) {
    std::vector<Port> candidates;
    std::ranges::copy_if(ports, std::back_inserter(candidates), [input](const Port& port) {
        return inputOf(port.channel) == input;
    });
    if (candidates.empty() || !hasAnyFor(content, input)) {
        return;
    }
    const std::size_t before = feeds.size();
    for (const Port& port : candidates) {
        if (has(content, port.channel)) {
            feeds.push_back(feed(port, input));
        }
    }
    if (feeds.size() == before) {
        feeds.push_back(feed(candidates.front(), input));
    }
}

/// Whether the material itself has no places, and more channels than a pair. Programs without a
/// class never tell what their material is.
bool isUnplaced(const Node& stream) {
    if (!isPlaybackStream(stream)) {
        return true;
    }
    return stream.content.size() > 2 &&
           std::ranges::all_of(stream.content, [](const std::string& channel) {
               return channel.empty() || channel == "UNK" || channel.starts_with("AUX");
           });
}

TapInput turn(std::size_t index) {
    return index % 2 == 0 ? TapInput::left : TapInput::right;
}

/// On which sides an output plays one of its channels.
std::vector<TapInput> sidesOf(const Node& output, Serial port) {
    const auto channels = playbackPorts(output);
    const auto channel = std::ranges::find(channels, port, &Port::serial);
    if (channel == channels.end()) {
        return {};
    }
    const auto place = inputOf(channel->channel);
    if (channels.size() == 1 || place == TapInput::centre) {
        return {TapInput::left, TapInput::right};
    }
    if (place == TapInput::left || place == TapInput::surroundLeft) {
        return {TapInput::left};
    }
    if (place == TapInput::right || place == TapInput::surroundRight) {
        return {TapInput::right};
    }
    return {turn(static_cast<std::size_t>(channel - channels.begin()))};
}

std::vector<TapFeed>
playedFeeds(const Graph& graph, const Node& stream, const std::vector<Port>& ports) {
    std::set<std::pair<Serial, TapInput>> played;
    for (const auto& [serial, link] : graph.links()) {
        const Node* const output = graph.node(link.inputNode);
        const bool isPlayed = link.outputNode == stream.serial && output != nullptr &&
                              (isOutputDevice(*output) || isMuteSink(*output));
        for (const TapInput side :
             isPlayed ? sidesOf(*output, link.inputPort) : std::vector<TapInput>{}) {
            played.insert({link.outputPort, side});
        }
    }
    std::vector<TapFeed> feeds;
    for (std::size_t at = 0; at < ports.size(); ++at) {
        for (const TapInput side : {TapInput::left, TapInput::right}) {
            if (played.empty() ? side == turn(at) : played.contains({ports[at].serial, side})) {
                feeds.push_back(feed(ports[at], side));
            }
        }
    }
    return feeds;
}

} // namespace

std::vector<TapFeed> stereoMixdown(const Graph& graph, const Node& stream) {
    std::vector<Port> ports;
    std::ranges::copy_if(stream.ports, std::back_inserter(ports), [](const Port& port) {
        return port.isOutput && port.isAudio;
    });
    const auto left = std::ranges::find(ports, "FL", &Port::channel);
    const auto right = std::ranges::find(ports, "FR", &Port::channel);
    const bool hasFrontPair = left != ports.end() && right != ports.end();
    if (ports.empty()) {
        return {};
    }
    if (ports.size() == 1 || (stream.content.size() == 1 && !hasFrontPair)) {
        return bothSides(ports.front());
    }
    if (!hasFrontPair && isUnplaced(stream)) {
        return playedFeeds(graph, stream, ports);
    }
    if (!hasFrontPair) {
        // Placed material on numbered channels: the first two are the pair.
        return {feed(ports[0], TapInput::left), feed(ports[1], TapInput::right)};
    }
    std::vector<TapFeed> feeds = {feed(*left, TapInput::left), feed(*right, TapInput::right)};
    if (stream.content.size() > 2) {
        for (const TapInput input :
             {TapInput::centre, TapInput::surroundLeft, TapInput::surroundRight}) {
            addFeeds(feeds, ports, stream.content, input);
        }
    }
    return feeds;
}

} // namespace velmora::pipewire
