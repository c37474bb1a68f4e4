// GumMenuItem.h: one entry of a menu.
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

namespace velmora {

/// Which item it is, for as long as the program runs: every item is made with a fresh one, and a
/// copy of an item keeps it.
///
/// Threads: main.
using GumMenuItemId = std::uint64_t;
[[nodiscard]] inline GumMenuItemId freshGumMenuItemId() {
    static GumMenuItemId last = 0;
    return ++last;
}

/// What a menu shows and does; plain data, made by whoever opens the menu:
/// `GumMenuItem{.title = name, .checked = true, .action = [this] { choose(); }}`.
struct GumMenuItem {
    enum class Kind {
        action,
        header,    ///< a caption, not to be chosen
        separator, ///< a thin rule
    };

    Kind kind{Kind::action};
    QString title{};  ///< already in the user's language
    QString icon{};   ///< URL of a picture before the title; empty = none
    QString symbol{}; ///< name of the symbol that stands there when there is no picture
    bool checked{};   ///< the current choice
    bool playing{};   ///< makes sound now
    bool enabled{true};
    std::vector<GumMenuItem> children{}; ///< given, the entry unfolds instead of acting
    bool actsWithChildren{};             ///< it acts all the same, and unfolds by its chevron
    std::function<void()> onDelete{};    ///< given, the row has a delete button
    std::function<void()> action{};
    GumMenuItemId id{freshGumMenuItemId()};
};

} // namespace velmora
