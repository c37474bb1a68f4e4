// DefaultsStore.h: the user's settings, kept under string keys.
#pragma once

#include "platform/Status.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace velmora {

using Bytes = std::vector<std::uint8_t>;
using NumberMap = std::map<std::string, double>;
using BooleanMap = std::map<std::string, bool>;
using DefaultsValue = std::variant<bool, double, std::string, Bytes, NumberMap, BooleanMap>;

/// Something went wrong with the store itself. The receiver makes the sentence for the user.
struct StoreProblem {
    enum class Kind {
        damaged,    ///< the file could not be read; it was set aside as `setAside`, a new one began
        newer,      ///< written by a later version; left untouched, nothing is kept this time
        unwritable, ///< the folder or the file refuses writing; values live until the program ends
        full,       ///< no space left; values live until the program ends or space returns
    };
    Kind kind{};
    std::string file{};     ///< path of the store
    std::string setAside{}; ///< path of the damaged file's new place (`damaged` only)
    Status status{};        ///< the platform's code
};

/// Typed values under string keys.
///
/// A write is durable against a killed process when `set` returns success. A value that could not
/// be written is still returned by `get` until the program ends, and is written with the next
/// write that succeeds. Threads: main. Errors: never throws.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    [[nodiscard]] virtual std::optional<DefaultsValue> get(std::string_view key) const = 0;

    /// Replaces the value, whatever type it had. Errors: the status; the problem listener is told.
    virtual Status set(std::string_view key, DefaultsValue value) = 0;

    /// Removes the key; removing an absent one succeeds.
    virtual Status remove(std::string_view key) = 0;

    using ProblemListener = std::function<void(const StoreProblem&)>;

    /// Receives every problem once (a repeated failure of the same kind is told again only after a
    /// success in between), those from before this call included.
    virtual void setProblemListener(ProblemListener listener) = 0;

    /// The value under `key` if it has exactly the type T; absent or of another type: none.
    template <typename T>
    [[nodiscard]] std::optional<T> read(std::string_view key) const {
        auto value = get(key);
        if (!value) {
            return std::nullopt;
        }
        if (auto* typed = std::get_if<T>(&*value)) {
            return std::move(*typed);
        }
        return std::nullopt;
    }
};

} // namespace velmora
