#include "platform/simulated/SimulatedApplicationTaps.h"

#include "platform/simulated/GraphAccess.h"

#include <utility>

namespace velmora {
namespace {

using Step = TapRefusal::Step;

/// Made under the graph's lock; its end takes the lock itself.
class SimulatedTap : public ApplicationTap {
public:
    SimulatedTap(std::shared_ptr<SoundGraph> graph, TapState state)
        : graph_(std::move(graph)), state_(std::move(state)) {
        graph_->taps.push_back(&state_);
    }
    ~SimulatedTap() override {
        const std::scoped_lock guard(graph_->mutex);
        std::erase(graph_->taps, &state_);
    }
    SimulatedTap(const SimulatedTap&) = delete;
    SimulatedTap& operator=(const SimulatedTap&) = delete;

    [[nodiscard]] bool isAlive() const override {
        const std::scoped_lock guard(graph_->mutex);
        return state_.isAlive;
    }

private:
    std::shared_ptr<SoundGraph> graph_;
    TapState state_;
};

/// The first step that is refused, on purpose or for want of something.
std::optional<TapRefusal>
refusalOf(SoundGraph& graph, AudioObjectID process, float divisor, const TapCallback& callback) {
    struct Attempt {
        Step step{};
        Operation operation{};
        Status own{}; ///< with which it fails by itself
    };
    const bool isThere = graph.isAvailable && graph.process(process) != nullptr;
    const Status divided = divisor >= 1.0F ? statusOk : statusInvalid;
    for (const Attempt& attempt :
         {Attempt{Step::tap, Operation::openTap, isThere ? divided : statusNoSuchObject},
          Attempt{Step::device, Operation::openTapDevice, statusOk},
          Attempt{Step::callback, Operation::openTapCallback, callback ? statusOk : statusInvalid},
          Attempt{Step::start, Operation::openTapStart, statusOk}}) {
        const Status status = graph.refusals.find(attempt.operation, process).value_or(attempt.own);
        if (status != statusOk) {
            return TapRefusal{attempt.step, status};
        }
    }
    return std::nullopt;
}

} // namespace

SimulatedApplicationTaps::SimulatedApplicationTaps(SimulatedSound& sound) : graph_(sound.graph_) {
}

std::optional<std::vector<AudioObjectID>> SimulatedApplicationTaps::processObjects() const {
    return read(*graph_, Operation::processObjects, 0, [&] {
        return std::optional(idsOf(graph_->processes));
    });
}

std::optional<std::int32_t> SimulatedApplicationTaps::processPid(AudioObjectID process) const {
    return read(*graph_, Operation::processPid, process, [&] {
        return selected(graph_->process(process), [](const auto& item) { return item.pid; });
    });
}

std::optional<bool> SimulatedApplicationTaps::processIsRunningOutput(AudioObjectID process) const {
    return read(*graph_, Operation::processIsRunningOutput, process, [&] {
        return selected(graph_->process(process), [](const auto& item) { return item.playing; });
    });
}

std::optional<AudioObjectID> SimulatedApplicationTaps::processForPid(std::int32_t pid) const {
    return read(*graph_, Operation::processForPid, 0, [&] {
        return selected(graph_->processOfPid(pid), [](const auto& item) { return item.id; });
    });
}

std::optional<ApplicationSound> SimulatedApplicationTaps::sound(AudioObjectID process) const {
    return read(*graph_, Operation::processSound, process, [&] {
        return selected(graph_->process(process), [](const auto& item) { return item.sound; });
    });
}

std::optional<double> SimulatedApplicationTaps::tapRate() const {
    return read(*graph_, Operation::tapRate, 0, [&] { return std::optional(graph_->rateHz); });
}

std::expected<std::unique_ptr<ApplicationTap>, TapRefusal> SimulatedApplicationTaps::open(
    AudioObjectID process, Mute mute, float divisor, TapCallback callback) {
    const std::scoped_lock guard(graph_->mutex);
    if (const auto refusal = refusalOf(*graph_, process, divisor, callback)) {
        return std::unexpected(*refusal);
    }
    graph_->openedTaps.push_back({.process = process, .mute = mute});
    return std::make_unique<SimulatedTap>(
        graph_,
        TapState{.about = graph_->openedTaps.back(),
                 .callback = std::move(callback),
                 .divisor = graph_->mixdownDivided ? divisor : 1.0F,
                 .startedAs = graph_->nextStart()});
}

} // namespace velmora
