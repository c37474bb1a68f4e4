#include "app/RendererChoice.h"

#include "platform/DefaultsStore.h"

#include <string>
#include <string_view>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view triedKey = "rendererOnTrial";
constexpr std::string_view noAnswer = "?"; // no card is called so

} // namespace

Renderer RendererChoice::choose(const std::function<std::string()>& ask, double pixelsPerPoint) {
    const auto failed = settings_.read<std::string>(triedKey);
    if (failed == std::string(noAnswer)) {
        return Renderer::processor;
    }
    settings_.set(triedKey, std::string(noAnswer));
    const std::string name = ask();
    if (rendererFor(name, pixelsPerPoint) == Renderer::processor || failed == name) {
        failed ? settings_.set(triedKey, *failed) : settings_.remove(triedKey);
        return Renderer::processor;
    }
    settings_.set(triedKey, name);
    isOnTrial_ = true;
    return Renderer::graphicsCard;
}

void RendererChoice::succeed() {
    if (std::exchange(isOnTrial_, false)) {
        settings_.remove(triedKey);
    }
}

} // namespace velmora
