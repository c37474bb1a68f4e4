// ThreadRights.h: which threads go before those of other programs.
#pragma once

#include <cstdint>
#include <optional>

namespace velmora::pipewire {

using ThreadId = std::int32_t; ///< the kernel's; 0 = none

/// What the session manager has; the lower, the sooner.
inline constexpr int firstNiceLevel = -11;

[[nodiscard]] ThreadId currentThread();

/// Sends it before the threads of ordinary programs; what it starts goes like any other. It gets
/// the lowest real-time priority where this process may have one, otherwise the nice level above,
/// which counts among the programs that the scheduler has put into one group.
/// Returns false where the kernel allows neither. Threads: any. Real-time: no.
bool goFirst(ThreadId thread);

/// Whether it has a real-time priority; none when there is no such thread. Threads: any.
[[nodiscard]] std::optional<bool> isRealTime(ThreadId thread);

} // namespace velmora::pipewire
