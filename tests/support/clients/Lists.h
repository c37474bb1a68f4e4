// Lists.h: comma-separated numbers on a client's command line.
#pragma once

#include <sstream>
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

} // namespace velmora::support
