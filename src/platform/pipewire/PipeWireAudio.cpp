#include "platform/pipewire/PipeWireAudio.h"

#include "platform/pipewire/ApplicationResolver.h"
#include "platform/pipewire/Session.h"
#include "platform/pipewire/SessionDevices.h"
#include "platform/pipewire/SessionSinks.h"
#include "platform/pipewire/SessionTaps.h"
#include "platform/pipewire/Units.h"
#include "platform/pipewire/daemon/ThreadRights.h"

#include <pipewire/pipewire.h>

#include <atomic>
#include <utility>

#include <sys/resource.h>

namespace velmora {
namespace {

/// The buffers of every linked port are open files, and the usual soft limit is 1024.
void raiseFileLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < limit.rlim_max) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace

class PipeWireAudio::Impl {
public:
    Impl(MainQueue& mainQueue, Options options)
        : mainQueue_(mainQueue), keepCards_(std::move(options.keepCards)),
          raiseThread_(std::move(options.raiseThread)),
          session_({.unknownApplications =
                        [this](pipewire::ProcessDirectory::Claims claims) {
                            post([claims = std::move(claims)](Impl& self) {
                                self.applications_.resolve(claims);
                            });
                        },
                    .notFirst =
                        [this](pipewire::ThreadId thread) {
                            post([thread](Impl& self) {
                                if (self.raiseThread_) {
                                    self.raiseThread_(thread, pipewire::firstNiceLevel);
                                }
                            });
                        },
                    .cardsNamed =
                        [this](std::string cards) {
                            post([cards = std::move(cards)](Impl& self) {
                                if (self.keepCards_) {
                                    self.keepCards_(cards);
                                }
                            });
                        },
                    .muteEnding =
                        [this](AudioObjectID mute) {
                            post([mute](Impl& self) { self.session_.endMute(mute); });
                        },
                    .defaultOutputChanged =
                        [this] {
                            post([](Impl& self) { self.devices_.defaultOutputChanged().emit(); });
                        },
                    .changed = [this] { postChanged(); }},
                   options.knownCards),
          applications_(session_,
                        {.identify = std::move(options.identify),
                         .leaderOf = std::move(options.applicationPid),
                         .startOf = std::move(options.processStart)}),
          devices_(session_), taps_(session_, applications_), sinks_(session_), units_(session_) {
        session_.waitForListing(options.firstListing);
    }

    pipewire::Session& session() { return session_; }
    pipewire::SessionDevices& devices() { return devices_; }
    pipewire::SessionTaps& taps() { return taps_; }
    pipewire::SessionSinks& sinks() { return sinks_; }
    pipewire::Units& units() { return units_; }

private:
    /// Runs `work` on the main thread, later, unless this object has gone by then. Threads: any.
    template <typename Work>
    void post(Work work) {
        mainQueue_.post([guard = std::weak_ptr(self_), work = std::move(work)] {
            if (const auto self = guard.lock()) {
                work(**self);
            }
        });
    }

    /// What changes before the main thread is free is told once. Threads: control.
    void postChanged() {
        if (!isChangeDue_.exchange(true)) {
            post([](Impl& self) {
                self.isChangeDue_ = false;
                self.devices_.changed().emit();
            });
        }
    }

    /// The library's own start and end.
    class Library {
    public:
        Library() { pw_init(nullptr, nullptr); }
        ~Library() { pw_deinit(); }
        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;
    };
    Library library_;
    std::atomic<bool> isChangeDue_ = false;
    MainQueue& mainQueue_;
    std::shared_ptr<Impl*> self_ = std::make_shared<Impl*>(this); // main destroys it
    std::function<void(std::string)> keepCards_;
    std::function<void(std::int32_t, int)> raiseThread_;
    pipewire::Session session_;
    pipewire::ApplicationResolver applications_;
    pipewire::SessionDevices devices_;
    pipewire::SessionTaps taps_;
    pipewire::SessionSinks sinks_;
    pipewire::Units units_;
};

PipeWireAudio::PipeWireAudio(MainQueue& mainQueue) : PipeWireAudio(mainQueue, Options{}) {
}

PipeWireAudio::PipeWireAudio(MainQueue& mainQueue, Options options) {
    raiseFileLimit();
    impl_ = std::make_unique<Impl>(mainQueue, std::move(options));
}

PipeWireAudio::~PipeWireAudio() = default;

AudioDevices& PipeWireAudio::devices() {
    return impl_->devices();
}

ApplicationTaps& PipeWireAudio::taps() {
    return impl_->taps();
}

PublicSinks& PipeWireAudio::sinks() {
    return impl_->sinks();
}

AudioUnits& PipeWireAudio::units() {
    return impl_->units();
}

std::string PipeWireAudio::applicationName(std::int32_t pid) const {
    return impl_->session().read(
        [pid](pipewire::SessionState& state, bool) { return state.processes.name(pid); });
}

std::string PipeWireAudio::applicationID(std::int32_t pid) const {
    return impl_->session().read(
        [pid](pipewire::SessionState& state, bool) { return state.processes.bundleID(pid); });
}

Status PipeWireAudio::ensureVirtualMicrophone() {
    return impl_->session().ensureVirtualMicrophone();
}

} // namespace velmora
