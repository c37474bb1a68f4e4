#include "app/RealPlatform.h"

#include "platform/desktop/ProcFiles.h"

#include <string>
#include <string_view>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view cardsKey = "cardDevices";

std::uint64_t processStart(std::int32_t pid) {
    const auto stat = ProcFiles("/proc").stat(pid);
    return stat ? stat->startTicks : 0;
}

std::filesystem::path privateSettingsFile() {
    const auto file = SqliteDefaultsStore::defaultPath();
    makePrivateFolder(file.parent_path()); // where it fails, the store tells why
    return file;
}

} // namespace

RealPlatform::RealPlatform() : RealPlatform(privateSettingsFile()) {
}

RealPlatform::RealPlatform(const std::filesystem::path& settingsFile)
    : defaults_(settingsFile,
                {.mainQueue = &mainQueue_, .syncedKeys = {"presets", "activePresetID"}}),
      applications_(mainQueue_,
                    {.nameOf = [this](std::int32_t pid) { return audio_.applicationName(pid); },
                     .bundleIDOf = [this](std::int32_t pid) { return audio_.applicationID(pid); }}),
      audio_(mainQueue_,
             {.identify = [this](const auto& claims) { return applications_.identify(claims); },
              .applicationPid = [this](std::int32_t pid) { return applications_.leader(pid); },
              .processStart = processStart,
              .raiseThread = [this](std::int32_t thread,
                                    int niceLevel) { threads_.raise(thread, niceLevel); },
              .keepCards = [this](std::string cards) { defaults_.set(cardsKey, std::move(cards)); },
              .knownCards = defaults_.read<std::string>(cardsKey).value_or("")}) {
}

Platform RealPlatform::platform() {
    return {.devices = audio_.devices(),
            .taps = audio_.taps(),
            .sinks = audio_.sinks(),
            .units = audio_.units(),
            .applications = applications_,
            .defaults = defaults_,
            .mainQueue = mainQueue_,
            .appearance = appearance_,
            .loginItem = loginItem_,
            .shortcuts = shortcuts_,
            .notices = notices_};
}

} // namespace velmora
