// Appearance.h: whether the desktop is light or dark.
#pragma once

#include <functional>

namespace velmora {

/// Threads: main.
class Appearance {
public:
    virtual ~Appearance() = default;

    /// What the desktop asks for now; light when it does not say.
    [[nodiscard]] virtual bool isDark() const = 0;
    /// Called on the main thread after each change. Lives as long as this object.
    virtual void onChange(std::function<void()> listener) = 0;
};

} // namespace velmora
