// PrivateCopy.h: a store file to look into without touching the one that was copied.
#pragma once

#include <filesystem>

namespace velmora {

class StoreFile;

/// A copy of the file, its log and its journal in a folder of its own, removed with it; of one
/// moment, unless somebody writes to them without pause.
/// Threads: one owner.
class PrivateCopy {
public:
    explicit PrivateCopy(const StoreFile& original);
    ~PrivateCopy() { remove(); }
    PrivateCopy(const PrivateCopy&) = delete;
    PrivateCopy& operator=(const PrivateCopy&) = delete;

    [[nodiscard]] bool exists() const { return !folder_.empty(); }
    [[nodiscard]] std::filesystem::path path() const { return folder_ / "copy.sqlite"; }

private:
    bool makeAt(const std::filesystem::path& place, const StoreFile& original);
    void remove();

    std::filesystem::path folder_;
};

} // namespace velmora
