// GlyphFollower.h: says when the picture in the menu bar changes.
#pragma once

#include "app/GlyphImages.h"
#include "platform/MainQueue.h"
#include "platform/Signal.h"

#include <functional>
#include <memory>

namespace velmora {

class AudioEngine;

/// Follows the engine's level, at most ten times a second and only when the picture changes: for
/// each one, every panel asks for the whole picture again.
///
/// Threads: main.
class GlyphFollower {
public:
    using Show = std::function<void(TrayGlyph)>;

    /// Shows the present picture at once. `engine` and `mainQueue` outlive this object.
    GlyphFollower(AudioEngine& engine, MainQueue& mainQueue, Show show);

private:
    [[nodiscard]] TrayGlyph wanted() const;
    void follow();
    void showNow();

    AudioEngine& engine_;
    MainQueue& mainQueue_;
    Show show_;
    TrayGlyph shown_;
    std::unique_ptr<MainQueue::Timer> pause_; // while it runs nothing is shown
    Signal::Connection connection_;
};

} // namespace velmora
