// World.h: what should be so: of a mixer that is worked at random, and of the session around it.
#pragma once

#include "effects/FXParams.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace velmora::soak {

/// One fader with its mute, which brings back the level from before.
struct Level {
    double db = 0;
    bool isMuted = false;
    double dbBeforeMute = 0;

    void set(double to) {
        db = to;
        isMuted = false;
    }
    void mute(bool on);
    /// As a preset keeps and gives it back: a muted one forgets what it was.
    void take(const Level& kept);
};

/// What is kept of one source, whether it is in the mix or not.
struct Strip {
    Level level;
    FXParams fx;
    bool isSilenced = false; ///< on its own output, while it is in the running mix
};

inline constexpr int streamsEach = 2; ///< of a player, at most

/// An application of the session: one program, at times running.
struct Player {
    int number = 0; ///< from 1
    pid_t pid = 0;  ///< 0 = it does not run
    std::set<int> streams;
    bool isBystander = false; ///< it is never added

    [[nodiscard]] bool isPlaying() const { return pid != 0 && !streams.empty(); }
    /// The desktop entry that it belongs to.
    [[nodiscard]] std::string application() const;
    /// The word for this run of it, in commands.
    [[nodiscard]] std::string word() const;
    /// The other way round.
    [[nodiscard]] static std::string applicationOf(std::string_view word);
};

/// A saved setup.
struct Setup {
    struct Entry {
        std::string key; ///< an application, or the device; empty = it will never be found
        Level level;
        FXParams fx;
    };
    std::string name;
    std::vector<Entry> entries;
    Level microphone;
    Level headphones;
};

/// An input device that plays by itself, and its name in commands.
inline const std::string guitar = "soak.guitar";

/// Everything that is expected; plain values.
struct World {
    explicit World(int players);

    // -- the session --
    std::vector<Player> players;
    bool hasGuitar = true;
    bool hasInterface = true; ///< the monitoring device
    bool hasHeadset = false;  ///< the default output while it is there
    bool hasDaemon = true;
    bool hasManager = true;

    // -- the mixer --
    std::optional<bool> isRunning = false; ///< none: either would be right, it is to be asked
    bool isBypassed = false;
    Level microphone;
    Level headphones;
    std::vector<std::string> sources; ///< words, in their order
    std::map<std::string, Strip, std::less<>> strips;
    std::vector<Setup> presets;
    std::string activePreset; ///< empty = none
    std::string language = "en";
    bool hasDawDevice = false;
    /// The second copy plays on the chosen device and nowhere else. After an edit without that
    /// device it may play on the default output as well.
    bool isMonitorSure = true;

    [[nodiscard]] bool isUp() const { return hasDaemon && hasManager; }
    [[nodiscard]] bool isInMix(std::string_view word) const;
    /// Whether the source can sound now.
    [[nodiscard]] bool works(std::string_view word) const;
    [[nodiscard]] bool hasWorkingSource() const;
    [[nodiscard]] const Player* playerOf(std::string_view word) const; ///< while it runs
    [[nodiscard]] Strip strip(std::string_view word) const;
    [[nodiscard]] const Setup* preset(std::string_view name) const;
};

} // namespace velmora::soak
