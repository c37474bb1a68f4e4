// Devices.h: the devices of a soak that come and go.
#pragma once

#include "support/SessionDevices.h"

namespace velmora::soak {

/// The default output while it is there.
inline const support::SessionDevice headset{
    .name = "soak.headset", .description = "Headset", .mediaClass = "Audio/Sink", .priority = 3000};

} // namespace velmora::soak
