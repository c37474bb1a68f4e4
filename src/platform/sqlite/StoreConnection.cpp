#include "platform/sqlite/StoreConnection.h"

#include "platform/sqlite/DefaultsCoding.h"
#include "platform/sqlite/StoreSchema.h"

#include <sqlite3.h>

namespace velmora {

namespace {

Status checkPages(Database& database) {
    const auto verdict = database.queryText("PRAGMA quick_check(1)");
    if (!verdict) {
        return verdict.error();
    }
    // The file was opened for writing: only a damaged header can still forbid it.
    return *verdict == "ok" && !database.isReadOnly() ? SQLITE_OK : SQLITE_CORRUPT;
}

Status useLog(Database& database) {
    Status status = database.run("PRAGMA journal_mode=WAL");
    if (status == SQLITE_OK) {
        status = database.run("PRAGMA synchronous=NORMAL");
    }
    // The change succeeds before anybody has looked at the log: the first to read meets what is
    // wrong with it.
    return status == SQLITE_OK ? database.run("SELECT 1 FROM defaults LIMIT 1") : status;
}

/// Whether the file system refuses the memory by which connections share a log, as some network
/// and user-space ones do.
bool lacksSharedMemory(Status status) {
    return status == SQLITE_IOERR_SHMOPEN || status == SQLITE_IOERR_SHMSIZE ||
           status == SQLITE_IOERR_SHMMAP || status == SQLITE_IOERR_SHMLOCK;
}

} // namespace

ReadRows readRows(Database& database, std::string_view order) {
    auto rows = database.prepare("SELECT key, type, value FROM defaults ORDER BY key " +
                                 std::string(order));
    if (!rows) {
        return {.status = rows.error()};
    }
    ReadRows read;
    auto row = rows->step();
    for (; row && *row; row = rows->step()) {
        read.rows.push_back(
            {.key = rows->text(0), .type = rows->number(1), .value = rows->blob(2)});
    }
    read.status = row ? SQLITE_OK : row.error();
    return read;
}

StoredValues valuesOf(const std::vector<StoredRow>& rows) {
    StoredValues values;
    for (const StoredRow& row : rows) {
        if (auto value = decode(static_cast<CodedValue::Type>(row.type), row.value)) {
            values.insert_or_assign(row.key, std::move(*value));
        }
    }
    return values;
}

StoreConnection::StoreConnection(
    Database database, Statement begin, Statement put, Statement erase, Statement commit)
    : database_(std::move(database)), begin_(std::move(begin)), put_(std::move(put)),
      erase_(std::move(erase)), commit_(std::move(commit)) {
}

StatusOr<StoreConnection> StoreConnection::open(const std::filesystem::path& file) {
    auto connection = open(file, Access::shared);
    if (!connection && lacksSharedMemory(connection.error())) {
        return open(file, Access::exclusive);
    }
    return connection;
}

StatusOr<StoreConnection> StoreConnection::open(const std::filesystem::path& file, Access access) {
    auto database = Database::open(file);
    if (!database) {
        return std::unexpected(database.error());
    }
    Status status = SQLITE_OK;
    if (access == Access::exclusive) {
        status = database->run("PRAGMA locking_mode=EXCLUSIVE");
    }
    if (status == SQLITE_OK) {
        status = checkPages(*database);
    }
    if (status == SQLITE_OK) {
        status = migrateStore(*database);
    }
    if (status != SQLITE_OK) {
        return std::unexpected(status);
    }
    auto begin = database->prepare("BEGIN IMMEDIATE");
    auto put = database->prepare("INSERT INTO defaults(key, type, value) VALUES(?1, ?2, ?3) "
                                 "ON CONFLICT(key) DO UPDATE SET type=?2, value=?3");
    auto erase = database->prepare("DELETE FROM defaults WHERE key=?1");
    auto commit = database->prepare("COMMIT");
    for (const auto* statement : {&begin, &put, &erase, &commit}) {
        if (!*statement) {
            return std::unexpected(statement->error());
        }
    }
    // From here on the file is known to be ours.
    if (status = useLog(*database); status != SQLITE_OK) {
        return std::unexpected(status);
    }
    database->foldLogOnClose(true);
    return StoreConnection(std::move(*database),
                           std::move(*begin),
                           std::move(*put),
                           std::move(*erase),
                           std::move(*commit));
}

StatusOr<StoredValues> StoreConnection::readAll() {
    const ReadRows read = readRows(database_, "ASC");
    if (read.status != SQLITE_OK) {
        return std::unexpected(read.status);
    }
    return valuesOf(read.rows);
}

bool StoreConnection::hasRows() {
    return database_.queryNumber("SELECT EXISTS(SELECT 1 FROM defaults)").value_or(0) != 0;
}

Status StoreConnection::copyTo(const std::filesystem::path& file) {
    auto copy = database_.prepare("VACUUM INTO ?1");
    if (!copy) {
        return copy.error();
    }
    const std::string name = file.string();
    copy->bindText(1, name);
    return copy->run();
}

Status StoreConnection::syncCommits(bool sync) {
    if (sync == syncsCommits_) {
        return SQLITE_OK;
    }
    const Status status =
        database_.run(sync ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=NORMAL");
    syncsCommits_ = status == SQLITE_OK ? sync : syncsCommits_;
    return status;
}

Status StoreConnection::begin() {
    return begin_.run();
}

Status StoreConnection::put(std::string_view key, const DefaultsValue& value) {
    const CodedValue coded = encode(value);
    return putCoded(key, static_cast<std::int64_t>(coded.type), coded.bytes);
}

Status StoreConnection::put(const StoredRow& row) {
    return putCoded(row.key, row.type, row.value);
}

Status StoreConnection::putCoded(std::string_view key, std::int64_t type, const Bytes& value) {
    put_.bindText(1, key);
    put_.bindNumber(2, type);
    put_.bindBlob(3, value);
    return put_.run();
}

Status StoreConnection::erase(std::string_view key) {
    erase_.bindText(1, key);
    return erase_.run();
}

Status StoreConnection::commit() {
    return commit_.run();
}

void StoreConnection::rollBack() {
    // Some failures have rolled back by themselves.
    if (database_.inTransaction()) {
        static_cast<void>(database_.run("ROLLBACK"));
    }
}

} // namespace velmora
