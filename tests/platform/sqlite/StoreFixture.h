// StoreFixture.h: a folder with a settings file, as a user's disk would hold it.
#pragma once

#include "platform/sqlite/SqliteDefaultsStore.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace velmora {

namespace fs = std::filesystem;

/// While it lives, every write to a file fails as on a full disk.
class NoSpace {
public:
    NoSpace() {
        getrlimit(RLIMIT_FSIZE, &before_);
        handler_ = std::signal(SIGXFSZ, SIG_IGN); // otherwise the write ends the program
        const rlimit none{0, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~NoSpace() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    NoSpace(const NoSpace&) = delete;
    NoSpace& operator=(const NoSpace&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int) = SIG_DFL;
};

/// The settings of one user, and the store of the launch that is running.
class StoreOnDisk {
public:
    [[nodiscard]] fs::path path() const { return folder_.path() / "data" / "settings.sqlite"; }
    [[nodiscard]] fs::path log() const { return path().string() + "-wal"; }
    [[nodiscard]] const fs::path& folder() const { return folder_.path(); }

    SqliteDefaultsStore& store() {
        if (!store_) {
            store_.emplace(path(), options());
            held_.clear();
            noteProblems();
            connection_ = store_->problemsChanged().connect([this] { noteProblems(); });
        }
        return *store_;
    }
    void quit() { store_.reset(); }
    void nextLaunch() { quit(); }

    void refuseWrites() {
        store();
        noSpace_.emplace();
    }
    void allowWrites() { noSpace_.reset(); }

    std::vector<StoreProblem> problems; ///< that arose in the launches so far
    std::chrono::system_clock::time_point now{};
    // Of the launches to come.
    MainQueue* mainQueue = nullptr;
    std::vector<std::string> syncedKeys;

private:
    SqliteDefaultsStore::Options options() {
        return {.now = [this] { return now; }, .mainQueue = mainQueue, .syncedKeys = syncedKeys};
    }
    void noteProblems() {
        for (const StoreProblem& problem : store_->problems()) {
            if (std::ranges::find(held_, problem) == held_.end()) {
                problems.push_back(problem);
            }
        }
        held_ = store_->problems();
    }

    support::TemporaryFolder folder_{"velmora-store"};
    std::optional<SqliteDefaultsStore> store_;
    std::vector<StoreProblem> held_; // as last seen
    Signal::Connection connection_;
    std::optional<NoSpace> noSpace_;
};

inline std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void write(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

/// Runs SQL on the file as another program would. With `keepLog` the write-ahead log stays, as
/// after a kill.
inline void runSql(const fs::path& path, const std::string& sql, bool keepLog = false) {
    fs::create_directories(path.parent_path());
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, keepLog ? 1 : 0, nullptr);
    const int code = sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr);
    const std::string message = sqlite3_errmsg(database);
    sqlite3_close(database);
    if (code != SQLITE_OK) {
        throw std::runtime_error(sql + ": " + message);
    }
}

} // namespace velmora
