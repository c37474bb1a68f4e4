// TemporaryFolder.h: a fresh folder that goes with its owner.
#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace velmora::support {

/// Readable by this user only. Directly in /tmp, because the path of a socket inside must stay
/// under 108 bytes.
class TemporaryFolder {
public:
    explicit TemporaryFolder(std::string_view prefix) {
        std::string pattern = "/tmp/" + std::string(prefix) + "-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), pattern);
        }
        path_ = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored; // what a dying program still writes is not worth a failure
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace velmora::support
