// velmora-give-back: waits for the mixer's end and, when that was killed, gives the applications
// that it had muted back to their speakers. Started by the mixer itself.

#include "platform/pipewire/keep/LastWill.h"

#include <iostream>

#include <pipewire/pipewire.h>

int main() {
    const auto list = velmora::pipewire::readLastWill(std::cin);
    if (list.streams.empty() && list.routes.empty()) {
        return 0;
    }
    pw_init(nullptr, nullptr);
    const bool isDone = velmora::pipewire::executeLastWill(list);
    pw_deinit();
    return isDone ? 0 : 1;
}
