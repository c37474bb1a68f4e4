// WithoutPriorities.h: a user whose threads may not go before others'.
#pragma once

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace velmora {

/// While it lives, this thread, and whatever it starts, gets no priority from the kernel; tests may
/// be run by root.
class WithoutPriorities {
public:
    WithoutPriorities() {
        EXPECT_EQ(syscall(SYS_capget, &header_, before_), 0);
        EXPECT_EQ(getrlimit(RLIMIT_RTPRIO, &realTime_), 0);
        EXPECT_EQ(getrlimit(RLIMIT_NICE, &nice_), 0);
        __user_cap_data_struct without[_LINUX_CAPABILITY_U32S_3] = {before_[0], before_[1]};
        without[CAP_TO_INDEX(CAP_SYS_NICE)].effective &= ~CAP_TO_MASK(CAP_SYS_NICE);
        limit({.rlim_cur = 0, .rlim_max = realTime_.rlim_max},
              {.rlim_cur = 0, .rlim_max = nice_.rlim_max});
        EXPECT_EQ(syscall(SYS_capset, &header_, without), 0);
    }
    ~WithoutPriorities() {
        EXPECT_EQ(syscall(SYS_capset, &header_, before_), 0);
        limit(realTime_, nice_);
    }
    WithoutPriorities(const WithoutPriorities&) = delete;
    WithoutPriorities& operator=(const WithoutPriorities&) = delete;

private:
    static void limit(const rlimit& realTime, const rlimit& nice) {
        EXPECT_EQ(setrlimit(RLIMIT_RTPRIO, &realTime), 0);
        EXPECT_EQ(setrlimit(RLIMIT_NICE, &nice), 0);
    }

    __user_cap_header_struct header_{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    __user_cap_data_struct before_[_LINUX_CAPABILITY_U32S_3] = {};
    rlimit realTime_{};
    rlimit nice_{};
};

} // namespace velmora
