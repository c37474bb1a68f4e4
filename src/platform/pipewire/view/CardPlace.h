// CardPlace.h: where on a sound card a device's sound goes out or comes in.
#pragma once

#include "platform/pipewire/view/Properties.h"

#include <string>

namespace velmora::pipewire {

/// A card offers the same sockets under each of its profiles, by nodes with other names. This tells
/// them again.
struct CardPlace {
    std::string card;      ///< its own name, whatever its profile; empty = not a card's
    std::string direction; ///< the node's media class
    std::string kind; ///< of socket, as "analog" or "hdmi extra1"; empty = the profile is silent
    std::string pcm;  ///< number of the card's PCM device; empty = unknown

    bool operator==(const CardPlace&) const = default;
};

[[nodiscard]] CardPlace cardPlace(const Properties& node, const std::string& card);

/// Enough is known of it to tell it from others.
[[nodiscard]] bool isTellable(const CardPlace& place);

/// The same card, direction and kind of socket. A profile that does not say what its sockets are
/// ("Pro Audio") is compared by the PCM device.
[[nodiscard]] bool isSamePlace(const CardPlace& one, const CardPlace& other);

} // namespace velmora::pipewire
