// AppSettings.h: the interface's two preferences, and the lookup of its texts.
#pragma once

#include "platform/Appearance.h"
#include "platform/Platform.h"
#include "platform/Signal.h"
#include "settings/Color.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// One entry of a chooser: what is stored, and what is shown.
struct Choice {
    std::string value;
    std::string label;

    bool operator==(const Choice&) const = default;
};

/// Appearance and language of the interface, kept under "appearance" and "language".
///
/// Threads: main, `t` included.
class AppSettings {
public:
    /// Reads both keys and applies the appearance as soon as the main queue runs.
    explicit AppSettings(const Platform& platform);
    AppSettings(const AppSettings&) = delete;
    AppSettings& operator=(const AppSettings&) = delete;

    /// "auto", "light" or "dark"; anything else that was stored is kept and acts as "auto".
    [[nodiscard]] const std::string& appearance() const { return appearance_; }
    void setAppearance(std::string value);

    /// "fr" or "en"; anything else that was stored is kept and acts as French.
    [[nodiscard]] const std::string& language() const { return language_; }
    void setLanguage(std::string value);

    /// What the application shows: forced by `appearance`, or the desktop's at this moment.
    [[nodiscard]] ColorScheme colorScheme() const;
    void applyAppearance();
    /// What the desktop asks of every program's looks, whatever is preferred here.
    [[nodiscard]] Appearance::Look desktopLook() const;

    /// `french` in the user's language; a text without a translation comes back unchanged.
    [[nodiscard]] std::string t(std::string_view french) const;

    [[nodiscard]] std::array<Choice, 3> appearanceChoices() const;
    [[nodiscard]] static std::array<Choice, 2> languageChoices();

    /// A preference, the scheme that is shown, or what the desktop asks for may have changed.
    [[nodiscard]] Signal& changed() { return changed_; }

private:
    Platform platform_;
    std::string appearance_;
    std::string language_;
    std::optional<ColorScheme> forcedScheme_; ///< as last applied; none = the desktop's
    Signal changed_;
    /// Held weakly by what outlives this object: queued work and the desktop's listener.
    std::shared_ptr<AppSettings*> self_ = std::make_shared<AppSettings*>(this);
};

} // namespace velmora
