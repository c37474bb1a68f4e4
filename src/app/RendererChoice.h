// RendererChoice.h: who draws the windows, with a way back.
#pragma once

#include "ui/Renderer.h"

#include <functional>
#include <string>

namespace velmora {

class DefaultsStore;

/// A graphics card draws, where there is one, unless it has failed before: what is kept before its
/// driver is asked, and removed after its first picture, says at the next start that it never came
/// so far. It may have refused, hung or ended the program. One that answered and never drew is
/// tried anew when it is another one, or another version; one that never answered is not asked
/// again.
///
/// Threads: main.
class RendererChoice {
public:
    /// `settings` outlives this object.
    explicit RendererChoice(DefaultsStore& settings) : settings_(settings) {}

    /// @param ask             tells what `rendererFor` needs to know; may never return
    /// @param pixelsPerPoint  see there
    [[nodiscard]] Renderer choose(const std::function<std::string()>& ask, double pixelsPerPoint);
    /// A card was chosen that has not drawn yet. Where it fails, another start chooses otherwise.
    [[nodiscard]] bool isOnTrial() const { return isOnTrial_; }
    /// A picture was drawn.
    void succeed();

private:
    DefaultsStore& settings_;
    bool isOnTrial_ = false;
};

} // namespace velmora
