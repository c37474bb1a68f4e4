// StoreCopies.h: whole copies of the store's file beside it, one a day.
#pragma once

#include "platform/Status.h"
#include "platform/sqlite/StoreFile.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class StoreConnection;

/// "settings-copy-2025-03-14.sqlite" for each of the last seven days on which something was
/// written: what the file held before.
///
/// Threads: one owner.
class StoreCopies {
public:
    struct Copy {
        std::string day; ///< as `dayOf` writes it
        std::filesystem::path file;
    };

    explicit StoreCopies(const StoreFile& file) : file_(file.path()) {}

    /// Oldest first.
    [[nodiscard]] std::vector<Copy> all() const;
    [[nodiscard]] std::optional<Copy> latest() const;

    /// Copies what there is and removes what is too old, unless this day has its copy. Where that
    /// is refused, the day goes without one: a write never waits for its copy to succeed.
    void makeOncePerDay(StoreConnection& connection, std::chrono::system_clock::time_point now);

    /// Copies what there is to "settings-replaced-2025-03-14.sqlite", or the first of "…-2" and so
    /// on that nothing has yet.
    [[nodiscard]] Status keepReplaced(StoreConnection& connection,
                                      std::chrono::system_clock::time_point now) const;

private:
    [[nodiscard]] std::filesystem::path named(const std::string& ending) const;

    std::filesystem::path file_;
    // When this was last done.
    std::optional<std::chrono::sys_time<std::chrono::minutes>> lookedAt_;
    std::string lookedOn_;
};

} // namespace velmora
