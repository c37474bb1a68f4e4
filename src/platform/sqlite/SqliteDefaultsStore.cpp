#include "platform/sqlite/SqliteDefaultsStore.h"

#include "platform/sqlite/StoreSalvage.h"
#include "platform/sqlite/StoreSchema.h"
#include "platform/sqlite/StoreSnapshot.h"

#include <algorithm>
#include <cstdlib>
#include <sqlite3.h>
#include <utility>

namespace velmora {

namespace {

constexpr std::chrono::milliseconds syncedWithin{1000};

} // namespace

SqliteDefaultsStore::SqliteDefaultsStore(const std::filesystem::path& file, Options options)
    : file_(file), options_(std::move(options)) {
    if (open() != statusOk && refused_ == statusOk) {
        if (auto found = readSnapshot(file_)) {
            values_.begin(std::move(*found));
            isRead_ = true;
        }
    }
    hasBegun_ = true;
    problems_.tell(); // nobody listens yet: what opening met is told by the list alone
}

SqliteDefaultsStore::~SqliteDefaultsStore() {
    retry_.end();
    sync_.reset();
    if (values_.isPending()) {
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

Status SqliteDefaultsStore::set(std::string_view key, DefaultsValue value) {
    return values_.set(key, std::move(value)) ? writeAndTell() : statusOk;
}

Status SqliteDefaultsStore::remove(std::string_view key) {
    return values_.remove(key) ? writeAndTell() : statusOk;
}

Status SqliteDefaultsStore::open() {
    // The lock comes first where it is known that the file is not a newer one: looking into the
    // file costs a copy of it.
    if (isRead_ && isLockedElsewhere()) {
        return SQLITE_BUSY;
    }
    if (storedVersion(file_).value_or(0) > newestStoreVersion()) {
        return refuseNewer();
    }
    if (const Status status = file_.makeFolder(); status != statusOk) {
        return failed(status);
    }
    if (isLockedElsewhere()) {
        return SQLITE_BUSY;
    }
    if (!hasBegun_ && file_.isGone() && copies_.latest()) {
        problems_.add({StoreProblem::Kind::gone, file_.path(), {}, statusOk});
        offerCopy();
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

bool SqliteDefaultsStore::isLockedElsewhere() {
    if (lock_.take() != StoreLock::Outcome::isElsewhere) {
        return false;
    }
    problems_.add({StoreProblem::Kind::inUse, file_.path(), {}, SQLITE_BUSY});
    retry_.begin([this] { tryAgain(); });
    return true;
}

/// Opens the file and reads its values.
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
    if (!hasBegun_) {
        values_.begin(std::move(*stored));
    } else if (values_.meet(*stored)) {
        problems_.add({StoreProblem::Kind::keptApart, file_.path(), {}, statusOk});
    }
    isRead_ = true;
    connection_ = std::move(*connection);
    return statusOk;
}

/// Lets a new file take the damaged one's place, with what can still be read of that one.
Status SqliteDefaultsStore::beginAnew(Status damage) {
    if (connection_) {
        connection_->keepAsFound();
        connection_.reset();
    }
    auto rows = salvageRows(file_);
    if (isRead_) {
        rows = values_.rowsOfSuccessor(std::move(rows));
    }
    const auto place = replaceDamaged(file_, rows, options_.now());
    if (!place) {
        return place.error();
    }
    problems_.add({StoreProblem::Kind::damaged, file_.path(), place->string(), damage});
    if (!hasBegun_) {
        offerCopy();
    }
    return openFile();
}

Status SqliteDefaultsStore::refuseNewer() {
    refused_ = statusNewerStore;
    if (!hasBegun_) {
        values_.begin(readNewer(file_));
    }
    problems_.add({StoreProblem::Kind::newer, file_.path(), {}, refused_});
    return refused_;
}

void SqliteDefaultsStore::offerCopy() {
    offered_ = copies_.latest();
    if (offered_) {
        problems_.add({StoreProblem::Kind::copyOffered, file_.path(), offered_->day, statusOk});
    }
}

Status SqliteDefaultsStore::takeOfferedCopy() {
    Status status = offered_ ? writePending() : Status{SQLITE_NOTFOUND};
    if (status == statusOk) {
        status = replaceBy(*offered_);
    }
    if (status == statusOk) {
        problems_.end(StoreProblem::Kind::copyOffered);
        problems_.add({StoreProblem::Kind::copyTaken, file_.path(), offered_->day, statusOk});
        offered_.reset();
    }
    problems_.tell();
    return status;
}

/// From then on the program's values are others than the file's, and what it sets goes beside them.
Status SqliteDefaultsStore::replaceBy(const StoreCopies::Copy& copy) {
    const auto rows = salvageRows(StoreFile(copy.file));
    if (rows.empty()) {
        return SQLITE_NOTFOUND;
    }
    if (const Status status = copies_.keepReplaced(*connection_, options_.now());
        status != statusOk) {
        return failed(status);
    }
    Status status = connection_->syncCommits(true);
    if (status == statusOk) {
        status = connection_->begin();
    }
    for (auto row = rows.begin(); row != rows.end() && status == statusOk; ++row) {
        status = connection_->put(*row);
    }
    if (status == statusOk) {
        status = connection_->commit();
    }
    if (status != statusOk) {
        connection_->rollBack();
        return failed(status);
    }
    static_cast<void>(values_.meet(connection_->readAll().value_or(valuesOf(rows))));
    return statusOk;
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
    if (isHeld_ && retry_.isUnderWay()) {
        return SQLITE_BUSY; // every attempt would make the user wait
    }
    if (!connection_) {
        if (const Status status = open(); status != statusOk) {
            return status;
        }
    }
    copies_.makeOncePerDay(*connection_, options_.now());
    Status status = writeOnce();
    if (isDamage(status)) {
        status = beginAnew(status);
        status = status == statusOk ? writeOnce() : status;
    }
    if (status != statusOk) {
        return failed(status);
    }
    values_.written();
    isHeld_ = false;
    retry_.end();
    problems_.endThoseOfWriting();
    return statusOk;
}

Status SqliteDefaultsStore::writeOnce() {
    const bool isSynced = std::ranges::any_of(
        values_.pendingKeys(), [this](const std::string& key) { return isSyncedKey(key); });
    Status status = connection_->syncCommits(isSynced);
    if (status == statusOk) {
        status = connection_->begin();
    }
    if (status == statusOk) {
        status = values_.writeTo([this](std::string_view row, const DefaultsValue* value) {
            return value == nullptr ? connection_->erase(row) : connection_->put(row, *value);
        });
    }
    if (status == statusOk) {
        status = connection_->commit();
    }
    if (status != statusOk) {
        connection_->rollBack();
        return status;
    }
    if (isSynced) {
        sync_.reset(); // the log's earlier writes went with this one
    } else {
        syncSoon();
    }
    return statusOk;
}

void SqliteDefaultsStore::syncSoon() {
    if (options_.mainQueue == nullptr || sync_) {
        return;
    }
    sync_ = options_.mainQueue->after(syncedWithin, [this] {
        const auto ended = std::move(sync_); // keeps what runs here alive
        const Status status = connection_ ? connection_->sync() : statusOk;
        if (status != statusOk) {
            static_cast<void>(failed(status));
            problems_.tell();
        }
    });
}

bool SqliteDefaultsStore::isSyncedKey(std::string_view key) const {
    return std::ranges::any_of(options_.syncedKeys, [key](const std::string& synced) {
        return key.starts_with(synced) &&
               (key.size() == synced.size() || key[synced.size()] == '.');
    });
}

Status SqliteDefaultsStore::failed(Status status) {
    isHeld_ = isBusy(status);
    if (!isHeld_ || retry_.isLasting()) {
        const auto kind =
            status == SQLITE_FULL ? StoreProblem::Kind::full : StoreProblem::Kind::unwritable;
        problems_.add({kind, file_.path(), {}, status});
    }
    retry_.begin([this] { tryAgain(); });
    return status;
}

void SqliteDefaultsStore::tryAgain() {
    static_cast<void>(writeAndTell());
}

} // namespace velmora
