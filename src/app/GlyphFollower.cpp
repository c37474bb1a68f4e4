#include "app/GlyphFollower.h"

#include "app/MeterGlyph.h"
#include "engine/AudioEngine.h"

#include <chrono>
#include <utility>

namespace velmora {
namespace {

constexpr std::chrono::milliseconds shortestInterval{100};

} // namespace

GlyphFollower::GlyphFollower(AudioEngine& engine, MainQueue& mainQueue, Show show)
    : engine_(engine), mainQueue_(mainQueue), show_(std::move(show)),
      connection_(engine.changed().connect([this] { follow(); })) {
    showNow();
}

TrayGlyph GlyphFollower::wanted() const {
    return engine_.isRunning() ? TrayGlyph(meterStep(engine_.level())) : std::nullopt;
}

void GlyphFollower::follow() {
    if (!pause_ && wanted() != shown_) {
        showNow();
    }
}

void GlyphFollower::showNow() {
    shown_ = wanted();
    pause_ = mainQueue_.after(shortestInterval, [this] {
        pause_.reset();
        follow();
    });
    show_(shown_);
}

} // namespace velmora
