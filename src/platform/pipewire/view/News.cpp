#include "platform/pipewire/view/News.h"

#include <utility>

namespace velmora::pipewire {

void News::start(Surroundings now) {
    defaultOutput_ = std::exchange(now.defaultOutput, std::nullopt);
    told_ = std::move(now);
    isLost_ = false;
}

void News::lose() {
    defaultOutput_.reset();
    isLost_ = true;
}

News::Due News::update(Surroundings now) {
    auto output = std::exchange(now.defaultOutput, std::nullopt);
    const bool wasLost = std::exchange(isLost_, false);
    Due due;
    if (now.isAvailable && !now.lacksMicrophone) {
        due.isDefaultOutputNew = told_ && output && output != defaultOutput_;
        defaultOutput_ = std::move(output);
    }
    if (told_ && (wasLost || now != *told_)) {
        due.isAnythingElseNew = true;
        told_ = std::move(now);
    }
    return due;
}

} // namespace velmora::pipewire
