#include "app/TerminalMenu.h"

#include <algorithm>

namespace velmora {

TerminalMenu::TerminalMenu(std::string title, Items items)
    : title_(std::move(title)), items_(std::move(items)) {
}

std::vector<MenuItem> TerminalMenu::itemsNow() const {
    auto items = items_();
    selected_ = items.empty() ? 0 : std::min(selected_, items.size() - 1);
    return items;
}

void TerminalMenu::move(int direction) {
    const std::size_t count = itemsNow().size();
    if (count > 0) {
        selected_ = (selected_ + count + static_cast<std::size_t>(direction)) % count;
    }
}

void TerminalMenu::adjust(int direction) {
    const auto items = itemsNow();
    if (selected_ < items.size() && items[selected_].adjust) {
        items[selected_].adjust(direction);
    }
}

void TerminalMenu::remove() {
    const auto items = itemsNow();
    if (selected_ < items.size() && items[selected_].remove) {
        items[selected_].remove();
    }
}

std::function<void()> TerminalMenu::choice() const {
    const auto items = itemsNow();
    return selected_ < items.size() ? items[selected_].choose : nullptr;
}

std::vector<std::string> TerminalMenu::lines() const {
    std::vector<std::string> result{title_};
    const auto items = itemsNow();
    for (std::size_t index = 0; index < items.size(); ++index) {
        result.push_back((index == selected_ ? "▸ " : "  ") + items[index].text);
    }
    return result;
}

} // namespace velmora
