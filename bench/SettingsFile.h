// SettingsFile.h: a settings file of a benchmark's own.
#pragma once

#include "platform/sqlite/SqliteDefaultsStore.h"

#include <filesystem>
#include <string>
#include <unistd.h>

namespace velmora {

/// A store with the keys of a long-used mixer, in the folder for temporary files.
class SettingsFile {
public:
    SettingsFile() {
        for (int key = 0; key < 30; ++key) {
            store.set("key" + std::to_string(key), std::string(300, 'v'));
        }
    }
    ~SettingsFile() { std::filesystem::remove_all(folder_); }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;

private:
    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("velmora-bench-" + std::to_string(getpid()));

public:
    SqliteDefaultsStore store{folder_ / "settings.sqlite"};
};

} // namespace velmora
