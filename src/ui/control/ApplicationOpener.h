// ApplicationOpener.h: makes a source of an installed application, opening it if need be.
#pragma once

#include "platform/Platform.h"
#include "platform/Signal.h"
#include "presets/AppLauncher.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velmora {

class AudioEngine;
class AudioSource;
class SourceManager;

/// Threads: main. Errors: what could not be opened is told by the engine's problems.
/// Destroying the object forgets the applications that are still coming up.
class ApplicationOpener {
public:
    using Found = std::function<void(const AudioSource&)>;
    using Failed = std::function<void()>;

    /// Both outlive this object.
    ApplicationOpener(const Platform& platform, AudioEngine& engine, SourceManager& sources);

    /// Gives `found` the first running instance. When there is none, opens the application, gives
    /// it as soon as it has settled, and refreshes the lists of sources, whether it came up or not.
    /// @param failed  called instead of `found` when it did not
    void open(
        const InstalledApplication& application, const Found& found, const Failed& failed = [] {});

    /// The names of the applications that are coming up.
    [[nodiscard]] const std::vector<std::string>& opening() const { return opening_; }
    /// Told after a change of them.
    [[nodiscard]] Signal& changed() { return changed_; }

private:
    void opened(const InstalledApplication& application,
                const std::optional<RunningApplication>& running,
                const Found& found,
                const Failed& failed);

    Platform platform_;
    AudioEngine& engine_;
    SourceManager& sources_;
    std::vector<std::string> opening_;
    Signal changed_;
    AppLauncher launcher_;
};

} // namespace velmora
