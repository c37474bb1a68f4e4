// SmallDisk.h: a disk that is easily filled or made read-only.
#pragma once

#include <filesystem>

namespace velmora {

/// A file system of 16 MB in memory, mounted over `folder`. The first one moves this process into a
/// mount namespace of its own, so that nobody else sees it; there, file modes no longer bind an
/// ordinary user either.
///
/// Threads: a process without others. Errors: see `isMounted`.
class SmallDisk {
public:
    explicit SmallDisk(const std::filesystem::path& folder);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    /// False where the system lets this user mount nothing at all.
    [[nodiscard]] bool isMounted() const { return isMounted_; }

    void fill() const;
    void free() const;
    /// Refuses or allows every write, for every user.
    void setReadOnly(bool readOnly) const;

private:
    [[nodiscard]] std::filesystem::path filler() const { return folder_ / "filler"; }

    std::filesystem::path folder_;
    bool isMounted_;
};

} // namespace velmora
