// AppLauncher.h: opens applications and waits until they can be captured.
#pragma once

#include "platform/Applications.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

namespace velmora {

/// Threads: main. Launches are independent and may complete in any order. Destroying the launcher
/// forgets the pending ones: nothing of them happens any more.
class AppLauncher {
public:
    /// What a fresh application needs to open its audio connection; one that has not played yet
    /// cannot be tapped.
    static constexpr std::chrono::milliseconds settlingTime{1500};

    using Completion = std::function<void(std::optional<RunningApplication>)>;

    explicit AppLauncher(const Platform& platform);
    AppLauncher(const AppLauncher&) = delete;
    AppLauncher& operator=(const AppLauncher&) = delete;

    /// Opens `application`. `settlingTime` after the desktop has reported back, `completion` runs
    /// with the application as it runs then: a starter may have handed over to another process
    /// meanwhile. None when it did not come up, or is gone again.
    void launch(const InstalledApplication& application, Completion completion);

    /// The applications still come up, but nobody is told.
    void forgetPending();

private:
    struct Pending {
        std::string bundleID;
        std::optional<RunningApplication> launched;
        Completion completion;
    };

    void settle(Pending pending);
    [[nodiscard]] std::optional<RunningApplication> runningNow(const Pending& pending) const;

    Platform platform_;
    std::list<std::unique_ptr<MainQueue::Timer>> timers_;
    /// Held weakly by the desktop's completions, which outlive this object.
    std::shared_ptr<AppLauncher*> self_ = std::make_shared<AppLauncher*>(this);
};

} // namespace velmora
