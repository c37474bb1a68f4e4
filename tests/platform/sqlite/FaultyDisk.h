// FaultyDisk.h: SQLite's files on a disk that is full, loses its power, or shares no memory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace velmora {

/// While it lives, every file that SQLite opens in this process goes through it to the real disk.
/// One at a time. Threads: one.
class FaultyDisk {
public:
    FaultyDisk();
    ~FaultyDisk();
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;

    /// Whether processes can map a file together, as the write-ahead log's index wants it.
    bool sharesMemory = true;

    /// Writes, cuts, synchronisations and deletions so far.
    [[nodiscard]] std::uint64_t steps() const { return steps_; }

    /// From that step on, what needs space fails; none: never.
    std::optional<std::uint64_t> fullFrom;

    /// From that step on nothing reaches the disk any more, and every step fails; none: never.
    std::optional<std::uint64_t> powerlessFrom;
    /// Gives every file what a cut of the power has left of it: all that was synchronised, and of
    /// the rest a part, in any order, which may end in the middle of a page.
    /// To be called when nothing is open.
    void leaveWhatWasSynchronised(std::minstd_rand& random);

private:
    struct File;
    struct Calls;
    friend struct Calls;

    struct Write {
        std::size_t at{};
        std::string bytes{};
        bool isCut = false; ///< the file ends at `at`
    };
    struct Content {
        bool existed = false;
        std::string synchronised;
        std::vector<Write> since;
    };

    /// False when the step is not to be done.
    bool step();
    Content& contentOf(const std::string& path);

    sqlite3_vfs* real_;
    sqlite3_vfs own_;
    std::uint64_t steps_ = 0;
    std::map<std::string, Content> contents_;
};

} // namespace velmora
