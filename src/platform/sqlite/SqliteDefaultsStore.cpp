#include "platform/sqlite/SqliteDefaultsStore.h"

#include "platform/sqlite/StoreSchema.h"
#include "platform/sqlite/StoreSnapshot.h"

#include <cstdlib>
#include <sqlite3.h>
#include <utility>

namespace velmora {

SqliteDefaultsStore::SqliteDefaultsStore(const std::filesystem::path& file, Clock now)
    : file_(file), now_(std::move(now)) {
    if (open() != statusOk && refused_ == statusOk) {
        values_ = readSnapshot(file_).value_or(StoredValues{});
    }
    problems_.tell(); // nobody listens yet: what opening met is told by the list alone
}

SqliteDefaultsStore::~SqliteDefaultsStore() {
    if (!pending_.empty()) {
        static_cast<void>(writePending());
    }
}

std::filesystem::path SqliteDefaultsStore::defaultPath() {
    namespace fs = std::filesystem;
    // NOLINTBEGIN(concurrency-mt-unsafe): nothing here changes the environment
    const char* data = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    // NOLINTEND(concurrency-mt-unsafe)
    // A relative path there is to be ignored (XDG Base Directory, version 0.8).
    const fs::path folder = data != nullptr && fs::path(data).is_absolute()
                                ? fs::path(data)
                                : fs::path(home != nullptr ? home : "/") / ".local/share";
    return folder / "velmora" / "settings.sqlite";
}

std::optional<DefaultsValue> SqliteDefaultsStore::get(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

Status SqliteDefaultsStore::set(std::string_view key, DefaultsValue value) {
    const auto known = values_.find(key);
    if (known == values_.end()) {
        values_.emplace(key, std::move(value));
    } else if (known->second == value && !pending_.contains(key)) {
        return statusOk;
    } else {
        known->second = std::move(value);
    }
    pending_.emplace(key);
    return writeAndTell();
}

Status SqliteDefaultsStore::remove(std::string_view key) {
    const auto known = values_.find(key);
    if (known != values_.end()) {
        values_.erase(known);
    } else if (!pending_.contains(key)) {
        return statusOk;
    }
    pending_.emplace(key);
    return writeAndTell();
}

Status SqliteDefaultsStore::open() {
    if (storedVersion(file_).value_or(0) > newestStoreVersion()) {
        return refuseNewer();
    }
    if (const Status status = file_.makeFolder(); status != statusOk) {
        return failed(status);
    }
    if (lock_.take() == StoreLock::Outcome::isElsewhere) {
        problems_.add({StoreProblem::Kind::inUse, file_.path(), {}, SQLITE_BUSY});
        return SQLITE_BUSY;
    }
    Status status = file_.isCutOff() ? SQLITE_CORRUPT : openFile();
    if (isDamage(status)) {
        status = beginAnew(status);
    }
    if (status == statusNewerStore) {
        return refuseNewer();
    }
    return status == statusOk ? statusOk : failed(status);
}

/// Opens the file and takes its values over, those not yet written excepted.
Status SqliteDefaultsStore::openFile() {
    if (const Status status = file_.createIfMissing(); status != statusOk) {
        return status;
    }
    auto connection = StoreConnection::open(file_.path());
    if (!connection) {
        return connection.error();
    }
    auto stored = connection->readAll();
    if (!stored) {
        connection->keepAsFound();
        return stored.error();
    }
    for (const std::string& key : pending_) {
        stored->erase(key);
        if (auto value = values_.extract(key)) {
            stored->insert(std::move(value));
        }
    }
    values_ = std::move(*stored);
    connection_ = std::move(*connection);
    return statusOk;
}

/// Sets the damaged file aside; the new one starts with everything that is known in memory.
Status SqliteDefaultsStore::beginAnew(Status damage) {
    if (connection_) {
        connection_->keepAsFound();
        connection_.reset();
    }
    const auto place = file_.setAside(now_());
    if (!place) {
        return place.error();
    }
    for (const auto& [key, value] : values_) {
        pending_.insert(key);
    }
    problems_.add({StoreProblem::Kind::damaged, file_.path(), place->string(), damage});
    return openFile();
}

Status SqliteDefaultsStore::refuseNewer() {
    refused_ = statusNewerStore;
    problems_.add({StoreProblem::Kind::newer, file_.path(), {}, refused_});
    return refused_;
}

Status SqliteDefaultsStore::writeAndTell() {
    const Status status = writePending();
    problems_.tell();
    return status;
}

Status SqliteDefaultsStore::writePending() {
    if (refused_ != statusOk) {
        return refused_;
    }
    if (!connection_) {
        if (const Status status = open(); status != statusOk) {
            return status;
        }
    }
    Status status = writeOnce();
    if (isDamage(status)) {
        status = beginAnew(status);
        status = status == statusOk ? writeOnce() : status;
    }
    if (status != statusOk) {
        return failed(status);
    }
    pending_.clear();
    problems_.endThoseOfWriting();
    return statusOk;
}

Status SqliteDefaultsStore::writeOnce() {
    Status status = connection_->begin();
    for (auto key = pending_.begin(); key != pending_.end() && status == statusOk; ++key) {
        const auto value = values_.find(*key);
        status = value == values_.end() ? connection_->erase(*key)
                                        : connection_->put(*key, value->second);
    }
    if (status == statusOk) {
        status = connection_->commit();
    }
    if (status != statusOk) {
        connection_->rollBack();
    }
    return status;
}

Status SqliteDefaultsStore::failed(Status status) {
    const auto kind =
        status == SQLITE_FULL ? StoreProblem::Kind::full : StoreProblem::Kind::unwritable;
    problems_.add({kind, file_.path(), {}, status});
    return status;
}

} // namespace velmora
