// Staged.h: the program as a system would have it, in a folder of its own.
#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora::packaging {

/// Runs a program that may take a minute. Errors: throws std::runtime_error when it fails.
inline void runPatiently(const std::vector<std::string>& arguments,
                         support::Environment environment = support::currentEnvironment()) {
    support::ChildProcess child({.arguments = arguments, .environment = std::move(environment)});
    if (child.wait(std::chrono::minutes(1)) != 0) {
        throw std::runtime_error(arguments.front() + " failed");
    }
}

/// Every file below `folder`, relative to it; folders are not named.
inline std::set<std::string> filesIn(const std::filesystem::path& folder) {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_directory()) {
            files.insert(entry.path().lexically_relative(folder));
        }
    }
    return files;
}

/// Both Debian packages, made from this build and unpacked.
struct UnpackedPackages {
    UnpackedPackages() {
        runPatiently({CPACK_PROGRAM,
                      "--config",
                      BUILD_FOLDER "/CPackConfig.cmake",
                      "-B",
                      folder.path() / "packages"});
        for (const auto* package : {&mixerPackage, &microphonePackage}) {
            runPatiently({"dpkg-deb", "--extract", *package, root});
        }
    }

    support::TemporaryFolder folder{"velmora-package"};
    std::filesystem::path mixerPackage =
        folder.path() / "packages" / "velmora_" PACKAGE_VERSION "_amd64.deb";
    std::filesystem::path microphonePackage =
        folder.path() / "packages" / "velmora-microphone_" PACKAGE_VERSION "_all.deb";
    std::filesystem::path root = folder.path() / "root";
};

} // namespace velmora::packaging
