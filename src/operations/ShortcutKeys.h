// ShortcutKeys.h: the mixer's keys on the whole desktop, and what they do.
#pragma once

#include "operations/MixerControl.h"
#include "operations/MixerParts.h"
#include "platform/GlobalShortcuts.h"
#include "platform/Signal.h"

#include <string>
#include <vector>

namespace velmora {

/// Binds them while the user wants them, which is kept under "globalShortcuts"; each key does what
/// a command would, and a notice of the desktop says what is so then.
///
/// Threads: main.
class ShortcutKeys {
public:
    /// Binds at once what was wanted in an earlier run.
    explicit ShortcutKeys(const MixerParts& parts);
    ~ShortcutKeys();
    ShortcutKeys(const ShortcutKeys&) = delete;
    ShortcutKeys& operator=(const ShortcutKeys&) = delete;

    /// What the desktop has to do with them now.
    [[nodiscard]] GlobalShortcuts::State state() const { return parts_.platform.shortcuts.state(); }
    /// Whether they are bound, or will be when the desktop answers.
    [[nodiscard]] bool areUsed() const;
    /// Given up, push to talk is off too.
    void use(bool wanted);

    [[nodiscard]] PushToTalk& pushToTalk() { return parts_.talk; }

    struct Key {
        std::string does;    ///< in the user's language
        std::string trigger; ///< as the desktop calls it; empty = none yet
    };
    [[nodiscard]] std::vector<Key> keys() const;

    /// Told after a change of any of these; the language is not watched.
    [[nodiscard]] Signal& changed() { return changed_; }

private:
    void bind();
    void followDesktop();
    void press(const std::string& id, bool isPressed);
    void perform(const std::string& id);
    void talk(bool isPressed);
    void say(const char* french);
    [[nodiscard]] const char* microphoneText() const;

    MixerParts parts_;
    MixerControl control_;
    Signal changed_;
    Signal::Connection desktopConnection_;
    Signal::Connection talkConnection_;
};

} // namespace velmora
