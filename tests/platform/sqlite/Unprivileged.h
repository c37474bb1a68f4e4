// Unprivileged.h: a user whom file modes bind.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace velmora {

/// While it lives, this process is nobody in particular, so that file modes count; tests may be run
/// by root.
class Unprivileged {
public:
    explicit Unprivileged(const std::filesystem::path& owned) : before_(geteuid()) {
        if (before_ != 0) {
            return;
        }
        constexpr uid_t nobody = 65534;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(owned)) {
            EXPECT_EQ(chown(entry.path().c_str(), nobody, nobody), 0);
        }
        EXPECT_EQ(chown(owned.c_str(), nobody, nobody), 0);
        EXPECT_EQ(seteuid(nobody), 0);
    }
    ~Unprivileged() { EXPECT_EQ(seteuid(before_), 0); }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    uid_t before_;
};

} // namespace velmora
