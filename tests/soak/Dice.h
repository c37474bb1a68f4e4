// Dice.h: draws what is done next.
#pragma once

#include "soak/Action.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string_view>
#include <vector>

namespace velmora::soak {

/// What may happen to the session.
struct Faults {
    bool applications = false; ///< start, end, stop, play again, connect anew and move
    bool devices = false;      ///< vanish and return; another default output
    bool blocks = false;       ///< other lengths of them, for everybody
    bool daemon = false;       ///< is killed and started again
    bool manager = false;      ///< the same of the session manager
    bool pulse = false;        ///< the same of the server of the Pulse protocol

    static Faults all();
    /// "all", "none", or some of the names above with commas between; none = another word.
    static std::optional<Faults> named(std::string_view words);
};

/// The same seed draws the same from the same worlds.
class Dice {
public:
    /// @param hasWindow  what only a window does is drawn as well
    Dice(std::uint64_t seed, Faults faults, bool hasWindow)
        : random_(seed), faults_(faults), hasWindow_(hasWindow) {}

    /// Something that can be done in this world and will not be refused, unless the world does not
    /// know whether the mix is on.
    Action next(const World& world);
    /// A whole number from `first` to `last`.
    int between(int first, int last);

private:
    struct Offer {
        int weight{};
        Action action;
    };
    void offer(int weight, Action action);
    void offerEdits(const World& world);
    void offerStrip(const World& world, const std::string& word);
    void offerPresets(const World& world);
    void offerPlayers(const World& world);
    void offerPlayer(const World& world, const Player& player);
    void offerFaults(const World& world);
    FXParams effects();

    std::mt19937_64 random_;
    Faults faults_;
    bool hasWindow_;
    std::vector<Offer> offers_;
};

} // namespace velmora::soak
