// SimulatedAppearance.h: a desktop that looks as a test says.
#pragma once

#include "platform/Appearance.h"

#include <utility>
#include <vector>

namespace velmora {

/// Threads: main.
class SimulatedAppearance : public Appearance {
public:
    [[nodiscard]] Look look() const override { return look_; }
    void onChange(std::function<void()> listener) override {
        listeners_.push_back(std::move(listener));
    }

    void setLook(const Look& look) {
        if (std::exchange(look_, look) == look) {
            return;
        }
        // A listener may add another, which is told from the next time on.
        const auto listeners = listeners_;
        for (const auto& listener : listeners) {
            listener();
        }
    }
    void setDark(bool dark) {
        Look look = look_;
        look.isDark = dark;
        setLook(look);
    }

private:
    Look look_;
    std::vector<std::function<void()>> listeners_;
};

} // namespace velmora
