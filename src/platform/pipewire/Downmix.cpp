#include "platform/pipewire/Downmix.h"

#include <algorithm>
#include <array>
#include <optional>

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

} // namespace

std::vector<TapFeed> stereoMixdown(const Node& stream) {
    std::vector<Port> ports;
    std::ranges::copy_if(stream.ports, std::back_inserter(ports), [](const Port& port) {
        return port.isOutput && port.isAudio;
    });
    const auto named = [&](std::string_view channel) {
        return std::ranges::find(ports, channel, &Port::channel);
    };
    const bool hasFrontPair = named("FL") != ports.end() && named("FR") != ports.end();
    if (ports.size() == 1 || (!ports.empty() && stream.contentChannels == 1 && !hasFrontPair)) {
        return bothSides(ports.front());
    }
    if (!hasFrontPair) {
        // Numbered channels: the first two are the pair.
        return ports.empty()
                   ? std::vector<TapFeed>{}
                   : std::vector{feed(ports[0], TapInput::left), feed(ports[1], TapInput::right)};
    }
    if (stream.contentChannels <= 2) {
        return {feed(*named("FL"), TapInput::left), feed(*named("FR"), TapInput::right)};
    }
    std::vector<TapFeed> feeds;
    for (const Port& port : ports) {
        if (const auto input = inputOf(port.channel)) {
            feeds.push_back(feed(port, *input));
        }
    }
    return feeds;
}

} // namespace velmora::pipewire
