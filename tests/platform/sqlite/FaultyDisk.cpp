#include "platform/sqlite/FaultyDisk.h"

#include "platform/sqlite/StoreFixture.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace velmora {

struct FaultyDisk::File : sqlite3_file {
    FaultyDisk* disk;
    Content* content; // none for a temporary file
    sqlite3_file* real;
};

/// What SQLite calls.
struct FaultyDisk::Calls {
    static File& of(sqlite3_file* file) { return *static_cast<File*>(file); }
    static sqlite3_file* real(sqlite3_file* file) { return of(file).real; }

    static FaultyDisk& disk(sqlite3_vfs* vfs) { return *static_cast<FaultyDisk*>(vfs->pAppData); }
    static sqlite3_vfs* real(sqlite3_vfs* vfs) { return disk(vfs).real_; }

    static int open(sqlite3_vfs* vfs, const char* path, sqlite3_file* file, int flags, int* out) {
        File& opened = of(file);
        opened.pMethods = nullptr;
        opened.disk = &disk(vfs);
        opened.content = path == nullptr ? nullptr : &disk(vfs).contentOf(path);
        opened.real = reinterpret_cast<sqlite3_file*>(&opened + 1);
        const int code = real(vfs)->xOpen(real(vfs), path, opened.real, flags, out);
        if (opened.real->pMethods != nullptr) {
            opened.pMethods = &methods;
        }
        return code;
    }
    static int remove(sqlite3_vfs* vfs, const char* path, int synchronise) {
        if (!disk(vfs).step()) {
            return SQLITE_IOERR_DELETE;
        }
        disk(vfs).contentOf(path) = {};
        return real(vfs)->xDelete(real(vfs), path, synchronise);
    }
    static int access(sqlite3_vfs* vfs, const char* path, int flags, int* result) {
        return real(vfs)->xAccess(real(vfs), path, flags, result);
    }
    static int fullPath(sqlite3_vfs* vfs, const char* path, int size, char* result) {
        return real(vfs)->xFullPathname(real(vfs), path, size, result);
    }
    static int random(sqlite3_vfs* vfs, int size, char* bytes) {
        return real(vfs)->xRandomness(real(vfs), size, bytes);
    }
    static int sleep(sqlite3_vfs* vfs, int microseconds) {
        return real(vfs)->xSleep(real(vfs), microseconds);
    }
    static int time(sqlite3_vfs* vfs, double* now) {
        return real(vfs)->xCurrentTime(real(vfs), now);
    }
    static int lastError(sqlite3_vfs* vfs, int size, char* text) {
        return real(vfs)->xGetLastError(real(vfs), size, text);
    }
    static int time64(sqlite3_vfs* vfs, sqlite3_int64* now) {
        return real(vfs)->xCurrentTimeInt64(real(vfs), now);
    }

