// Applications.h: the desktop's applications, running and installed.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// One running application. A program of several processes is one application; `pid` is the
/// process that leads it.
struct RunningApplication {
    std::int32_t pid{};
    std::string name;     ///< display name in the desktop's language; empty when there is none
    std::string bundleID; ///< desktop-entry id without its suffix; empty when there is none
    bool regular{};       ///< has a visible desktop entry (otherwise a background program)

    bool operator==(const RunningApplication&) const = default;
};

/// One installed application that the user can choose.
struct InstalledApplication {
    std::string bundleID; ///< desktop-entry id without its suffix
    std::string name;     ///< in the desktop's language
    std::string location; ///< what `launch` takes: the path of the desktop entry

    bool operator==(const InstalledApplication&) const = default;
};

/// Threads: main. Errors: an unknown process or identifier gives none, never an exception.
class Applications {
public:
    virtual ~Applications() = default;

    [[nodiscard]] virtual std::int32_t ownPid() const = 0;

    /// The application that the process belongs to (any of its processes may be asked for), or
    /// none when no such process runs.
    [[nodiscard]] virtual std::optional<RunningApplication> byPid(std::int32_t pid) const = 0;

    /// A number that tells the process from every other that had or will have its id, also before
    /// and after the machine was restarted; below 2^53. None when no such process runs.
    [[nodiscard]] virtual std::optional<std::uint64_t> birth(std::int32_t pid) const = 0;

    /// Every running instance, in the order in which they were started.
    [[nodiscard]] virtual std::vector<RunningApplication>
    byBundleID(std::string_view bundleID) const = 0;

    /// The installed application known under this identifier.
    [[nodiscard]] virtual std::optional<InstalledApplication>
    installed(std::string_view bundleID) const = 0;

    /// Everything that may be offered for choosing, in any order.
    [[nodiscard]] virtual std::vector<InstalledApplication> allInstalled() const = 0;

    /// Name or absolute path of the application's icon in the desktop's icon theme.
    [[nodiscard]] virtual std::optional<std::string> icon(std::string_view bundleID) const = 0;

    using LaunchCompletion = std::function<void(std::optional<RunningApplication>)>;

    /// Opens the application at `location` (`InstalledApplication::location`). The completion runs
    /// on the main queue, once, after this call has returned: with the application that came up, or
    /// with none when it could not be started.
    virtual void launch(const std::string& location, LaunchCompletion completion) = 0;
};

} // namespace velmora
