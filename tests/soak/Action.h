// Action.h: one thing that is done to the mixer or to the session around it.
#pragma once

#include "soak/World.h"

#include <string>
#include <sys/types.h>

namespace velmora::soak {

struct Action {
    enum class Kind {
        // -- to the mixer --
        start,
        stop,
        bypass,     ///< `on`
        volume,     ///< `word` "microphone" or "headphones", `db`
        muteVolume, ///< the same, `on`
        add,        ///< `word`
        remove,
        gain, ///< `word`, `db`
        mute,
        silence,
        effects, ///< `word`, `fx`
        savePreset,
        applyPreset,
        removePreset,
        ask,      ///< `word`: a command that only shows
        language, ///< `word`
        daw,      ///< `on`
        // -- to the session --
        open,  ///< player `number`, as process `pid`
        close, ///< the same, killed
        play,  ///< player `number`, its `stream`
        hush,
        reconnect,
        move,         ///< player `number`, to the device `word`
        blocks,       ///< `number` frames for everybody; 0 = what is asked for
        plug,         ///< device `word`
        unplug,       ///<
        killDaemon,   ///< until `restore`
        killManager,  ///< the same
        restartPulse, ///<
        restore,      ///< everything that was killed runs again, and the players play again
    };

    Kind kind{};
    std::string word{};
    int number = 0;
    int stream = 0;
    pid_t pid = 0;
    double db = 0;
    bool on = false;
    FXParams fx{};
};

/// What became so by it. Plain values: nothing is done.
void follow(World& world, const Action& action);

[[nodiscard]] std::string nameOf(Action::Kind kind);
/// One line for a log.
[[nodiscard]] std::string describe(const Action& action);

} // namespace velmora::soak
