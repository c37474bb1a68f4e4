#include "platform/desktop/FileState.h"

#include <ctime>
#include <sys/stat.h>

namespace velmora {

namespace {

std::int64_t nanoseconds(const timespec& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

FileState fileStateOf(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return {};
    }
    return {.inode = status.st_ino,
            .size = static_cast<std::uint64_t>(status.st_size),
            .changed = nanoseconds(status.st_mtim)};
}

bool mayChangeUnseen(const FileState& state) {
    constexpr std::int64_t margin = 20'000'000; // ns; the kernel's slowest tick is 10 ms
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return state.changed > nanoseconds(now) - margin;
}

} // namespace velmora
