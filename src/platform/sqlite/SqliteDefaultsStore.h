// SqliteDefaultsStore.h: the user's settings in one SQLite file.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/StoreProblems.h"
#include "platform/sqlite/RetryPause.h"
#include "platform/sqlite/StoreConnection.h"
#include "platform/sqlite/StoreCopies.h"
#include "platform/sqlite/StoreFile.h"
#include "platform/sqlite/StoreLock.h"
#include "platform/sqlite/StoreValues.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// One row per key in a write-ahead-logged file, and a copy of every value in memory, from which
/// all reads are answered.
///
/// A `set` of an unchanged value writes nothing; any other costs one small transaction. A killed
/// process loses nothing. A cut of the power leaves the file whole and takes nothing of the synced
/// keys; of the others it takes at most the writes of the last second, if there is a main queue to
/// count it.
///
/// One store at a time writes to a file, on however many machines that share it; another one reads
/// what is there until the first has gone. Where nothing can be locked, all of them write and the
/// last value stays.
///
/// What was refused is tried again by itself, after ever longer pauses, and with every write. While
/// another program holds the file, writes wait for that instead of stopping the main thread, and it
/// is told only when it lasts.
///
/// Threads: main. Errors: never throws; see `StoreProblem`. The status is SQLite's extended code.
class SqliteDefaultsStore final : public DefaultsStore {
public:
    struct Options {
        /// Dates copies, and a damaged file's new name.
        std::function<std::chrono::system_clock::time_point()> now = std::chrono::system_clock::now;
        /// Outlives the store. Without one, only further writes try again what was refused.
        MainQueue* mainQueue = nullptr;
        /// Keys of which `set` and `remove` return when the disk has the change. Those that begin
        /// with one and a dot belong to them.
        std::vector<std::string> syncedKeys{};
    };

    /// Opens or creates `file` and its folder.
    explicit SqliteDefaultsStore(const std::filesystem::path& file, Options options);
    explicit SqliteDefaultsStore(const std::filesystem::path& file)
        : SqliteDefaultsStore(file, Options{}) {}
    /// Tries once more to write what could not be written, and tells nobody how that went.
    ~SqliteDefaultsStore() override;

    SqliteDefaultsStore(const SqliteDefaultsStore&) = delete;
    SqliteDefaultsStore& operator=(const SqliteDefaultsStore&) = delete;

    /// $XDG_DATA_HOME/velmora/settings.sqlite, or the same under ~/.local/share.
    [[nodiscard]] static std::filesystem::path defaultPath();

    [[nodiscard]] std::optional<DefaultsValue> get(std::string_view key) const override {
        return values_.get(key);
    }
    Status set(std::string_view key, DefaultsValue value) override;
    Status remove(std::string_view key) override;
    Status takeOfferedCopy() override;
    [[nodiscard]] const std::vector<StoreProblem>& problems() const override {
        return problems_.all();
    }
    [[nodiscard]] Signal& problemsChanged() override { return problems_.changed(); }

private:
    Status open();
    [[nodiscard]] bool isLockedElsewhere();
    Status openFile();
    Status beginAnew(Status damage);
    Status refuseNewer();
    void offerCopy();
    Status replaceBy(const StoreCopies::Copy& copy);
    Status writeAndTell();
    Status writePending();
    Status writeOnce();
    Status failed(Status status);
    void tryAgain();
    void syncSoon();
    [[nodiscard]] bool isSyncedKey(std::string_view key) const;

    StoreFile file_;
    StoreLock lock_{file_.lock()};
    StoreCopies copies_{file_};
    std::optional<StoreCopies::Copy> offered_;
    Options options_;
    RetryPause retry_{options_.mainQueue};
    bool isHeld_ = false;                       // by another program, when last tried
    std::optional<StoreConnection> connection_; // none while the file cannot be written
    Status refused_ = statusOk;                 // set for good when the file is a newer one
    std::unique_ptr<MainQueue::Timer> sync_;    // while there is something to sync
    StoreValues values_;
    bool isRead_ = false;   // the file's values are among them
    bool hasBegun_ = false; // somebody may have asked for one
    StoreProblems problems_;
};

} // namespace velmora
