// StoreConnection.h: a checked, up-to-date store file that is open for writing.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/Status.h"
#include "platform/sqlite/Database.h"

#include "platform/sqlite/StoreValues.h"
#include "platform/sqlite/StoredRow.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The rows up to the one that cannot be read.
struct ReadRows {
    std::vector<StoredRow> rows{};
    Status status{}; ///< success when these are all
};
/// @param order  "ASC" or "DESC", by key
[[nodiscard]] ReadRows readRows(Database& database, std::string_view order);

/// The values of the rows that this program understands.
[[nodiscard]] StoredValues valuesOf(const std::vector<StoredRow>& rows);

/// Threads: one owner. Errors: SQLite's extended codes, and `statusNewerStore`.
class StoreConnection {
public:
    /// Opens an existing file, checks every page and brings it to today's shape. A file that is
    /// damaged or newer is closed as it was found.
    [[nodiscard]] static StatusOr<StoreConnection> open(const std::filesystem::path& file);

    /// Rows that this program cannot read are left out, and left in the file.
    [[nodiscard]] StatusOr<StoredValues> readAll();

    /// Whether a commit from now on waits for the disk.
    [[nodiscard]] Status syncCommits(bool sync);
    /// Waits for the disk to have every commit.
    [[nodiscard]] Status sync() { return database_.syncLog(); }

    // One transaction, of which nothing stays when a step of it fails.
    [[nodiscard]] Status begin();
    [[nodiscard]] Status put(std::string_view key, const DefaultsValue& value);
    [[nodiscard]] Status put(const StoredRow& row);
    [[nodiscard]] Status erase(std::string_view key);
    [[nodiscard]] Status commit();
    void rollBack();

    [[nodiscard]] bool hasRows();
    /// Writes everything to an empty file, which stays without a log.
    [[nodiscard]] Status copyTo(const std::filesystem::path& file);
    /// Carries the log over into the file and waits for the disk.
    [[nodiscard]] Status foldLog() { return database_.run("PRAGMA wal_checkpoint(TRUNCATE)"); }
    /// Leaves every byte of a file that proved to be damaged as it is.
    void keepAsFound() { database_.foldLogOnClose(false); }

private:
    enum class Access {
        shared,
        exclusive, ///< the log's index lies in memory of our own
    };
    [[nodiscard]] static StatusOr<StoreConnection> open(const std::filesystem::path& file,
                                                        Access access);
    StoreConnection(
        Database database, Statement begin, Statement put, Statement erase, Statement commit);

    [[nodiscard]] Status putCoded(std::string_view key, std::int64_t type, const Bytes& value);

    Database database_; // closed after the statements are gone
    Statement begin_;
    Statement put_;
    Statement erase_;
    Statement commit_;
    bool syncsCommits_ = false;
};

} // namespace velmora
