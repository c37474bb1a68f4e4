// PublicSinks.h: a device for everybody that plays into two others at once.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/Status.h"

#include <string>
#include <string_view>

namespace velmora {

/// UID of the one sink that DAW mode makes: fixed, so that a later run finds it. Its name holds the
/// virtual microphone's word, and that one is looked up by name; so a platform lists it last.
inline constexpr std::string_view dawSinkUID = "app.velmora.daw.aggregate";

struct PublicSink {
    std::string name;
    std::string uid;         ///< fixed, so that a later run finds it
    std::string masterUID;   ///< member whose clock counts
    std::string followerUID; ///< member that is resampled to it

    bool operator==(const PublicSink&) const = default;
};

/// Threads: main. Errors: the status of the refusal.
class PublicSinks {
public:
    virtual ~PublicSinks() = default;

    /// The sink is a device that outlives this program.
    [[nodiscard]] virtual StatusOr<AudioObjectID> create(const PublicSink& sink) = 0;
    /// Also removes one that an earlier run left.
    virtual Status remove(AudioObjectID sink) = 0;
};

} // namespace velmora
