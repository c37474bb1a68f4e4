// CountedAllocations.h: how often the heap was used, for code that must not use it.
#pragma once

#include <cstddef>

namespace velmora {

/// Calls of operator new and delete by the calling thread, in a program that has
/// CountedAllocations.cpp among its sources.
[[nodiscard]] std::size_t heapCallsOfThisThread() noexcept;

} // namespace velmora
