#include "platform/sqlite/PrivateCopy.h"

#include "platform/sqlite/StoreFile.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace velmora {

namespace fs = std::filesystem;

PrivateCopy::PrivateCopy(const StoreFile& original) {
    std::error_code error;
    // The second is memory: there, a copy succeeds on a full disk too.
    for (const fs::path& place : {fs::temp_directory_path(error), fs::path("/dev/shm")}) {
        if (copyTo(place, original)) {
            return;
        }
        remove();
    }
}

bool PrivateCopy::copyTo(const fs::path& place, const StoreFile& original) {
    std::string pattern = place / "velmora-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        return false;
    }
    folder_ = pattern;
    const StoreFile copy(path());
    std::error_code error;
    fs::copy_file(original.path(), copy.path(), error);
    for (const auto& [from, to] :
         {std::pair(original.log(), copy.log()), std::pair(original.journal(), copy.journal())}) {
        if (!error && fs::exists(from, error)) {
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

void PrivateCopy::remove() {
    std::error_code ignored;
    if (exists()) {
        fs::remove_all(folder_, ignored);
    }
    folder_.clear();
}

} // namespace velmora
