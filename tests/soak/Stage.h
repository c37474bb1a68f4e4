// Stage.h: the session around the mixer, where programs and devices come and go.
#pragma once

#include "soak/Action.h"
#include "support/ClientPrograms.h"
#include "support/PrivateSession.h"

#include <map>
#include <optional>
#include <string>

namespace velmora::soak {

/// A private session with speakers, a monitoring device, a guitar, and a program with a desktop
/// entry of its own for each player. Devices have the timers of sound cards, or wait for whoever is
/// late.
///
/// Threads: main. Errors: throws std::runtime_error when the session itself fails.
class Stage {
public:
    Stage(int players, bool isPatient);

    [[nodiscard]] support::PrivateSession& session() { return session_; }

    /// Does what is to be done to the session; an opened player's process is written into the
    /// action. What the world says is so before it.
    void perform(Action& action, const World& world);

    /// Ends what was recorded so far, on the disk as well.
    void startRecorders();
    [[nodiscard]] const support::Recording& at(const std::string& device) const {
        return recorders_.at(device);
    }

private:
    void install(int player);
    [[nodiscard]] std::string programOf(int player) const;
    void open(Action& action);
    void play(int player, int stream) const;
    void move(const Action& action) const;
    void plug(const std::string& device);
    void unplug(const std::string& device);
    void restore(const World& world);

    support::PrivateSession session_;
    std::map<int, support::ToneApp> players_;
    std::optional<support::ToneApp> box_; ///< the guitar's
    std::map<std::string, support::Recorder> recorders_;
};

/// Of a player's stream.
[[nodiscard]] std::string streamName(int player, int stream);

} // namespace velmora::soak
