// LaunchRequest.h: what a launch of the program is for.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace velmora {

struct LaunchRequest {
    enum class Kind {
        windows,  ///< the mixer with its windows, also when nothing of ours was asked for
        hidden,   ///< the same, without a window at first
        headless, ///< the mixer without windows and display
        command,  ///< to the mixer that runs
        help,
        version,
        unknownOption,
    };
    Kind kind{};
    bool startsMixer{};               ///< a command that opens the mixer first
    bool hasQtsOptions{};             ///< which may name a display
    std::vector<std::string> words{}; ///< of the command; of an unknown option: that one

    bool operator==(const LaunchRequest&) const = default;
};

/// Options of ours begin with two dashes, Qt's with one. A number such as "-6" is a word.
/// @param arguments  without the program's name
[[nodiscard]] LaunchRequest launchRequest(std::span<const char* const> arguments);

} // namespace velmora
