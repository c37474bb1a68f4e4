// Appearance.h: how the desktop wants programs to look.
#pragma once

#include <functional>

namespace velmora {

/// Threads: main.
class Appearance {
public:
    /// What the desktop asks for; these values where it does not say.
    struct Look {
        bool isDark = false;
        bool isHighContrast = false;
        bool isStill = false;   ///< nothing moves for the sake of moving
        double textScale = 1.0; ///< texts are this many times as large; above 0

        bool operator==(const Look&) const = default;
    };

    virtual ~Appearance() = default;

    /// At this moment.
    [[nodiscard]] virtual Look look() const = 0;
    /// Called on the main thread after each change. Lives as long as this object.
    virtual void onChange(std::function<void()> listener) = 0;

    [[nodiscard]] bool isDark() const { return look().isDark; }
};

} // namespace velmora
