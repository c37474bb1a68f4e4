#include "platform/sqlite/StoreSnapshot.h"

#include "platform/sqlite/PrivateCopy.h"
#include "platform/sqlite/StoreSalvage.h"

#include <array>
#include <cstring>
#include <fstream>
#include <string>
#include <system_error>

namespace velmora {

namespace fs = std::filesystem;

namespace {

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
    if (!std::ifstream(file.path(), std::ios::binary)) {
        return std::nullopt;
    }
    if (const PrivateCopy copy(file); copy.exists()) {
        if (auto connection = StoreConnection::open(copy.path())) {
            if (auto values = connection->readAll()) {
                return std::move(*values);
            }
        }
    }
    return valuesOf(salvageRows(file));
}

StoredValues readNewer(const StoreFile& file) {
    const PrivateCopy copy(file);
    auto database = Database::open(copy.path());
    return database ? valuesOf(readRows(*database, "ASC").rows) : StoredValues{};
}

} // namespace velmora
