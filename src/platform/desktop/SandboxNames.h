// SandboxNames.h: reads an application's identifier from the names that a desktop gives its
// processes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The desktop-entry ids that the content of /proc/<pid>/cgroup may stand for, likeliest first;
/// which of them exists, the caller finds out.
///
/// Source: systemd, "Desktop Environment Integration": app[-<launcher>]-<id>-<random>.scope and
///         app[-<launcher>]-<id>[@<random>].service, with "\x2d" for a dash inside the id. Some
///         launchers leave such a dash as it is, so longer readings follow. Snap names its scopes
///         snap.<snap>.<app>…, and the desktop entry <snap>_<app>.
[[nodiscard]] std::vector<std::string> desktopIdsOfControlGroup(std::string_view content);

/// The application that a Flatpak sandbox was made for; empty when the text does not say.
[[nodiscard]] std::string flatpakApplication(const std::string& flatpakInfo);

} // namespace velmora
