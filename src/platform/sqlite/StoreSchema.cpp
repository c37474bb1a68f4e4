#include "platform/sqlite/StoreSchema.h"

#include "platform/sqlite/Database.h"

#include <array>
#include <sqlite3.h>
#include <string>

namespace velmora {

namespace {

// Steps are only ever appended: files out there have already run the ones above.
constexpr std::array steps{
    // 1: one row per key; `type` and `value` as DefaultsCoding.h lays them out
    "CREATE TABLE defaults("
    "key TEXT NOT NULL PRIMARY KEY, type INTEGER NOT NULL, value BLOB NOT NULL) WITHOUT ROWID;",
};

Status runStep(Database& database, std::size_t index) {
    // Immediate: a second instance that starts at the same moment waits here, then finds the step
    // done.
    if (const Status status = database.run("BEGIN IMMEDIATE"); status != statusOk) {
        return status;
    }
    const auto version = database.queryNumber("PRAGMA user_version");
    Status status = version ? statusOk : version.error();
    if (version == static_cast<std::int64_t>(index)) {
        const auto count = "PRAGMA user_version=" + std::to_string(index + 1);
        status = database.run(steps[index]);
        if (status == statusOk) {
            status = database.run(count.c_str());
        }
    }
    if (status == statusOk) {
        status = database.run("COMMIT");
    }
    if (database.inTransaction()) {
        static_cast<void>(database.run("ROLLBACK"));
    }
    return status;
}

} // namespace

std::int64_t newestStoreVersion() {
    return static_cast<std::int64_t>(steps.size());
}

Status migrateStore(Database& database) {
    const auto version = database.queryNumber("PRAGMA user_version");
    if (!version) {
        return version.error();
    }
    if (*version > newestStoreVersion()) {
        return statusNewerStore;
    }
    if (*version < 0) {
        return SQLITE_NOTADB; // somebody else's file: ours count from 0
    }
    for (auto step = static_cast<std::size_t>(*version); step < steps.size(); ++step) {
        if (const Status status = runStep(database, step); status != statusOk) {
            return status;
        }
    }
    return statusOk;
}

} // namespace velmora
