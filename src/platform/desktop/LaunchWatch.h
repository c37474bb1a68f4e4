// LaunchWatch.h: waits for an application that was just started.
#pragma once

#include "platform/Applications.h"
#include "platform/MainQueue.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class ApplicationIndex;
class ProcFiles;

/// Looks a few times a second which process of the application has come up, and whether it stays.
///
/// Threads: main.
class LaunchWatch {
public:
    struct Launch {
        std::string entryId;
        std::int32_t pid{};                ///< what was started; may be a wrapper
        std::vector<std::int32_t> earlier; ///< instances that ran before
    };
    /// The leading process, or none when nothing came up. Called once; may destroy the watch.
    using Outcome = std::function<void(std::optional<std::int32_t> leader)>;

    // A program that fails for want of a file or a display has ended by then.
    static constexpr std::chrono::milliseconds staysFor{500};
    // A wrapper that has ended may have asked another program to start the application.
    static constexpr std::chrono::milliseconds afterTheEnd{1000};
    static constexpr std::chrono::milliseconds longest{10'000};
    static constexpr std::chrono::milliseconds lookEvery{100};

    LaunchWatch(MainQueue& mainQueue,
                ApplicationIndex& index,
                const ProcFiles& processes,
                Launch launch,
                Outcome outcome);

private:
    void look();
    [[nodiscard]] std::optional<std::int32_t> candidate(bool isGone) const;
    void finish(std::optional<std::int32_t> leader);

    ApplicationIndex& index_;
    const ProcFiles& processes_;
    Launch launch_;
    Outcome outcome_;
    std::optional<std::int32_t> candidate_;
    std::chrono::milliseconds watched_{};
    std::chrono::milliseconds candidateSince_{};
    std::optional<std::chrono::milliseconds> goneSince_;
    std::unique_ptr<MainQueue::Timer> timer_;
};

} // namespace velmora
