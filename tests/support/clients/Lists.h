// Lists.h: comma-separated lists on a client's command line.
#pragma once

#include "support/clients/PortClient.h"

#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora::support {

/// "1,2" → {1, 2}. Errors: throws std::invalid_argument on anything but numbers.
template <typename Number>
[[nodiscard]] std::vector<Number> parseList(const std::string& text) {
    std::vector<Number> numbers;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ',');) {
        numbers.push_back(static_cast<Number>(std::stod(part)));
    }
    return numbers;
}

/// "speakers" and {1, 2} → speakers 1, speakers 2; "speakers,mic" and {1, 2} → speakers 1, mic 2.
/// Errors: throws std::invalid_argument unless there is one node, or one for each channel.
[[nodiscard]] inline std::vector<PortClient::Target> parseTargets(const std::string& nodeText,
                                                                  const std::string& channelText) {
    std::vector<std::string> nodes;
    std::istringstream parts(nodeText);
    for (std::string part; std::getline(parts, part, ',');) {
        nodes.push_back(part);
    }
    const auto channels = parseList<std::uint32_t>(channelText);
    if (nodes.size() != 1 && nodes.size() != channels.size()) {
        throw std::invalid_argument("one node, or one for each channel, please");
    }
    std::vector<PortClient::Target> targets;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        targets.push_back({.node = nodes[nodes.size() == 1 ? 0 : i], .channel = channels[i]});
    }
    return targets;
}

} // namespace velmora::support
