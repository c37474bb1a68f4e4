// RingSetBox.h: the rings that one output reads.
#pragma once

#include "engine/realtime/PriorityMutex.h"
#include "engine/realtime/RingBuffer.h"

#include <memory>
#include <vector>

namespace velmora {

/// A list of rings that the control side replaces as a whole while an output reads it.
///
/// A list never changes once it is set. The audio thread only ever holds a second reference to it:
/// replaced lists, and rings that only they still hold, are freed by the control side.
class RingSetBox {
public:
    using Rings = std::vector<std::shared_ptr<RingBuffer>>;

    /// Also frees lists replaced earlier that no audio thread uses any more.
    /// Threads: control, one only. Real-time: no.
    void set(std::vector<std::shared_ptr<RingBuffer>> rings);

    /// The list in force; never null. To be let go before the box goes.
    /// Threads: any. Real-time: yes (lock held for one pointer copy).
    [[nodiscard]] std::shared_ptr<const Rings> get() const noexcept;

private:
    mutable PriorityMutex mutex_;
    std::shared_ptr<const Rings> rings_{std::make_shared<const Rings>()}; // guarded by mutex_
    std::vector<std::shared_ptr<const Rings>> retired_;                   // control
};

} // namespace velmora
