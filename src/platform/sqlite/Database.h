// Database.h: one SQLite connection and its prepared statements, closed by themselves.
#pragma once

#include "platform/Status.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace velmora {

/// One prepared statement. Threads: one owner.
class Statement {
public:
    explicit Statement(sqlite3_stmt* statement);

    // Positions start at 1. The bound memory stays valid until `step` returns false.
    void bindText(int position, std::string_view text);
    void bindNumber(int position, std::int64_t number);
    void bindBlob(int position, std::span<const std::uint8_t> blob);

    /// Moves to the next row: true when there is one, false when done, or SQLite's extended code.
    /// Done and failed statements are ready to run again.
    [[nodiscard]] StatusOr<bool> step();
    /// Runs a statement that gives no rows.
    [[nodiscard]] Status run();

    // Columns start at 0.
    [[nodiscard]] std::string text(int column) const;
    [[nodiscard]] std::int64_t number(int column) const;
    [[nodiscard]] std::vector<std::uint8_t> blob(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// One connection. Threads: one owner. Errors: SQLite's extended codes; SQLITE_FULL for every way
/// in which space can run out.
class Database {
public:
    /// Opens an existing file. A file that cannot be written is refused.
    ///
    /// Until `foldLogOnClose` is called, closing leaves the write-ahead log as it is, so that a
    /// file found to be damaged or newer keeps every byte.
    [[nodiscard]] static StatusOr<Database> open(const std::filesystem::path& file);

    void foldLogOnClose(bool fold);

    [[nodiscard]] Status run(const char* sql);
    [[nodiscard]] StatusOr<Statement> prepare(std::string_view sql);
    /// The first column of the first row.
    [[nodiscard]] StatusOr<std::string> queryText(std::string_view sql);
    [[nodiscard]] StatusOr<std::int64_t> queryNumber(std::string_view sql);

    /// Waits for the disk to have the write-ahead log; a file without one has no need of it.
    [[nodiscard]] Status syncLog();

    [[nodiscard]] bool inTransaction() const;
    /// Because the file system says so or, once a page was read, the file's header.
    [[nodiscard]] bool isReadOnly() const;

private:
    struct Close {
        void operator()(sqlite3* connection) const noexcept;
    };
    explicit Database(sqlite3* connection) : connection_(connection) {}

    std::unique_ptr<sqlite3, Close> connection_;
};

/// Whether the status says that the file's content cannot be trusted.
[[nodiscard]] bool isDamage(Status status);

/// Whether another program holds the file.
[[nodiscard]] bool isBusy(Status status);

/// Whether the system's error says that a disk, a quota or a size limit is exhausted.
[[nodiscard]] bool isOutOfSpace(int systemError);

} // namespace velmora
