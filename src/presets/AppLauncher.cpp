#include "presets/AppLauncher.h"

#include <utility>

namespace velmora {

AppLauncher::AppLauncher(const Platform& platform) : platform_(platform) {
}

void AppLauncher::launch(const InstalledApplication& application, Completion completion) {
    platform_.applications.launch(
        application.location,
        [weak = std::weak_ptr(self_),
         bundleID = application.bundleID,
         completion = std::move(completion)](std::optional<RunningApplication> launched) {
            if (const auto self = weak.lock()) {
                (*self)->settle({bundleID, std::move(launched), completion});
            }
        });
}

void AppLauncher::forgetPending() {
    timers_.clear();
    self_ = std::make_shared<AppLauncher*>(this);
}

void AppLauncher::settle(Pending pending) {
    const auto timer = timers_.emplace(timers_.end());
    *timer = platform_.mainQueue.after(settlingTime,
                                       [this, timer, pending = std::move(pending)]() mutable {
                                           // The completion may destroy this launcher, and the
                                           // erased timer destroys this closure: from the erasure
                                           // on, only what is on the stack is safe.
                                           const Pending done = std::move(pending);
                                           const auto running = runningNow(done);
                                           timers_.erase(timer);
                                           done.completion(running);
                                       });
}

std::optional<RunningApplication> AppLauncher::runningNow(const Pending& pending) const {
    if (!pending.launched) {
        return std::nullopt;
    }
    if (auto application = platform_.applications.byPid(pending.launched->pid)) {
        return application;
    }
    const auto instances = platform_.applications.byBundleID(pending.bundleID);
    return instances.empty() ? std::nullopt : std::optional(instances.front());
}

} // namespace velmora
