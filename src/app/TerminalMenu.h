// TerminalMenu.h: a list of choices over the mixer screen.
#pragma once

#include "app/MixerScreen.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace velmora {

struct MenuItem {
    std::string text;
    std::function<void()> choose;              ///< enter; closes the menu
    std::function<void(int direction)> adjust; ///< right +1, left −1; keeps the menu open
    std::function<void()> remove;              ///< the delete key; keeps the menu open
};

/// A menu builds its items anew for each drawing, so that it always shows the present state.
/// Threads: main.
class TerminalMenu {
public:
    using Items = std::function<std::vector<MenuItem>()>;

    TerminalMenu(std::string title, Items items);

    void move(int direction);
    void adjust(int direction);
    void remove();
    /// The action of the selected item; empty when it has none.
    [[nodiscard]] std::function<void()> choice() const;

    [[nodiscard]] std::vector<std::string> lines() const;

private:
    [[nodiscard]] std::vector<MenuItem> itemsNow() const;

    std::string title_;
    Items items_;
    mutable std::size_t selected_ = 0;
};

} // namespace velmora
