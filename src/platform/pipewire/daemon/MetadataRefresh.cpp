#include "platform/pipewire/daemon/MetadataRefresh.h"

#include <utility>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

constexpr auto readAfter = 200ms;

} // namespace

MetadataRefresh::MetadataRefresh(const Loop& loop, std::function<void()> read)
    : read_(std::move(read)), timer_(loop, [this] { onTime(); }) {
}

void MetadataRefresh::clientCame() {
    // Whoever comes last must be waited for as long as the first; and a steady coming and going
    // must not put it off for ever.
    if (!std::exchange(isDue_, true)) {
        timer_.start(readAfter);
    } else {
        isAnotherDue_ = true;
    }
}

void MetadataRefresh::onTime() {
    isDue_ = false;
    read_();
    if (std::exchange(isAnotherDue_, false)) {
        clientCame();
    }
}

} // namespace velmora::pipewire
