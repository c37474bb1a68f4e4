// StoreConnection.h: a checked, up-to-date store file that is open for writing.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/Status.h"
#include "platform/sqlite/Database.h"

#include "platform/sqlite/StoreValues.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Threads: one owner. Errors: SQLite's extended codes, and `statusNewerStore`.
class StoreConnection {
public:
    /// Opens an existing file, checks every page and brings it to today's shape. A file that is
    /// damaged or newer is closed as it was found.
    [[nodiscard]] static StatusOr<StoreConnection> open(const std::filesystem::path& file);

    /// Rows that this program cannot read are left out, and left in the file.
    [[nodiscard]] StatusOr<StoredValues> readAll();

    // One transaction, of which nothing stays when a step of it fails.
    [[nodiscard]] Status begin();
    [[nodiscard]] Status put(std::string_view key, const DefaultsValue& value);
    [[nodiscard]] Status erase(std::string_view key);
    [[nodiscard]] Status commit();
    void rollBack();

    /// Leaves every byte of a file that proved to be damaged as it is.
    void keepAsFound() { database_.foldLogOnClose(false); }

private:
    StoreConnection(
        Database database, Statement begin, Statement put, Statement erase, Statement commit);

    Database database_; // closed after the statements are gone
    Statement begin_;
    Statement put_;
    Statement erase_;
    Statement commit_;
};

} // namespace velmora
