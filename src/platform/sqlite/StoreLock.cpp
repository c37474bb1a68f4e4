#include "platform/sqlite/StoreLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace velmora {

StoreLock::~StoreLock() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

StoreLock::Outcome StoreLock::take() {
    if (descriptor_ >= 0) {
        return Outcome::held;
    }
    // Closed in programs that are launched from here: they would hold the lock longer than we live.
    // Open for writing, because NFS locks nothing else; whatever lies there is never waited for.
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int descriptor = ::open(file_.c_str(), flags, 0600);
    if (descriptor < 0) {
        return Outcome::unavailable;
    }
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EINTR) {
            const bool isElsewhere = errno == EWOULDBLOCK;
            ::close(descriptor);
            return isElsewhere ? Outcome::isElsewhere : Outcome::unavailable;
        }
    }
    descriptor_ = descriptor;
    return Outcome::held;
}

} // namespace velmora
