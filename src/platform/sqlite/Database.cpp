#include "platform/sqlite/Database.h"

#include <cerrno>
#include <sqlite3.h>

namespace velmora {

namespace {
// A program that only reads holds the file for microseconds; longer than this must not stop the
// interface.
constexpr int busyMilliseconds = 250;

constexpr int primaryCode(Status status) {
    return status & 0xFF;
}

/// Runs one call of SQLite's and gives its code, or SQLITE_FULL when space ran out. SQLite itself
/// says so for ENOSPC while writing alone, and its own record of the system's error
/// (sqlite3_system_errno) misses a failed COMMIT in 3.40.
template <typename Call>
Status withSpace(Call call) {
    errno = 0;
    const int code = call();
    const int systemError = errno;
    const int primary = primaryCode(code);
    const bool system = primary == SQLITE_IOERR || primary == SQLITE_CANTOPEN;
    return system && isOutOfSpace(systemError) ? SQLITE_FULL : code;
}
} // namespace

void Statement::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
    sqlite3_finalize(statement);
}

Statement::Statement(sqlite3_stmt* statement) : statement_(statement) {
}

void Statement::bindText(int position, std::string_view text) {
    sqlite3_bind_text64(
        statement_.get(), position, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

void Statement::bindNumber(int position, std::int64_t number) {
    sqlite3_bind_int64(statement_.get(), position, number);
}

void Statement::bindBlob(int position, std::span<const std::uint8_t> blob) {
    // A null address would bind NULL instead of an empty blob.
    const void* address = blob.empty() ? static_cast<const void*>("") : blob.data();
    sqlite3_bind_blob64(statement_.get(), position, address, blob.size(), SQLITE_STATIC);
}

StatusOr<bool> Statement::step() {
    const Status code = withSpace([&] { return sqlite3_step(statement_.get()); });
    if (code == SQLITE_ROW) {
        return true;
    }
    sqlite3_reset(statement_.get());
    if (code == SQLITE_DONE) {
        return false;
    }
    return std::unexpected(code);
}

Status Statement::run() {
    const auto stepped = step();
    return stepped ? statusOk : stepped.error();
}

std::string Statement::text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    return text == nullptr ? std::string{} : std::string(text, length);
}

std::int64_t Statement::number(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::vector<std::uint8_t> Statement::blob(int column) const {
    const auto* bytes =
        static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_.get(), column));
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    return bytes == nullptr ? std::vector<std::uint8_t>{}
                            : std::vector<std::uint8_t>(bytes, bytes + length);
}

void Database::Close::operator()(sqlite3* connection) const noexcept {
    sqlite3_close_v2(connection);
}

StatusOr<Database> Database::open(const std::filesystem::path& file) {
    sqlite3* connection = nullptr;
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE;
    const Status code =
        withSpace([&] { return sqlite3_open_v2(file.c_str(), &connection, flags, nullptr); });
    Database database(connection); // a failed open gives a connection too
    if (code != SQLITE_OK) {
        return std::unexpected(code);
    }
    // SQLite falls back to reading alone when the file refuses writing.
    if (database.isReadOnly()) {
        return std::unexpected(SQLITE_READONLY);
    }
    database.foldLogOnClose(false);
    sqlite3_busy_timeout(connection, busyMilliseconds);
    return database;
}

void Database::foldLogOnClose(bool fold) {
    sqlite3_db_config(connection_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, fold ? 0 : 1, nullptr);
}

Status Database::run(const char* sql) {
    return withSpace(
        [&] { return sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr); });
}

StatusOr<Statement> Database::prepare(std::string_view sql) {
    sqlite3_stmt* statement = nullptr;
    const Status code = withSpace([&] {
        return sqlite3_prepare_v3(connection_.get(),
                                  sql.data(),
                                  static_cast<int>(sql.size()),
                                  SQLITE_PREPARE_PERSISTENT,
                                  &statement,
                                  nullptr);
    });
    if (code != SQLITE_OK) {
        return std::unexpected(code);
    }
    return Statement(statement);
}

StatusOr<std::string> Database::queryText(std::string_view sql) {
    auto statement = prepare(sql);
    if (!statement) {
        return std::unexpected(statement.error());
    }
    const auto row = statement->step();
    if (!row) {
        return std::unexpected(row.error());
    }
    return *row ? statement->text(0) : std::string{};
}

StatusOr<std::int64_t> Database::queryNumber(std::string_view sql) {
    auto statement = prepare(sql);
    if (!statement) {
        return std::unexpected(statement.error());
    }
    const auto row = statement->step();
    if (!row) {
        return std::unexpected(row.error());
    }
    return *row ? statement->number(0) : 0;
}

Status Database::syncLog() {
    sqlite3_file* log = nullptr;
    const Status code = sqlite3_file_control(
        connection_.get(), "main", SQLITE_FCNTL_JOURNAL_POINTER, static_cast<void*>(&log));
    if (code != SQLITE_OK || log == nullptr || log->pMethods == nullptr) {
        return code;
    }
    return withSpace([log] { return log->pMethods->xSync(log, SQLITE_SYNC_NORMAL); });
}

bool Database::inTransaction() const {
    return sqlite3_get_autocommit(connection_.get()) == 0;
}

bool Database::isReadOnly() const {
    return sqlite3_db_readonly(connection_.get(), "main") != 0;
}

bool isDamage(Status status) {
    switch (primaryCode(status)) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR: // our own SQL fails only on tables that are not ours
        return true;
    default:
        return status == SQLITE_IOERR_CORRUPTFS;
    }
}

bool isBusy(Status status) {
    return primaryCode(status) == SQLITE_BUSY || primaryCode(status) == SQLITE_LOCKED;
}

bool isOutOfSpace(int systemError) {
    return systemError == ENOSPC || systemError == EDQUOT || systemError == EFBIG;
}

} // namespace velmora
