// News.h: decides what is told of the service and of what a mix depends on.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/AudioDevices.h"
#include "platform/pipewire/view/Devices.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// All that a mix depends on. While the service does not answer, only the deaths say anything.
struct Surroundings {
    bool isAvailable{};
    std::vector<Device> devices{};
    std::map<AudioObjectID, ApplicationSound> processes{};
    std::map<Serial, Recorders> recorded{};
    double rateHz{};
    std::optional<std::string> defaultOutput{}; ///< UID; none while it is not (yet) there
    /// The virtual microphone is to be there and is not yet. Whoever is told of a default output
    /// starts anew, and needs it.
    bool lacksMicrophone{};
    std::uint32_t deaths{}; ///< of nodes of ours, so far

    bool operator==(const Surroundings&) const = default;
};

/// Compares what is so now with what was told last.
/// Threads: one at a time.
class News {
public:
    struct Due {
        bool isDefaultOutputNew{};
        bool isAnythingElseNew{};
    };

    /// Takes what is so now without telling it. Before that nothing is told.
    void start(Surroundings now);

    /// The service was lost, if only for a moment: that is told, and then the default output, also
    /// where it is the same device.
    void lose();

    /// What is to be told, in this order. That there is no default output just now is not: when the
    /// device comes back under its name, or another one takes its place, that is.
    [[nodiscard]] Due update(Surroundings now);

private:
    std::optional<Surroundings> told_; // without the default output
    std::optional<std::string> defaultOutput_;
    bool isLost_ = false;
};

} // namespace velmora::pipewire
