// WindowHand.h: works the program's real windows, as a screen reader's user does.
#pragma once

#include "app/ScreenReader.h"
#include "soak/Action.h"

#include <QString>

namespace velmora::soak {

/// Presses what is called so in the window's language. Make it before the program starts, which
/// shows itself to whoever listened before.
///
/// Threads: main.
class WindowHand {
public:
    explicit WindowHand(const support::Environment& environment) : reader_(environment) {}

    /// Whether the windows have something to press for it.
    [[nodiscard]] static bool knows(const Action& action, const World& world);
    /// Whether it is done nowhere else.
    [[nodiscard]] static bool isAlone(Action::Kind kind) {
        return kind == Action::Kind::language || kind == Action::Kind::daw;
    }

    /// Does it, from what the world says is so before; false when it could not be found or pressed.
    [[nodiscard]] bool perform(const Action& action, const World& world);

private:
    [[nodiscard]] bool press(const QString& window, const QString& name);
    [[nodiscard]] bool openSettings(const World& world, const QString& tab);
    [[nodiscard]] bool chooseLanguage(const Action& action, const World& world);

    ScreenReader reader_;
};

} // namespace velmora::soak
