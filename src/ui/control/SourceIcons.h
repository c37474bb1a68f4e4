// SourceIcons.h: the picture before a source's name.
#pragma once

#include "platform/AudioDevices.h"

#include <QString>
#include <string>
#include <string_view>

namespace velmora {

class Applications;

/// URL of an application's icon; empty when the desktop has none.
[[nodiscard]] QString applicationIcon(const Applications& applications, std::string_view bundleID);

/// The URL under which `ApplicationIconProvider` draws this name or path.
[[nodiscard]] QString applicationIconUrl(const std::string& icon);

/// Name of the symbol of an input device, by how it is connected.
[[nodiscard]] QString deviceSymbol(const AudioDevices& devices, AudioObjectID device);

} // namespace velmora
