// ProcessStat.h: the kernel's one-line summary of a process.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// What we need of /proc/<pid>/stat (proc(5)).
struct ProcessStat {
    std::int32_t pid{};
    std::string name; ///< the program's file name, cut to 15 bytes; the program may change it
    char state{};
    std::int32_t parent{};
    std::int32_t terminal{};    ///< device number of the controlling terminal; 0 = none
    std::uint64_t startTicks{}; ///< since boot; tells apart two processes of one number

    /// A dead process whose parent has not asked for its status is not running.
    [[nodiscard]] bool isRunning() const { return state != 'Z' && state != 'X'; }

    bool operator==(const ProcessStat&) const = default;
};

/// None when the text is not such a line.
[[nodiscard]] std::optional<ProcessStat> parseProcessStat(std::string_view text);

} // namespace velmora
