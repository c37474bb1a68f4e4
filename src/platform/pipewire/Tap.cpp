#include "platform/pipewire/Tap.h"

#include <cerrno>
#include <utility>

namespace velmora::pipewire {
namespace {

std::unexpected<TapRefusal> refusal(TapRefusal::Step step, Status status) {
    return std::unexpected(TapRefusal{.step = step, .status = status});
}

} // namespace

std::expected<std::unique_ptr<Tap>, TapRefusal> Tap::open(Session& session,
                                                          AudioObjectID process,
                                                          ApplicationTaps::Mute mute,
                                                          float divisor,
                                                          TapCallback callback) {
    if (!session.isAvailable()) {
        return refusal(TapRefusal::Step::tap, -EHOSTDOWN);
    }
    if (!(divisor >= 1.0F)) {
        return refusal(TapRefusal::Step::tap, -EINVAL);
    }
    const auto setup = session.change(
        [&](SessionState& state) { return setUp(state, process, mute, callback != nullptr); });
    if (!setup) {
        return std::unexpected(setup.error());
    }
    std::unique_ptr<Tap> tap(new Tap(session, setup->mute));
    const Status status = tap->part_.start(
        setup->wish, TapRoute{.process = process}, 1.0F / divisor, std::move(callback));
    if (status != statusOk) {
        return refusal(TapRefusal::Step::start, status);
    }
    return tap;
}

std::expected<Tap::Setup, TapRefusal> Tap::setUp(SessionState& state,
                                                 AudioObjectID process,
                                                 ApplicationTaps::Mute mute,
                                                 bool hasCallback) {
    const bool isMuting = mute == ApplicationTaps::Mute::whileTapped;
    if (state.processes.pid(process) == 0) {
        return refusal(TapRefusal::Step::tap, -ESRCH);
    }
    if (!hasCallback) {
        return refusal(TapRefusal::Step::callback, -EINVAL);
    }
    const Setup setup{.mute = state.ids.next(), .wish = {.rateHz = state.rate.hz()}};
    if (isMuting) {
        state.mutes[setup.mute] = process;
    }
    return setup;
}

Tap::~Tap() {
    part_.stop();
    session_.endMuteSoon(mute_);
}

} // namespace velmora::pipewire
