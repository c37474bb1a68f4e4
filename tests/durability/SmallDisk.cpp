#include "durability/SmallDisk.h"

#include <cerrno>
#include <fstream>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <system_error>
#include <unistd.h>

namespace velmora {
namespace {

constexpr const char* options = "size=16m,mode=0700";

void writeLine(const char* file, const std::string& line) {
    std::ofstream(file) << line;
}

/// Root needs the mount namespace alone; anybody else is root of a user namespace first.
bool enterOwnNamespace() {
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return false;
        }
        writeLine("/proc/self/setgroups", "deny");
        writeLine("/proc/self/uid_map", "0 " + user + " 1");
        writeLine("/proc/self/gid_map", "0 " + group + " 1");
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mountSmall(const std::filesystem::path& folder) {
    static const bool isAlone = enterOwnNamespace();
    return isAlone && mount("tmpfs", folder.c_str(), "tmpfs", 0, options) == 0;
}

} // namespace

SmallDisk::SmallDisk(const std::filesystem::path& folder)
    : folder_(folder), isMounted_(mountSmall(folder)) {
}

SmallDisk::~SmallDisk() {
    if (isMounted_) {
        umount2(folder_.c_str(), MNT_DETACH);
    }
}

void SmallDisk::fill() const {
    std::ofstream file(filler(), std::ios::binary);
    const std::string page(4096, 'f');
    while (file << page << std::flush) {
    }
}

void SmallDisk::free() const {
    std::filesystem::remove(filler());
}

void SmallDisk::setReadOnly(bool readOnly) const {
    const unsigned long flags = readOnly ? MS_REMOUNT | MS_RDONLY : MS_REMOUNT;
    if (mount("tmpfs", folder_.c_str(), "tmpfs", flags, options) != 0) {
        throw std::system_error(errno, std::generic_category(), "remount");
    }
}

} // namespace velmora
