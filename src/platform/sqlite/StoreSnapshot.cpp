#include "platform/sqlite/StoreSnapshot.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <system_error>

namespace velmora {

namespace fs = std::filesystem;

namespace {

/// A copy of the file and its log in a folder of its own, removed with it.
class PrivateCopy {
public:
    explicit PrivateCopy(const StoreFile& original) {
        std::error_code error;
        // The second is memory: there, a copy succeeds on a full disk too.
        for (const fs::path& place : {fs::temp_directory_path(error), fs::path("/dev/shm")}) {
            if (copyTo(place, original)) {
                return;
            }
            remove();
        }
    }
    ~PrivateCopy() { remove(); }
    PrivateCopy(const PrivateCopy&) = delete;
    PrivateCopy& operator=(const PrivateCopy&) = delete;

    [[nodiscard]] bool exists() const { return !folder_.empty(); }
    [[nodiscard]] fs::path path() const { return folder_ / "copy.sqlite"; }

private:
    bool copyTo(const fs::path& place, const StoreFile& original) {
        std::string pattern = place / "velmora-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr) {
            return false;
        }
        folder_ = pattern;
        std::error_code error;
        fs::copy_file(original.path(), path(), error);
        if (!error && fs::exists(original.log(), error)) {
            fs::copy_file(original.log(), StoreFile(path()).log(), error);
        }
        // The copies carry the originals' modes, which may refuse writing.
        for (const fs::path& copy : {path(), StoreFile(path()).log()}) {
            std::error_code ignored;
            fs::permissions(copy, fs::perms::owner_read | fs::perms::owner_write, ignored);
        }
        return !error;
    }

    void remove() {
        std::error_code ignored;
        if (exists()) {
            fs::remove_all(folder_, ignored);
        }
        folder_.clear();
    }

    fs::path folder_;
};

bool hasLog(const StoreFile& file) {
    std::error_code error;
    const auto size = fs::file_size(file.log(), error);
    return !error && size > 0;
}

/// From the SQLite file format: 16 bytes of magic, and the user version at offset 60, most
/// significant byte first.
std::optional<std::int64_t> versionInHeader(const fs::path& path) {
    constexpr std::size_t versionOffset = 60;
    std::array<char, 100> header{};
    std::ifstream file(path, std::ios::binary);
    constexpr char magic[] = "SQLite format 3"; // its final zero belongs to it
    if (!file.read(header.data(), header.size()) ||
        std::memcmp(header.data(), magic, sizeof magic) != 0) {
        return std::nullopt;
    }
    std::uint32_t version = 0;
    for (std::size_t byte = 0; byte < sizeof version; ++byte) {
        version = version << 8U | static_cast<std::uint8_t>(header[versionOffset + byte]);
    }
    return static_cast<std::int32_t>(version);
}

} // namespace

std::optional<std::int64_t> storedVersion(const StoreFile& file) {
    if (!hasLog(file)) {
        return versionInHeader(file.path());
    }
    if (const PrivateCopy copy(file); copy.exists()) {
        auto database = Database::open(copy.path());
        const auto version = database ? database->queryNumber("PRAGMA user_version")
                                      : StatusOr<std::int64_t>(std::unexpected(database.error()));
        if (version) {
            return *version;
        }
    }
    return versionInHeader(file.path());
}

std::optional<StoredValues> readSnapshot(const StoreFile& file) {
    const PrivateCopy copy(file);
    if (!copy.exists()) {
        return std::nullopt;
    }
    auto connection = StoreConnection::open(copy.path());
    if (!connection) {
        return std::nullopt;
    }
    auto values = connection->readAll();
    return values ? std::optional(std::move(*values)) : std::nullopt;
}

} // namespace velmora
