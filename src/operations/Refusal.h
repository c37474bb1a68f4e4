// Refusal.h: why something that was asked for was not done.
#pragma once

#include <expected>
#include <string>
#include <type_traits>

namespace velmora {

struct Refusal {
    enum class Kind {
        refused, ///< understood, but it cannot be so now
        misused, ///< not understood
    };
    Kind kind{};
    std::string sentence{}; ///< in the user's language; names the way out

    bool operator==(const Refusal&) const = default;
};

/// What was asked for, or why nothing was changed.
template <typename T = void>
using Answer = std::expected<T, Refusal>;

/// What `next` makes of the value, itself an answer; or the refusal.
template <typename T, typename Next>
[[nodiscard]] auto then(const Answer<T>& answer, Next next)
    -> std::invoke_result_t<Next, const T&> {
    if (!answer) {
        return std::unexpected(answer.error());
    }
    return next(*answer);
}

} // namespace velmora
