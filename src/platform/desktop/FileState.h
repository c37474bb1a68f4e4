// FileState.h: tells whether a file or folder is still the one that was looked at.
#pragma once

#include <cstdint>
#include <filesystem>

namespace velmora {

/// What the file system says about one file or folder; a missing one is a state as well.
struct FileState {
    std::uint64_t inode{};
    std::uint64_t size{};
    std::int64_t changed{}; ///< nanoseconds since 1970; 0 when missing

    bool operator==(const FileState&) const = default;
};

[[nodiscard]] FileState fileStateOf(const std::filesystem::path& path);

/// Whether a change at this very moment could leave the state as it is: dates of files stand still
/// between two ticks of the kernel's clock.
[[nodiscard]] bool mayChangeUnseen(const FileState& state);

} // namespace velmora
