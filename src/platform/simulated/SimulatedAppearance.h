// SimulatedAppearance.h: a desktop that turns dark when a test says so.
#pragma once

#include "platform/Appearance.h"

#include <utility>
#include <vector>

namespace velmora {

/// Threads: main.
class SimulatedAppearance : public Appearance {
public:
    [[nodiscard]] bool isDark() const override { return dark_; }
    void onChange(std::function<void()> listener) override {
        listeners_.push_back(std::move(listener));
    }

    void setDark(bool dark) {
        if (dark_ == dark) {
            return;
        }
        dark_ = dark;
        // A listener may add another, which is told from the next time on.
        const auto listeners = listeners_;
        for (const auto& listener : listeners) {
            listener();
        }
    }

private:
    bool dark_ = false;
    std::vector<std::function<void()>> listeners_;
};

} // namespace velmora
