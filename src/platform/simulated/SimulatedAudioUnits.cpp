#include "platform/simulated/SimulatedAudioUnits.h"

#include "platform/simulated/SoundGraph.h"

#include <algorithm>
#include <utility>

namespace velmora {
namespace {

/// Points a unit at a device that has channels in the wanted direction.
Status pointAt(
    SoundGraph& graph, UnitState& unit, AudioObjectID device, Operation operation, Scope scope) {
    if (unit.startedAs != 0) {
        return statusBusy;
    }
    if (const auto refusal = graph.refusals.find(operation, device)) {
        return *refusal;
    }
    const DeviceState* found = graph.isAvailable && unit.isAlive ? graph.device(device) : nullptr;
    if (found == nullptr) {
        return statusNoSuchObject;
    }
    if (found->channels(scope) == 0) {
        return statusInvalid;
    }
    unit.device = device;
    return statusOk;
}

/// Whether a unit may be started now.
Status checkStart(SoundGraph& graph, const UnitState& unit, Operation operation, bool hasCallback) {
    if (unit.startedAs != 0) {
        return statusBusy;
    }
    if (!hasCallback) {
        return statusInvalid;
    }
    if (const auto refusal = graph.refusals.find(operation, unit.device)) {
        return *refusal;
    }
    const bool isThere = graph.isAvailable && unit.isAlive && graph.device(unit.device) != nullptr;
    return isThere ? statusOk : statusNoSuchObject;
}

/// A device that is away keeps the machine's rate.
double rateOf(const SoundGraph& graph, const UnitState& unit) {
    if (unit.device == 0) {
        return 0.0;
    }
    const DeviceState* found = graph.device(unit.device);
    return found == nullptr ? graph.rateHz : found->about.rateHz;
}

class SimulatedOutputUnit : public OutputUnit {
public:
    explicit SimulatedOutputUnit(std::shared_ptr<SoundGraph> graph) : graph_(std::move(graph)) {
        const std::scoped_lock guard(graph_->mutex);
        graph_->outputUnits.push_back(&state_);
    }
    ~SimulatedOutputUnit() override {
        const std::scoped_lock guard(graph_->mutex);
        std::erase(graph_->outputUnits, &state_);
    }
    SimulatedOutputUnit(const SimulatedOutputUnit&) = delete;
    SimulatedOutputUnit& operator=(const SimulatedOutputUnit&) = delete;

    Status setDevice(AudioObjectID device) override {
        const std::scoped_lock guard(graph_->mutex);
        const Status status =
            pointAt(*graph_, state_, device, Operation::setOutputDevice, Scope::output);
        if (status == statusOk) {
            state_.map.clear();
        }
        return status;
    }

    Status setChannelMap(std::span<const std::int32_t> map) override {
        const std::scoped_lock guard(graph_->mutex);
        if (state_.startedAs != 0) {
            return statusBusy;
        }
        if (const auto refusal = graph_->refusals.find(Operation::setChannelMap, state_.device)) {
            return *refusal;
        }
        const DeviceState* device = graph_->device(state_.device);
        if (device == nullptr) {
            return statusNoSuchObject;
        }
        const bool isValid = map.size() == device->channels(Scope::output) &&
                             std::ranges::all_of(map, [](auto at) { return at >= -1 && at <= 1; });
        if (!isValid) {
            return statusInvalid;
        }
        state_.map.assign(map.begin(), map.end());
        return statusOk;
    }

    [[nodiscard]] double sampleRate() const override {
        const std::scoped_lock guard(graph_->mutex);
        return rateOf(*graph_, state_);
    }

    Status start(RenderCallback render) override {
        const std::scoped_lock guard(graph_->mutex);
        const Status status =
            checkStart(*graph_, state_, Operation::startOutput, render != nullptr);
        if (status == statusOk) {
            state_.render = std::move(render);
            state_.startedAs = graph_->nextStart();
        }
        return status;
    }

    void stop() noexcept override {
        const std::scoped_lock guard(graph_->mutex);
        state_.startedAs = 0;
    }

