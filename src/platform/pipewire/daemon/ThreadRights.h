// ThreadRights.h: whether a thread goes before those of other programs.
#pragma once

#include <cstdint>
#include <optional>

namespace velmora::pipewire {

using ThreadId = std::int32_t; ///< the kernel's; 0 = none

[[nodiscard]] ThreadId currentThread();

/// Whether it has a real-time priority; none when there is no such thread. Threads: any.
[[nodiscard]] std::optional<bool> isRealTime(ThreadId thread);

} // namespace velmora::pipewire
