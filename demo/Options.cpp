#include "Options.h"

#include <stdexcept>
#include <string>

namespace velmora::demo {
namespace {

/// Long enough for the automatic level and the reverb to have settled.
constexpr double shortestSeconds = 12;
/// What a mixer's ring can hold back at most.
constexpr std::uint32_t largestQuantum = 1024;

double number(const std::string& name, const std::string& text) {
    std::size_t used = 0;
    double value = 0;
    try {
        value = std::stod(text, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size() || !(value >= 0)) {
        throw std::invalid_argument(name + " takes a number of at least 0, not '" + text + "'");
    }
    return value;
}

} // namespace

Options parseOptions(std::span<char* const> arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        const std::string name = arguments[i];
        if (i + 1 == arguments.size()) {
            throw std::invalid_argument(name + " needs a value");
        }
        const std::string value = arguments[i + 1];
        if (name == "--seconds") {
            options.seconds = number(name, value);
        } else if (name == "--quantum") {
            options.quantum = static_cast<std::uint32_t>(number(name, value));
        } else if (name == "--results") {
            options.results = value;
        } else {
            throw std::invalid_argument(
                "unknown option " + name +
                "; known are --seconds <n>, --quantum <frames>, --results <folder>");
        }
    }
    if (options.seconds < shortestSeconds) {
        throw std::invalid_argument("--seconds must be 12 or more");
    }
    if (options.quantum > largestQuantum) {
        throw std::invalid_argument("--quantum must be 1024 or less");
    }
    return options;
}

} // namespace velmora::demo