    static int close(sqlite3_file* file) { return real(file)->pMethods->xClose(real(file)); }
    static int read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 at) {
        return real(file)->pMethods->xRead(real(file), bytes, size, at);
    }
    static int write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 at) {
        FaultyDisk& disk = *of(file).disk;
        if (!disk.step()) {
            return SQLITE_IOERR_WRITE;
        }
        if (disk.fullFrom && disk.steps_ > *disk.fullFrom) {
            return SQLITE_FULL;
        }
        if (of(file).content != nullptr) {
            of(file).content->since.push_back(
                {.at = static_cast<std::size_t>(at),
                 .bytes =
                     std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(size))});
        }
        return real(file)->pMethods->xWrite(real(file), bytes, size, at);
    }
    static int truncate(sqlite3_file* file, sqlite3_int64 size) {
        if (!of(file).disk->step()) {
            return SQLITE_IOERR_TRUNCATE;
        }
        if (of(file).content != nullptr) {
            of(file).content->since.push_back(
                {.at = static_cast<std::size_t>(size), .isCut = true});
        }
        return real(file)->pMethods->xTruncate(real(file), size);
    }
    static int synchronise(sqlite3_file* file, int flags) {
        if (!of(file).disk->step()) {
            return SQLITE_IOERR_FSYNC;
        }
        if (Content* const content = of(file).content) {
            for (const Write& write : std::exchange(content->since, {})) {
                apply(write, content->synchronised);
            }
            content->existed = true;
        }
        static_cast<void>(flags); // the real disk need not wait
        return SQLITE_OK;
    }
    static int size(sqlite3_file* file, sqlite3_int64* size) {
        return real(file)->pMethods->xFileSize(real(file), size);
    }
    static int lock(sqlite3_file* file, int level) {
        return real(file)->pMethods->xLock(real(file), level);
    }
    static int unlock(sqlite3_file* file, int level) {
        return real(file)->pMethods->xUnlock(real(file), level);
    }
    static int checkLock(sqlite3_file* file, int* result) {
        return real(file)->pMethods->xCheckReservedLock(real(file), result);
    }
    static int control(sqlite3_file* file, int operation, void* argument) {
        return real(file)->pMethods->xFileControl(real(file), operation, argument);
    }
    static int sector(sqlite3_file* file) { return real(file)->pMethods->xSectorSize(real(file)); }
    static int device(sqlite3_file* file) {
        return real(file)->pMethods->xDeviceCharacteristics(real(file));
    }
    static int map(sqlite3_file* file, int region, int size, int extend, void volatile** memory) {
        if (!of(file).disk->sharesMemory) {
            *memory = nullptr;
            return SQLITE_IOERR_SHMMAP;
        }
        return real(file)->pMethods->xShmMap(real(file), region, size, extend, memory);
    }
    static int lockMap(sqlite3_file* file, int offset, int count, int flags) {
        return real(file)->pMethods->xShmLock(real(file), offset, count, flags);
    }
    static void barrier(sqlite3_file* file) { real(file)->pMethods->xShmBarrier(real(file)); }
    static int unmap(sqlite3_file* file, int remove) {
        return real(file)->pMethods->xShmUnmap(real(file), remove);
    }

    static void apply(const Write& write, std::string& content) {
        content.resize(write.isCut ? write.at
                                   : std::max(content.size(), write.at + write.bytes.size()));
        content.replace(write.at, write.bytes.size(), write.bytes);
    }

    // Version 2: without mapped reading, which would pass us by.
    static constexpr sqlite3_io_methods methods{2,
                                                close,
                                                read,
                                                write,
                                                truncate,
                                                synchronise,
                                                size,
                                                lock,
                                                unlock,
                                                checkLock,
                                                control,
                                                sector,
                                                device,
                                                map,
                                                lockMap,
                                                barrier,
                                                unmap,
                                                nullptr,
                                                nullptr};
};

FaultyDisk::FaultyDisk() : real_(sqlite3_vfs_find(nullptr)), own_(*real_) {
    own_.szOsFile = static_cast<int>(sizeof(File)) + real_->szOsFile;
    own_.iVersion = 2;
    own_.zName = "faulty";
    own_.pAppData = this;
    own_.xOpen = Calls::open;
    own_.xDelete = Calls::remove;
    own_.xAccess = Calls::access;
    own_.xFullPathname = Calls::fullPath;
    own_.xRandomness = Calls::random;
    own_.xSleep = Calls::sleep;
    own_.xCurrentTime = Calls::time;
    own_.xGetLastError = Calls::lastError;
    own_.xCurrentTimeInt64 = Calls::time64;
    sqlite3_vfs_register(&own_, /*makeDflt=*/1);
}

FaultyDisk::~FaultyDisk() {
    sqlite3_vfs_unregister(&own_);
    sqlite3_vfs_register(real_, /*makeDflt=*/1);
}

bool FaultyDisk::step() {
    ++steps_;
    return !powerlessFrom || steps_ <= *powerlessFrom;
}

FaultyDisk::Content& FaultyDisk::contentOf(const std::string& path) {
    const auto [found, isNew] = contents_.try_emplace(path);
    if (isNew && fs::exists(path)) {
        found->second = {.existed = true, .synchronised = velmora::contentOf(path), .since = {}};
    }
    return found->second;
}

void FaultyDisk::leaveWhatWasSynchronised(std::minstd_rand& random) {
    for (auto& [path, content] : contents_) {
        if (!fs::exists(path)) {
            continue;
        }
        std::string left = content.synchronised;
        std::ranges::shuffle(content.since, random);
        for (Write& write : content.since) {
            constexpr std::size_t sectorBytes = 512;
            const std::size_t sectors = write.bytes.size() / sectorBytes + 1;
            write.bytes.resize(
                std::min(write.bytes.size(), random() % (sectors + 1) * sectorBytes));
            if (random() % 2 == 0) {
                Calls::apply(write, left);
            }
        }
        velmora::write(path, left);
    }
    contents_.clear();
}

} // namespace velmora
