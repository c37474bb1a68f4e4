// Hearing.h: what should be heard, and where.
#pragma once

#include "soak/World.h"

#include <optional>
#include <string>
#include <vector>

namespace velmora::soak {

/// Where somebody listens.
enum class Ear {
    microphone, ///< the virtual one
    phones,     ///< the chosen monitoring device
    outputs,    ///< whatever an application plays to by itself: the loudest of them
};

[[nodiscard]] std::string nameOf(Ear ear);

/// One tone at one place.
struct Expected {
    Ear ear{};
    double hz{};
    std::optional<double> db{}; ///< none: it must not be heard
    bool isSure = true;         ///< else anything is right
};

/// How loud everything plays by itself.
inline constexpr double playedDb = -46;
/// Below this, nobody hears it.
inline constexpr double silentDb = -90;

/// The tone of a player's stream (both from 1), and that of the guitar. No tone is where two others
/// would make a third.
[[nodiscard]] double toneOf(int player, int stream);
[[nodiscard]] double guitarTone();

/// For every tone that there could be, at each ear.
[[nodiscard]] std::vector<Expected> expectedIn(const World& world);

} // namespace velmora::soak
