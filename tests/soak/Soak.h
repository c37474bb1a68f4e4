// Soak.h: works the program at random and judges it, round after round.
#pragma once

#include "soak/Dice.h"
#include "soak/Figures.h"
#include "soak/Judge.h"
#include "soak/MixerClient.h"
#include "soak/Program.h"
#include "soak/Stage.h"
#include "soak/WindowHand.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <optional>
#include <string>

namespace velmora::soak {

struct SoakOptions {
    std::uint64_t seed = 1;
    double minutes = 1;
    Faults faults = Faults::all();
    bool isPatient = true; ///< devices wait for the late; otherwise they have timers
    bool hasWindow = true; ///< worked through its windows as well
    bool isTold = false;   ///< every action, as it is done
};

/// A round is a burst of actions, some of them faults, and a calm in which everything becomes as it
/// should be. Now and then the program comes to rest, and is weighed.
///
/// Threads: main. Errors: throws std::runtime_error when the session itself fails.
class Soak {
public:
    Soak(const SoakOptions& options, std::ostream& log);

    /// True when nothing was found.
    bool run();

private:
    using Clock = std::chrono::steady_clock;

    void note(const std::string& line);
    void listen();
    void round();
    void burst();
    void act(Action action);
    void actOnMixer(const Action& action);
    [[nodiscard]] bool workWindow(const Action& action);
    void waitUntilOffered(const std::string& word, bool isOffered = true);
    void adopt();
    [[nodiscard]] Findings settle();
    void calm();
    void rest();
    void end();
    void pause(std::chrono::milliseconds time);
    void find(const Findings& findings, const std::string& when);
    [[nodiscard]] bool hasFailed() const { return isFailed_; }

    SoakOptions options_;
    std::ostream& log_;
    Dice dice_;
    World world_;
    Stage stage_;
    Program program_;
    std::optional<WindowHand> window_;
    MixerClient mixer_;
    Allowed allowed_;
    Figures figures_;
    std::deque<std::string> latest_; ///< what was done
    Clock::time_point listenedFrom_;
    bool isFailed_ = false;
};

} // namespace velmora::soak
