// ProcFiles.h: what the kernel tells about running processes.
#pragma once

#include "platform/desktop/ProcessStat.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// Reads /proc, or a folder that looks like it. A process that is gone, or whose files are closed
/// to us, gives empty answers. Threads: any.
class ProcFiles {
public:
    explicit ProcFiles(std::filesystem::path root) : root_(std::move(root)) {}

    /// In ascending order, whatever the file system's own is.
    [[nodiscard]] std::vector<std::int32_t> pids() const;

    /// None when no such process runs.
    [[nodiscard]] std::optional<ProcessStat> stat(std::int32_t pid) const;
    [[nodiscard]] std::vector<std::string> commandLine(std::int32_t pid) const;
    /// Path of the program's file.
    [[nodiscard]] std::string executable(std::int32_t pid) const;
    /// The variables that the program was started with, each as "NAME=value".
    [[nodiscard]] std::vector<std::string> environment(std::int32_t pid) const;
    [[nodiscard]] std::string controlGroups(std::int32_t pid) const;
    /// The description that the sandbox of a Flatpak application holds.
    [[nodiscard]] std::string flatpakInfo(std::int32_t pid) const;
    /// The number that the process has in its own namespace of processes; `pid` when that is ours.
    [[nodiscard]] std::int32_t innerPid(std::int32_t pid) const;
    /// The machine-id that the process sees; empty when it sees none.
    [[nodiscard]] std::string machineId(std::int32_t pid) const;
    /// The name of this machine.
    [[nodiscard]] std::string hostName() const;
    /// Another text after each start of the machine; empty when the kernel does not say.
    [[nodiscard]] std::string bootId() const;
    /// How long the process has been running; long when the kernel does not say.
    [[nodiscard]] double ageSeconds(const ProcessStat& stat) const;

private:
    [[nodiscard]] std::string read(std::int32_t pid, std::string_view file) const;

    std::filesystem::path root_;
};

} // namespace velmora
