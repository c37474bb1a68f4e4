// RandomUuid.h: fresh identifiers for taps and their devices.
#pragma once

#include <string>

namespace velmora {

/// A random (version 4) UUID in its canonical form, upper case. Threads: main.
[[nodiscard]] std::string randomUuid();

} // namespace velmora
