#include "platform/sqlite/PrivateCopy.h"

#include "platform/sqlite/StoreFile.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {

/// What tells that a log was carried over into the file, or begun anew, meanwhile. A log that only
/// grew does no harm: its end is a whole transaction or does not count.
struct Moment {
    std::uintmax_t size{};
    fs::file_time_type written{};
    std::string logHeader{};

    bool operator==(const Moment&) const = default;
};

Moment momentOf(const StoreFile& file) {
    constexpr std::size_t headerBytes = 32;
    std::error_code ignored;
    Moment moment{.size = fs::file_size(file.path(), ignored),
                  .written = fs::last_write_time(file.path(), ignored),
                  .logHeader = std::string(headerBytes, '\0')};
    std::ifstream(file.log(), std::ios::binary).read(moment.logHeader.data(), headerBytes);
    return moment;
}

bool copyFiles(const StoreFile& original, const StoreFile& copy) {
    std::error_code error;
    constexpr auto again = fs::copy_options::overwrite_existing;
    fs::copy_file(original.path(), copy.path(), again, error);
    for (const auto& [from, to] :
         {std::pair(original.log(), copy.log()), std::pair(original.journal(), copy.journal())}) {
        std::error_code ignored;
        fs::remove(to, ignored);
        if (!error && fs::exists(from, ignored)) {
            fs::copy_file(from, to, error);
        }
    }
    // The copies carry the originals' modes, which may refuse writing.
    for (const fs::path& file : {copy.path(), copy.log(), copy.journal()}) {
        std::error_code ignored;
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write, ignored);
    }
    return !error;
}

} // namespace

PrivateCopy::PrivateCopy(const StoreFile& original) {
    std::error_code error;
    // The second is memory: there, a copy succeeds on a full disk too.
    for (const fs::path& place : {fs::temp_directory_path(error), fs::path("/dev/shm")}) {
        if (makeAt(place, original)) {
            return;
        }
        remove();
    }
}

bool PrivateCopy::makeAt(const fs::path& place, const StoreFile& original) {
    std::string pattern = place / "velmora-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        return false;
    }
    folder_ = pattern;
    constexpr int attempts = 5;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Moment before = momentOf(original);
        if (!copyFiles(original, StoreFile(path()))) {
            return false;
        }
        if (momentOf(original) == before) {
            break;
        }
    }
    return true;
}

void PrivateCopy::remove() {
    std::error_code ignored;
    if (exists()) {
        fs::remove_all(folder_, ignored);
    }
    folder_.clear();
}

} // namespace velmora