    [[nodiscard]] bool isAlive() const override {
        const std::scoped_lock guard(graph_->mutex);
        return state_.isAlive;
    }

private:
    std::shared_ptr<SoundGraph> graph_;
    OutputUnitState state_;
};

class SimulatedInputUnit : public InputUnit {
public:
    explicit SimulatedInputUnit(std::shared_ptr<SoundGraph> graph) : graph_(std::move(graph)) {
        const std::scoped_lock guard(graph_->mutex);
        graph_->inputUnits.push_back(&state_);
    }
    ~SimulatedInputUnit() override {
        const std::scoped_lock guard(graph_->mutex);
        std::erase(graph_->inputUnits, &state_);
    }
    SimulatedInputUnit(const SimulatedInputUnit&) = delete;
    SimulatedInputUnit& operator=(const SimulatedInputUnit&) = delete;

    Status setDevice(AudioObjectID device) override {
        const std::scoped_lock guard(graph_->mutex);
        const Status status =
            pointAt(*graph_, state_, device, Operation::setInputDevice, Scope::input);
        if (status == statusOk) {
            state_.channels = graph_->device(device)->channels(Scope::input);
            state_.first = 0;
            state_.count = state_.channels;
        }
        return status;
    }

    Status setChannels(std::uint32_t first, std::uint32_t count) override {
        const std::scoped_lock guard(graph_->mutex);
        if (state_.startedAs != 0) {
            return statusBusy;
        }
        if (count == 0 || first >= state_.channels || count > state_.channels - first) {
            return statusInvalid;
        }
        state_.first = first;
        state_.count = count;
        return statusOk;
    }

    [[nodiscard]] std::uint32_t channelCount() const override {
        const std::scoped_lock guard(graph_->mutex);
        return state_.channels;
    }

    [[nodiscard]] double sampleRate() const override {
        const std::scoped_lock guard(graph_->mutex);
        return rateOf(*graph_, state_);
    }

    Status start(ReceiveCallback receive) override {
        const std::scoped_lock guard(graph_->mutex);
        const Status status =
            checkStart(*graph_, state_, Operation::startInput, receive != nullptr);
        if (status == statusOk) {
            state_.receive = std::move(receive);
            state_.startedAs = graph_->nextStart();
        }
        return status;
    }

    void stop() noexcept override {
        const std::scoped_lock guard(graph_->mutex);
        state_.startedAs = 0;
    }

    [[nodiscard]] bool isAlive() const override {
        const std::scoped_lock guard(graph_->mutex);
        return state_.isAlive;
    }

private:
    std::shared_ptr<SoundGraph> graph_;
    InputUnitState state_;
};

/// A new unit unless the operation is refused.
template <typename Unit>
std::unique_ptr<Unit> makeUnit(const std::shared_ptr<SoundGraph>& graph, Operation operation) {
    {
        const std::scoped_lock guard(graph->mutex);
        if (graph->refusals.find(operation)) {
            return nullptr;
        }
    }
    return std::make_unique<Unit>(graph);
}

} // namespace

SimulatedAudioUnits::SimulatedAudioUnits(SimulatedSound& sound) : graph_(sound.graph_) {
}

std::unique_ptr<OutputUnit> SimulatedAudioUnits::makeOutput() {
    return makeUnit<SimulatedOutputUnit>(graph_, Operation::makeOutput);
}

std::unique_ptr<InputUnit> SimulatedAudioUnits::makeInput() {
    return makeUnit<SimulatedInputUnit>(graph_, Operation::makeInput);
}

void SimulatedAudioUnits::askForBlocksOf(std::uint32_t leastFrames) {
    const std::scoped_lock guard(graph_->mutex);
    graph_->leastFrames = leastFrames;
}

BlockReport SimulatedAudioUnits::blocks() const {
    const std::scoped_lock guard(graph_->mutex);
    const bool isCalled = graph_->isAnythingStarted();
    return {.frames = isCalled ? static_cast<std::uint32_t>(graph_->nextBlockFrames()) : 0,
            .missed = graph_->missedCycles,
            .isRealTime = isCalled ? std::optional(graph_->isRealTime) : std::nullopt};
}

} // namespace velmora
