// StoreFile.h: the store's file and its companions in the folder, without looking inside.
#pragma once

#include "platform/Status.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace velmora {

/// Makes the missing folders of the path, each for its owner alone (0700), and takes everybody
/// else's rights off the last where it is there already.
Status makePrivateFolder(const std::filesystem::path& folder);

/// The local day, as names have it: "2025-03-14".
[[nodiscard]] std::string dayOf(std::chrono::system_clock::time_point now);

/// Renames a file that is written to its end, and waits for the disk to have both.
[[nodiscard]] Status moveSynced(const std::filesystem::path& from, const std::filesystem::path& to);

/// One SQLite file: the main file and, beside it, "-wal", "-shm" and "-journal".
/// Threads: one owner. Errors: SQLite's codes; never throws.
class StoreFile {
public:
    /// A link is followed once, so that the companions are looked for beside the file itself.
    explicit StoreFile(const std::filesystem::path& path);

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path log() const;     ///< the write-ahead log
    [[nodiscard]] std::filesystem::path journal() const; ///< where there is no such log
    [[nodiscard]] std::filesystem::path lock() const;    ///< for `StoreLock`
    /// A new file in the making, which is to replace this one.
    [[nodiscard]] std::filesystem::path successor() const;

    /// Makes the missing folders, each for its owner alone (0700).
    [[nodiscard]] Status makeFolder() const;
    /// Makes an empty file (0600) where there is none, in a folder that is there; a successor that
    /// a kill has left takes its place.
    [[nodiscard]] Status createIfMissing() const;
    void removeSuccessor() const;

    /// Whether there is nothing to read: no file, or one without any content.
    [[nodiscard]] bool isGone() const;

    /// Whether a log with content stands beside a file without any: SQLite would throw the log
    /// away, but it can only be left of a file that was cut off.
    [[nodiscard]] bool isCutOff() const;

    /// Renames the file and its companions to a dated name that nothing has yet, and the successor
    /// to the file's.
    [[nodiscard]] StatusOr<std::filesystem::path>
    giveWayToSuccessor(std::chrono::system_clock::time_point now) const;

private:
    std::filesystem::path path_;
};

} // namespace velmora
