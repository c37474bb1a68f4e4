#include "platform/pipewire/Units.h"

#include "platform/pipewire/PlaybackUnit.h"
#include "platform/pipewire/RecordingUnit.h"

namespace velmora::pipewire {

std::unique_ptr<OutputUnit> Units::makeOutput() {
    return std::make_unique<PlaybackUnit>(session_);
}

std::unique_ptr<InputUnit> Units::makeInput() {
    return std::make_unique<RecordingUnit>(session_);
}

} // namespace velmora::pipewire
