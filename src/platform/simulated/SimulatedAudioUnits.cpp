#include "platform/simulated/SimulatedAudioUnits.h"

#include "platform/simulated/SoundGraph.h"

#include <utility>

namespace velmora {
namespace {

/// Points a unit at a device that has channels in the wanted direction.
template <typename UnitState>
Status pointAt(
    SoundGraph& graph, UnitState& unit, AudioObjectID device, Operation operation, Scope scope) {
    const std::scoped_lock guard(graph.mutex);
    if (const auto refusal = graph.refusals.find(operation, device)) {
        return *refusal;
    }
    const DeviceState* found = graph.isAvailable ? graph.device(device) : nullptr;
    if (found == nullptr) {
        return statusNoSuchObject;
    }
    if (found->channels(scope) == 0) {
        return statusInvalid;
    }
    unit.device = device;
    return statusOk;
}

double rateOf(SoundGraph& graph, AudioObjectID device) {
    const std::scoped_lock guard(graph.mutex);
    const DeviceState* found = graph.device(device);
    return found == nullptr ? 0.0 : found->about.rateHz;
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
        return pointAt(*graph_, state_, device, Operation::setOutputDevice, Scope::output);
    }

    Status setChannelMap(std::span<const std::int32_t> map) override {
        const std::scoped_lock guard(graph_->mutex);
        if (const auto refusal = graph_->refusals.find(Operation::setChannelMap, state_.device)) {
            return *refusal;
        }
        const DeviceState* device = graph_->device(state_.device);
        if (device == nullptr || map.size() != device->channels(Scope::output)) {
            return statusInvalid;
        }
        state_.map.assign(map.begin(), map.end());
        return statusOk;
    }

    [[nodiscard]] double sampleRate() const override { return rateOf(*graph_, state_.device); }

    Status start(RenderCallback render) override {
        const std::scoped_lock guard(graph_->mutex);
        if (const auto refusal = graph_->refusals.find(Operation::startOutput, state_.device)) {
            return *refusal;
        }
        if (!graph_->isAvailable || graph_->device(state_.device) == nullptr) {
            return statusNoSuchObject;
        }
        state_.render = std::move(render);
        state_.running = true;
        return statusOk;
    }

    void stop() noexcept override {
        const std::scoped_lock guard(graph_->mutex);
        state_.running = false;
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
        return pointAt(*graph_, state_, device, Operation::setInputDevice, Scope::input);
    }

    [[nodiscard]] std::uint32_t channelCount() const override {
        const std::scoped_lock guard(graph_->mutex);
        const DeviceState* device = graph_->device(state_.device);
        return device == nullptr ? 0 : device->channels(Scope::input);
    }

    [[nodiscard]] double sampleRate() const override { return rateOf(*graph_, state_.device); }

    Status start(ReceiveCallback receive) override {
        const std::scoped_lock guard(graph_->mutex);
        if (const auto refusal = graph_->refusals.find(Operation::startInput, state_.device)) {
            return *refusal;
        }
        if (!graph_->isAvailable || graph_->device(state_.device) == nullptr) {
            return statusNoSuchObject;
        }
        state_.receive = std::move(receive);
        state_.startedAs = graph_->nextStart();
        return statusOk;
    }

    void stop() noexcept override {
        const std::scoped_lock guard(graph_->mutex);
        state_.startedAs = 0;
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

} // namespace velmora
