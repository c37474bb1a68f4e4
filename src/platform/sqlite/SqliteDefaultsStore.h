// SqliteDefaultsStore.h: the user's settings in one SQLite file.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/StoreProblems.h"
#include "platform/sqlite/StoreConnection.h"
#include "platform/sqlite/StoreFile.h"
#include "platform/sqlite/StoreLock.h"
#include "platform/sqlite/StoreValues.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace velmora {

/// One row per key in a write-ahead-logged file, and a copy of every value in memory, from which
/// all reads are answered.
///
/// A `set` of an unchanged value writes nothing; any other costs one small transaction. With
/// synchronous=NORMAL a killed process loses nothing; a power cut may take the last writes but
/// leaves the file whole.
///
/// One store at a time writes to a file, on however many machines that share it; another one reads
/// what is there, and opens the file with a write after the first has gone. Where nothing can be
/// locked, all of them write and the last value stays.
///
/// Threads: main. Errors: never throws; see `StoreProblem`. The status is SQLite's extended code.
class SqliteDefaultsStore final : public DefaultsStore {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    /// Opens or creates `file` and its folder. `now` dates a damaged file's new name.
    explicit SqliteDefaultsStore(const std::filesystem::path& file,
                                 Clock now = std::chrono::system_clock::now);
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
    [[nodiscard]] const std::vector<StoreProblem>& problems() const override {
        return problems_.all();
    }
    [[nodiscard]] Signal& problemsChanged() override { return problems_.changed(); }

private:
    Status open();
    Status openFile();
    Status beginAnew(Status damage);
    Status refuseNewer();
    Status writeAndTell();
    Status writePending();
    Status writeOnce();
    Status failed(Status status);

    StoreFile file_;
    StoreLock lock_{file_.lock()};
    Clock now_;
    std::optional<StoreConnection> connection_; // none while the file cannot be written
    Status refused_ = statusOk;                 // set for good when the file is a newer one
    StoreValues values_;
    bool isRead_ = false;   // the file's values are among them
    bool hasBegun_ = false; // somebody may have asked for one
    StoreProblems problems_;
};

} // namespace velmora
