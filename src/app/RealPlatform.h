// RealPlatform.h: this machine behind the mixer's interfaces.
#pragma once

#include "platform/Platform.h"
#include "platform/desktop/AutostartEntry.h"
#include "platform/desktop/DesktopAppearance.h"
#include "platform/desktop/DesktopApplications.h"
#include "platform/desktop/DesktopNotices.h"
#include "platform/desktop/DesktopShortcuts.h"
#include "platform/desktop/ThreadRaiser.h"
#include "platform/pipewire/PipeWireAudio.h"
#include "platform/qt/QtMainQueue.h"
#include "platform/sqlite/SqliteDefaultsStore.h"

#include <filesystem>

namespace velmora {

/// Owns one real implementation of each interface: PipeWire, SQLite, the desktop and Qt's event
/// loop. Threads: main; needs a QCoreApplication.
class RealPlatform {
public:
    /// The settings are where the user's data is, in a folder that nobody else reads.
    RealPlatform();
    /// @param settingsFile  where the settings are kept
    explicit RealPlatform(const std::filesystem::path& settingsFile);

    [[nodiscard]] Platform platform();
    [[nodiscard]] PipeWireAudio& audio() { return audio_; }

private:
    QtMainQueue mainQueue_;
    SqliteDefaultsStore defaults_;
    DesktopApplications applications_;
    DesktopAppearance appearance_;
    AutostartEntry loginItem_;
    DesktopShortcuts shortcuts_;
    DesktopNotices notices_;
    ThreadRaiser threads_;
    PipeWireAudio audio_;
};

} // namespace velmora
