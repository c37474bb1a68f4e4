#include "platform/sqlite/StoreFile.h"

#include "platform/sqlite/Database.h"

#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sqlite3.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace velmora {

namespace fs = std::filesystem;

namespace {

// The main file moves last: a process killed half-way leaves it to be found damaged again.
constexpr std::array companions{"-wal", "-shm", "-journal", ""};

fs::path withSuffix(const fs::path& path, const char* suffix) {
    fs::path result = path;
    result += suffix;
    return result;
}

std::uintmax_t sizeOf(const fs::path& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    return error ? 0 : size;
}

/// Waits for the disk to have the folder's names. Where that is refused, nothing is lost but in a
/// cut of the power.
void syncFolder(const fs::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

bool makeFolders(const fs::path& folder) {
    std::error_code error;
    if (folder.empty() || fs::is_directory(folder, error)) {
        return true;
    }
    if (!makeFolders(folder.parent_path())) {
        return false;
    }
    if (::mkdir(folder.c_str(), S_IRWXU) != 0) {
        return errno == EEXIST;
    }
    syncFolder(folder.parent_path());
    return true;
}

bool anyExists(const fs::path& main) {
    for (const char* suffix : companions) {
        std::error_code error;
        if (fs::exists(fs::symlink_status(withSuffix(main, suffix), error))) {
            return true;
        }
    }
    return false;
}

/// "settings.sqlite" becomes "settings-damaged-2025-03-01.sqlite", then "…-2.sqlite" and so on.
fs::path unusedName(const fs::path& path, std::chrono::system_clock::time_point now) {
    const std::string dated = path.stem().string() + "-damaged-" + dayOf(now);
    const std::string extension = path.extension().string();
    fs::path name = path.parent_path() / (dated + extension);
    for (int count = 2; anyExists(name); ++count) {
        name = path.parent_path() / (dated + "-" + std::to_string(count) + extension);
    }
    return name;
}

fs::path followed(const fs::path& path) {
    std::error_code error;
    fs::path followed = fs::weakly_canonical(path, error);
    return error ? path : followed;
}

} // namespace

std::string dayOf(std::chrono::system_clock::time_point now) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &local)};
}

Status moveSynced(const fs::path& from, const fs::path& to) {
    const int file = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isWritten = file >= 0 && ::fsync(file) == 0;
    if (file >= 0) {
        ::close(file);
    }
    if (!isWritten || ::rename(from.c_str(), to.c_str()) != 0) {
        return isOutOfSpace(errno) ? SQLITE_FULL : SQLITE_CANTOPEN;
    }
    syncFolder(to.parent_path());
    return SQLITE_OK;
}

Status makePrivateFolder(const fs::path& folder) {
    if (!makeFolders(folder)) {
        return isOutOfSpace(errno) ? SQLITE_FULL : SQLITE_CANTOPEN;
    }
    struct stat found {};
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    const bool isOpen = ::stat(folder.c_str(), &found) == 0 && (found.st_mode & others) != 0;
    return !isOpen || ::chmod(folder.c_str(), found.st_mode & S_IRWXU) == 0 ? SQLITE_OK
                                                                            : SQLITE_CANTOPEN;
}

StoreFile::StoreFile(const fs::path& path) : path_(followed(path)) {
}

fs::path StoreFile::log() const {
    return withSuffix(path_, "-wal");
}

fs::path StoreFile::journal() const {
    return withSuffix(path_, "-journal");
}

fs::path StoreFile::successor() const {
    return withSuffix(path_, "-new");
}

fs::path StoreFile::lock() const {
    return fs::path(path_).replace_extension(".lock");
}

Status StoreFile::makeFolder() const {
    if (makeFolders(path_.parent_path())) {
        return SQLITE_OK;
    }
    return isOutOfSpace(errno) ? SQLITE_FULL : SQLITE_CANTOPEN;
}

Status StoreFile::createIfMissing() const {
    std::error_code error;
    // Only a whole successor is met without the file: it is closed before the file moves.
    if (!fs::exists(path_, error) && fs::exists(successor(), error)) {
        fs::rename(successor(), path_, error);
    }
    // SQLite gives the companions the mode of the main file.
    const int file = ::open(path_.c_str(), O_CREAT | O_EXCL | O_CLOEXEC | O_WRONLY, 0600);
    if (file >= 0) {
        ::close(file);
        syncFolder(path_.parent_path());
        return SQLITE_OK;
    }
    if (errno == EEXIST) {
        return SQLITE_OK;
    }
    return isOutOfSpace(errno) ? SQLITE_FULL : SQLITE_CANTOPEN;
}

bool StoreFile::isGone() const {
    std::error_code error;
    return sizeOf(path_) == 0 && sizeOf(log()) == 0 && !fs::exists(successor(), error);
}

bool StoreFile::isCutOff() const {
    return sizeOf(path_) == 0 && sizeOf(log()) > 0;
}

void StoreFile::removeSuccessor() const {
    for (const char* suffix : companions) {
        std::error_code ignored;
        fs::remove(withSuffix(successor(), suffix), ignored);
    }
}

StatusOr<fs::path> StoreFile::giveWayToSuccessor(std::chrono::system_clock::time_point now) const {
    const fs::path name = unusedName(path_, now);
    for (const char* suffix : companions) {
        if (::rename(withSuffix(path_, suffix).c_str(), withSuffix(name, suffix).c_str()) != 0 &&
            errno != ENOENT) {
            return std::unexpected(SQLITE_CANTOPEN);
        }
    }
    if (::rename(successor().c_str(), path_.c_str()) != 0) {
        return std::unexpected(SQLITE_CANTOPEN);
    }
    syncFolder(path_.parent_path());
    return name;
}

} // namespace velmora
