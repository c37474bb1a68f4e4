// SessionState.h: what the control side knows, and what the mixer wants of it.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/pipewire/view/CardNames.h"
#include "platform/pipewire/view/Devices.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/GraphRate.h"
#include "platform/pipewire/view/ObjectIds.h"
#include "platform/pipewire/view/ProcessDirectory.h"
#include "platform/pipewire/view/Routes.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace velmora::pipewire {

/// Frames per cycle that our node asks for when nobody asked for others.
inline constexpr std::uint32_t usualBlockFrames = 128;

/// Threads: any, with the control loop's lock.
struct SessionState {
    Graph graph;
    GraphRate rate;
    ObjectIds ids;
    CardNames cards;
    ProcessDirectory processes;
    Routes routes;                                      ///< links that the mix's parts want
    std::map<AudioObjectID, AudioObjectID> mutes;       ///< tap to the process that it silences
    std::map<AudioObjectID, AudioObjectID> endingMutes; ///< the same; see `Session::endMuteSoon`
    std::set<AudioObjectID> unsilenced; ///< processes that are heard although they are to be silent
    std::map<AudioObjectID, std::uint32_t> blockFrames; ///< asked for, per device

    SessionState(std::int32_t ownPid, std::string_view knownCards)
        : cards(knownCards), processes(ids, ownPid) {}

    /// One device by number. Numbers are given as devices are seen, hence not const.
    [[nodiscard]] std::optional<Device> device(AudioObjectID id);
    /// UID of the default output; none while there is none.
    [[nodiscard]] std::optional<std::string> defaultOutputUID() const;
    [[nodiscard]] ApplicationSound sound(AudioObjectID process) const;
    /// A `node.name` that was never used before, in any run.
    std::string newNodeName(std::string_view kind);

private:
    std::uint32_t namesGiven_{};
};

} // namespace velmora::pipewire
