// SessionDevices.h: the devices that private sessions usually have.
#pragma once

#include "support/PrivateSession.h"

namespace velmora::support {

/// The default output. It also is the clock, as a sound card would be.
inline const SessionDevice speakers{.name = "demo.speakers",
                                    .description = "Speakers",
                                    .mediaClass = "Audio/Sink",
                                    .priority = 2000};

/// Four channels in both directions; what is played into a channel is what it captures.
inline const SessionDevice interface4{.name = "demo.interface",
                                      .description = "Studio Interface 4",
                                      .mediaClass = "Audio/Duplex",
                                      .positions = {"AUX0", "AUX1", "AUX2", "AUX3"},
                                      .priority = 1000};

/// node.name of a patient clock. One that is a device's own has the device's name for its group.
inline std::string clockOf(const std::string& group) {
    return "clock-of-" + group;
}

inline const std::string microphone = "velmora.mic"; ///< node.name of the virtual microphone

} // namespace velmora::support
