// SourceMenu.h: everything that can become a source, as a menu.
#pragma once

#include "ui/kit/menu/GumMenuItem.h"

#include <functional>
#include <vector>

namespace velmora {

class AppSettings;
class AudioSource;
class SourceManager;
struct Platform;

struct SourceMenuActions {
    std::function<void()> browse; ///< look for an application that does not run
    std::function<void(const AudioSource&)> choose;
    std::function<bool(const AudioSource&)> isChosen; ///< marked; never asked later
};

/// From what `sources` found at its last refresh. A device with several channels unfolds: the
/// whole device, its pairs, its single channels. A stereo device can be chosen as it is, too; its
/// pair is left out, because it is the whole device. What holds the chosen one is marked as well,
/// because it may be folded.
///
/// Threads: main.
[[nodiscard]] std::vector<GumMenuItem> sourceMenuItems(const SourceManager& sources,
                                                       const Platform& platform,
                                                       const AppSettings& settings,
                                                       const SourceMenuActions& actions);

} // namespace velmora
