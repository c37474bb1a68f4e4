// GlobalShortcuts.h: keys that the desktop tells the program, whichever window has the keyboard.
#pragma once

#include "platform/Signal.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace velmora {

/// What the desktop is to offer a key for. Which one it is, the user says to the desktop.
struct GlobalShortcut {
    std::string id;
    std::string description; ///< in the user's language
    std::string trigger;     ///< a suggestion as the portals write it: "CTRL+LOGO+m"

    bool operator==(const GlobalShortcut&) const = default;
};

/// Threads: main.
class GlobalShortcuts {
public:
    enum class State {
        unavailable, ///< this desktop has none, or is away; they are bound when it comes
        unused,      ///< there are some, and nobody wants any
        asked,       ///< the desktop, perhaps its user, has yet to answer
        bound,       ///< keys are told
        refused,     ///< the user said no; nothing is asked any more
        failed,      ///< the desktop could not, or has put an end to it
    };
    /// Every press is followed by one release before the state leaves `bound`.
    using Listener = std::function<void(const std::string& id, bool isPressed)>;

    virtual ~GlobalShortcuts() = default;

    [[nodiscard]] virtual State state() const = 0;
    /// How the user calls the key of each, by id; empty = none yet. None at all unless bound.
    [[nodiscard]] virtual const std::map<std::string, std::string>& triggers() const = 0;
    /// Told after a change of either, later, from the event loop, or during `bind` and `unbind`.
    [[nodiscard]] virtual Signal& changed() = 0;

    /// Asks for them, in the place of those before, and again by itself whenever a desktop comes,
    /// until they are refused or unbound. The listener is called from the event loop.
    virtual void bind(std::vector<GlobalShortcut> shortcuts, Listener listener) = 0;
    virtual void unbind() = 0;
};

} // namespace velmora
