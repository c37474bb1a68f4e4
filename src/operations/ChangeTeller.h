// ChangeTeller.h: tells others what has changed in the mixer.
#pragma once

#include "operations/MixerParts.h"
#include "operations/MixerState.h"
#include "platform/MainQueue.h"
#include "platform/Signal.h"

#include <chrono>
#include <functional>
#include <memory>

namespace velmora {

/// Watches the engine, the presets, the language and the store, and tells the state before and
/// after. Changes in quick succession, such as a fader's, are told as one; levels are no change.
///
/// Threads: main.
class ChangeTeller {
public:
    using Listener = std::function<void(const MixerState& before, const MixerState& after)>;
    static constexpr std::chrono::milliseconds gatheringTime{20};

    ChangeTeller(const MixerParts& parts, Listener listener);
    ChangeTeller(const ChangeTeller&) = delete;
    ChangeTeller& operator=(const ChangeTeller&) = delete;

    /// As it was told last.
    [[nodiscard]] const MixerState& state() const { return state_; }

private:
    void gather();
    void tell();

    MixerParts parts_;
    Listener listener_;
    MixerState state_;
    std::unique_ptr<MainQueue::Timer> gathering_;
    Signal::Connection engineConnection_;
    Signal::Connection presetsConnection_;
    Signal::Connection settingsConnection_;
    Signal::Connection storeConnection_;
};

} // namespace velmora
