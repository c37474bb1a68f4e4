// ApplicationOpener.h: makes a source of an installed application, opening it if need be.
#pragma once

#include "platform/Platform.h"
#include "presets/AppLauncher.h"

#include <cstdint>
#include <functional>

namespace velmora {

class AudioEngine;
class AudioSource;
class SourceManager;

/// Threads: main. Errors: what could not be opened is told by the engine's problems.
/// Destroying the object forgets the applications that are still coming up.
class ApplicationOpener {
public:
    using Found = std::function<void(const AudioSource&)>;

    /// Both outlive this object.
    ApplicationOpener(const Platform& platform, AudioEngine& engine, SourceManager& sources);

    /// Gives `found` the first running instance. When there is none, opens the application, gives
    /// it as soon as it has settled, and refreshes the lists of sources, whether it came up or not.
    void open(const InstalledApplication& application, const Found& found);

private:
    void opened(const InstalledApplication& application,
                const std::optional<RunningApplication>& running,
                const Found& found);

    Platform platform_;
    AudioEngine& engine_;
    SourceManager& sources_;
    AppLauncher launcher_;
};

} // namespace velmora
