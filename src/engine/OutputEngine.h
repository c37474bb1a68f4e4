// OutputEngine.h: opens one output on a device.
#pragma once

#include "engine/MixOutput.h"
#include "platform/AudioDevices.h"
#include "platform/AudioUnits.h"

#include <memory>

namespace velmora {

/// Builds and starts an output that plays the mix of `rings` on two neighbouring channels of the
/// device; the limiter's release is made for the device's rate. Destroying the unit stops it.
///
/// Threads: main; no render thread may be using `limiter`.
/// Errors: throws VelmoraError; nothing is left running.
[[nodiscard]] std::unique_ptr<OutputUnit> makeOutputEngine(AudioDevices& devices,
                                                           AudioUnits& units,
                                                           const OutputTarget& target,
                                                           std::shared_ptr<RingSetBox> rings,
                                                           std::shared_ptr<Limiter> limiter,
                                                           std::shared_ptr<ParamBox> volume);

} // namespace velmora
