#include "platform/desktop/ProcFiles.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fcntl.h>
#include <limits>
#include <system_error>
#include <unistd.h>

namespace velmora {

namespace fs = std::filesystem;

namespace {

/// Files of /proc have no length to ask for. An environment may be large, but not endless.
std::string contentOf(const fs::path& path) {
    constexpr std::size_t most = 1U << 20U;
    std::string content;
    // Not blocking: a sandbox chooses what lies in its root.
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        return content;
    }
    std::array<char, 8192> block;
    ssize_t count = 0;
    while (content.size() < most && (count = ::read(file, block.data(), block.size())) > 0) {
        content.append(block.data(), static_cast<std::size_t>(count));
    }
    ::close(file);
    return content;
}

std::vector<std::string> zeroTerminated(std::string_view text) {
    std::vector<std::string> pieces;
    while (!text.empty()) {
        const auto end = text.find('\0');
        pieces.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return pieces;
}

std::string_view firstLine(std::string_view text) {
    return text.substr(0, text.find('\n'));
}

} // namespace

std::string ProcFiles::read(std::int32_t pid, std::string_view file) const {
    return contentOf(root_ / std::to_string(pid) / file);
}

std::vector<std::int32_t> ProcFiles::pids() const {
    std::vector<std::int32_t> pids;
    std::error_code error;
    for (fs::directory_iterator entry(root_, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename();
        std::int32_t pid = 0;
        const auto [last, failure] = std::from_chars(name.data(), name.data() + name.size(), pid);
        if (failure == std::errc{} && last == name.data() + name.size()) {
            pids.push_back(pid);
        }
    }
    std::ranges::sort(pids);
    return pids;
}

std::optional<ProcessStat> ProcFiles::stat(std::int32_t pid) const {
    auto stat = parseProcessStat(read(pid, "stat"));
    return stat && stat->isRunning() ? stat : std::nullopt;
}

std::vector<std::string> ProcFiles::commandLine(std::int32_t pid) const {
    return zeroTerminated(read(pid, "cmdline"));
}

std::vector<std::string> ProcFiles::environment(std::int32_t pid) const {
    return zeroTerminated(read(pid, "environ"));
}

std::string ProcFiles::executable(std::int32_t pid) const {
    std::error_code error;
    std::string path = fs::read_symlink(root_ / std::to_string(pid) / "exe", error);
    constexpr std::string_view replaced = " (deleted)"; // an update replaced the file
    if (path.ends_with(replaced)) {
        path.resize(path.size() - replaced.size());
    }
    return path;
}

std::string ProcFiles::controlGroups(std::int32_t pid) const {
    return read(pid, "cgroup");
}

std::string ProcFiles::flatpakInfo(std::int32_t pid) const {
    return read(pid, "root/.flatpak-info");
}

std::int32_t ProcFiles::innerPid(std::int32_t pid) const {
    // "NSpid:\t4312\t2": from our namespace inwards.
    constexpr std::string_view label = "\nNSpid:";
    const std::string status = read(pid, "status");
    const auto found = status.find(label);
    if (found == std::string::npos) {
        return pid;
    }
    const auto line = firstLine(std::string_view(status).substr(found + label.size()));
    const auto last = line.substr(line.rfind('\t') + 1);
    std::int32_t inner = pid;
    std::from_chars(last.data(), last.data() + last.size(), inner);
    return inner;
}

std::string ProcFiles::machineId(std::int32_t pid) const {
    return std::string(firstLine(read(pid, "root/etc/machine-id")));
}

std::string ProcFiles::hostName() const {
    return std::string(firstLine(contentOf(root_ / "sys/kernel/hostname")));
}

std::string ProcFiles::bootId() const {
    return std::string(firstLine(contentOf(root_ / "sys/kernel/random/boot_id")));
}

double ProcFiles::ageSeconds(const ProcessStat& stat) const {
    const std::string uptime = contentOf(root_ / "uptime");
    double sinceBoot = 0;
    const auto [end, error] =
        std::from_chars(uptime.data(), uptime.data() + uptime.size(), sinceBoot);
    if (error != std::errc{}) {
        return std::numeric_limits<double>::infinity();
    }
    return sinceBoot -
           static_cast<double>(stat.startTicks) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

} // namespace velmora
