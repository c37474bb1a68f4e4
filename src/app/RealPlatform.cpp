#include "app/RealPlatform.h"

namespace velmora {

RealPlatform::RealPlatform(const std::filesystem::path& settingsFile)
    : defaults_(settingsFile),
      applications_(mainQueue_,
                    {.nameOf = [this](std::int32_t pid) { return audio_.applicationName(pid); }}),
      audio_(mainQueue_,
             {.applicationPid = [this](std::int32_t pid) { return applications_.leader(pid); }}) {
}

Platform RealPlatform::platform() {
    return {.hardware = audio_.hardware(),
            .units = audio_.units(),
            .applications = applications_,
            .defaults = defaults_,
            .mainQueue = mainQueue_,
            .appearance = appearance_};
}

} // namespace velmora
