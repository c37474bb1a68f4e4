// StoreLock.h: who may write to a store's file.
#pragma once

#include <filesystem>

namespace velmora {

/// One holder at a time, among the programs of this machine and of those that share the folder.
///
/// The kernel's lock on a file beside the store's: it goes with the process that holds it, however
/// that ends, and what the file contains means nothing. The file stays, because a lock on a file
/// that somebody removes protects nobody.
///
/// Threads: one owner.
class StoreLock {
public:
    enum class Outcome {
        held,        ///< by this object, until it is destroyed
        isElsewhere, ///< another one has it
        unavailable, ///< the file system or the folder allows no such lock
    };

    explicit StoreLock(std::filesystem::path file) : file_(std::move(file)) {}
    ~StoreLock();
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

    /// Makes the file where it is missing (0600). Never waits.
    [[nodiscard]] Outcome take();

private:
    std::filesystem::path file_;
    int descriptor_ = -1; // open while the lock is held
};

} // namespace velmora
