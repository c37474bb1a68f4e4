// SimulatedShortcuts.h: a desktop's shortcuts in memory, and the hand that presses them.
#pragma once

#include "platform/GlobalShortcuts.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmora {

/// Answers at once. Threads: main.
class SimulatedShortcuts : public GlobalShortcuts {
public:
    [[nodiscard]] State state() const override { return state_; }
    [[nodiscard]] const std::map<std::string, std::string>& triggers() const override {
        return triggers_;
    }
    [[nodiscard]] Signal& changed() override { return changed_; }

    void bind(std::vector<GlobalShortcut> shortcuts, Listener listener) override {
        unbind();
        wanted_ = std::move(shortcuts);
        listener_ = std::move(listener);
        ask();
    }
    void unbind() override {
        become(isThere_ ? State::unused : State::unavailable);
        wanted_.clear();
    }

    // -- as a test arranges it --

    /// The desktop has shortcuts from now on; those that are wanted are bound.
    void appear() {
        isThere_ = true;
        ask();
    }
    void vanish() {
        isThere_ = false;
        become(State::unavailable);
    }
    /// The user says no to what is asked from now on.
    void refuse() { refuses_ = true; }
    void allow() { refuses_ = false; }
    /// The desktop puts an end to what is bound.
    void fail() { become(State::failed); }

    void press(const std::string& id) { tell(id, true); }
    void release(const std::string& id) { tell(id, false); }

    /// What is bound or asked for.
    [[nodiscard]] const std::vector<GlobalShortcut>& wanted() const { return wanted_; }

private:
    using Wanted = std::vector<GlobalShortcut>;

    void ask() {
        if (isThere_ && !wanted_.empty() && refuses_) {
            become(State::asked);
            become(State::refused);
            wanted_.clear();
        } else if (isThere_) {
            become(wanted_.empty() ? State::unused : State::bound);
        }
    }

    void become(State state) {
        if (state != State::bound) {
            for (const std::string& id : std::exchange(held_, {})) {
                listener_(id, false);
            }
        }
        state_ = state;
        triggers_.clear();
        for (const GlobalShortcut& shortcut : state == State::bound ? wanted_ : Wanted{}) {
            triggers_[shortcut.id] = shortcut.trigger;
        }
        changed_.emit();
    }

    void tell(const std::string& id, bool isPressed) {
        if (state_ == State::bound && (isPressed ? held_.insert(id).second : held_.erase(id) > 0)) {
            listener_(id, isPressed);
        }
    }

    State state_ = State::unavailable;
    bool isThere_ = false;
    bool refuses_ = false;
    Wanted wanted_;
    Listener listener_;
    std::map<std::string, std::string> triggers_;
    std::set<std::string> held_;
    Signal changed_;
};

} // namespace velmora
