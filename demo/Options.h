// Options.h: the demonstration's command line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

namespace velmora::demo {

struct Options {
    double seconds = 20;       ///< how long the mix runs
    std::uint32_t quantum = 0; ///< frames of every block; 0 = what the programs ask for
    std::filesystem::path results = "build/demo";
};

/// Errors: throws std::invalid_argument with a sentence for the user.
[[nodiscard]] Options parseOptions(std::span<char* const> arguments);

} // namespace velmora::demo
