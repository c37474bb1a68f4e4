// DefaultsStore.h: the user's settings, kept under string keys.
#pragma once

#include "platform/Status.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace velmora {

class Signal;

using Bytes = std::vector<std::uint8_t>;
using NumberMap = std::map<std::string, double>;
using BooleanMap = std::map<std::string, bool>;
using DefaultsValue = std::variant<bool, double, std::string, Bytes, NumberMap, BooleanMap>;

/// Something is wrong with the store itself. Whoever shows it makes the sentence for the user.
struct StoreProblem {
    enum class Kind {
        // Of these, the user is to know until the program ends.
        damaged,   ///< the file was set aside as `setAside`; a new one has what could be read of it
        newer,     ///< written by a later version; left untouched, nothing is kept this time
        keptApart, ///< the file holds other values than were read at the start; they stay, and what
                   ///< was set meanwhile is kept beside them
        gone,      ///< there was no file at the start, although there are copies of one
        copyTaken, ///< the file holds what the copy of the day `setAside` did, from the next start
        // Ends when the copy is taken.
        copyOffered, ///< after `damaged` or `gone`: there is a copy of the day `setAside`
        // These end with the next write that succeeds; until then values live in memory alone.
        unwritable, ///< the folder or the file refuses writing
        full,       ///< no space left
        inUse,      ///< another mixer writes to the file, in another session or on another machine
    };
    Kind kind{};
    std::string file{};     ///< path of the store
    std::string setAside{}; ///< path of the damaged file's new place; of a copy, its day
    Status status{};        ///< the platform's code

    bool operator==(const StoreProblem&) const = default;
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

    /// Replaces the value, whatever type it had. Errors: the status; see `problems`.
    virtual Status set(std::string_view key, DefaultsValue value) = 0;

    /// Removes the key; removing an absent one succeeds.
    virtual Status remove(std::string_view key) = 0;

    /// Takes what the copy of `copyOffered` holds back into the store; what was there is kept in
    /// another file. Whoever has read values goes on with them: what is set under the copy's keys
    /// until the program ends is kept beside them.
    /// Errors: the status, with the store as it was; also when no copy is offered.
    virtual Status takeOfferedCopy() = 0;

    /// What is wrong now, oldest first, that which opening the store met included. A write that
    /// succeeds, and with it stores everything that an earlier one could not, ends `unwritable`,
    /// `full` and `inUse`.
    [[nodiscard]] virtual const std::vector<StoreProblem>& problems() const = 0;

    /// Told after `problems` changed, when the write that changed it is over; never while the store
    /// is being destroyed.
    [[nodiscard]] virtual Signal& problemsChanged() = 0;

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
