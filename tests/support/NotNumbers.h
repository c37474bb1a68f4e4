// NotNumbers.h: samples and levels that are none.
#pragma once

#include <limits>

namespace velmora {

inline constexpr float infinity = std::numeric_limits<float>::infinity();
inline constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

} // namespace velmora
