// SourceStatistics.h: how the rings of one running source fare, for diagnosis.
#pragma once

#include "engine/AudioSource.h"
#include "engine/realtime/RingBuffer.h"

namespace velmora {

struct SourceStatistics {
    AudioSource source;
    RingStatistics stream;  ///< towards the virtual microphone
    RingStatistics monitor; ///< towards the monitoring output
};

} // namespace velmora
