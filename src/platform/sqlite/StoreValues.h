// StoreValues.h: what the program holds of its settings, and what the file is still to be given.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/sqlite/StoredRow.h"

#include <functional>
#include <map>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

using StoredValues = std::map<std::string, DefaultsValue, std::less<>>;

/// Every value, the keys whose rows are behind, and what those rows are believed to hold.
///
/// Nothing that was not read is ever overwritten. Where a file that comes into reach, or back,
/// holds something else under a key than was read of it, that value stays: the program has built
/// upon another one, so what it sets from then on is kept under "<key>.unsaved" (or the first free
/// "<key>.unsaved.2", ".3" and so on), until it ends.
///
/// Threads: one owner.
class StoreValues {
public:
    [[nodiscard]] std::optional<DefaultsValue> get(std::string_view key) const;

    /// False when there is nothing to write.
    [[nodiscard]] bool set(std::string_view key, DefaultsValue value);
    [[nodiscard]] bool remove(std::string_view key);

    /// The first values, before anybody has asked for one.
    void begin(StoredValues stored) { values_ = std::move(stored); }
    /// The file's values, read while the program runs; what the file lacks is pending again. True
    /// when the program has built upon other values than these.
    [[nodiscard]] bool meet(const StoredValues& stored);

    /// The rows of a file that is to take a damaged one's place: every value that is held, and of
    /// the salvaged rows those that are not held here.
    [[nodiscard]] std::vector<StoredRow> rowsOfSuccessor(std::vector<StoredRow> salvaged) const;

    [[nodiscard]] bool isPending() const { return !pending_.empty(); }
    [[nodiscard]] auto pendingKeys() const { return std::views::keys(pending_); }
    /// Calls `write` with each row that is behind and its value, none for one to be erased, until
    /// that fails.
    using Write = std::function<Status(std::string_view row, const DefaultsValue* value)>;
    [[nodiscard]] Status writeTo(const Write& write) const;
    /// Every row was written.
    void written() { pending_.clear(); }

private:
    [[nodiscard]] bool isBelieved(const std::string& key, const DefaultsValue& value) const;
    [[nodiscard]] std::string apartRow(const std::string& key, const StoredValues& stored) const;

    StoredValues values_;
    /// By key, what its row holds instead of the value in `values_`; none without a row.
    std::map<std::string, std::optional<DefaultsValue>, std::less<>> pending_;
    std::map<std::string, std::string, std::less<>> apart_; ///< rows of the keys kept apart
};

} // namespace velmora
