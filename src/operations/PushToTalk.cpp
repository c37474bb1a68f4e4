#include "operations/PushToTalk.h"

#include "engine/AudioEngine.h"

#include <utility>

namespace velmora {

void PushToTalk::setOn(bool on) {
    if (std::exchange(isOn_, on) != on) {
        follow();
        changed_.emit();
    }
}

void PushToTalk::hold(bool held) {
    isHeld_ = held;
    follow();
}

void PushToTalk::follow() {
    engine_.setMicrophoneClosed(isOn_ && !isHeld_);
}

} // namespace velmora
