#include "platform/simulated/SimulatedAudioHardware.h"

#include "platform/simulated/SoundGraph.h"

#include <algorithm>
#include <utility>

namespace velmora {
namespace {

/// Runs `answer` under the lock unless the read is refused.
template <typename Answer>
auto read(SoundGraph& graph, Operation operation, AudioObjectID object, Answer answer)
    -> decltype(answer()) {
    const std::scoped_lock guard(graph.mutex);
    if (!graph.isAvailable || graph.refusals.find(operation, object)) {
        return std::nullopt;
    }
    return answer();
}

/// Answers with what `select` makes of the object, or with none when there is no such object.
template <typename Object, typename Select>
auto selected(const Object* object, Select select) {
    using Value = std::remove_cvref_t<std::invoke_result_t<Select, const Object&>>;
    return object == nullptr ? std::nullopt : std::optional<Value>(select(*object));
}

template <typename Items>
std::vector<AudioObjectID> idsOf(const Items& items) {
    std::vector<AudioObjectID> ids;
    ids.reserve(items.size());
    for (const auto& item : items) {
        ids.push_back(item.id);
    }
    return ids;
}

/// A request that ends something: allowed also while the service is away.
template <typename Request>
Status end(SoundGraph& graph, Operation operation, AudioObjectID object, Request carryOut) {
    const std::scoped_lock guard(graph.mutex);
    if (const auto refusal = graph.refusals.find(operation, object)) {
        return *refusal;
    }
    return carryOut() ? statusOk : statusNoSuchObject;
}

template <typename Request>
Status request(SoundGraph& graph, Operation operation, AudioObjectID object, Request carryOut) {
    return end(graph, operation, object, [&] { return graph.isAvailable && carryOut(); });
}

/// A request that gives something back.
template <typename Erase>
Status release(SoundGraph& graph, Operation operation, AudioObjectID object, Erase erase) {
    return end(graph, operation, object, [&] {
        const bool existed = erase();
        graph.wrongReleases += existed ? 0 : 1;
        return existed;
    });
}

template <typename Items>
bool eraseId(Items& items, AudioObjectID id) {
    return std::erase_if(items, [&](const auto& item) { return item.id == id; }) > 0;
}

} // namespace

SimulatedAudioHardware::SimulatedAudioHardware(SimulatedSound& sound, MainQueue& mainQueue)
    : graph_(sound.graph_), mainQueue_(mainQueue) {
}

bool SimulatedAudioHardware::isAvailable() const {
    const std::scoped_lock guard(graph_->mutex);
    return graph_->isAvailable;
}

void SimulatedAudioHardware::onAvailabilityChange(std::function<void(bool isAvailable)> listener) {
    const std::scoped_lock guard(graph_->mutex);
    graph_->availabilityListeners.emplace_back(
        [this, listener = std::move(listener)](bool isAvailable) {
            mainQueue_.post([listener, isAvailable] { listener(isAvailable); });
        });
}

std::uint32_t SimulatedAudioHardware::generation() const {
    const std::scoped_lock guard(graph_->mutex);
    return graph_->epoch;
}

std::optional<std::vector<AudioObjectID>> SimulatedAudioHardware::processObjects() const {
    return read(*graph_, Operation::processObjects, 0, [&] {
        return std::optional(idsOf(graph_->processes));
    });
}

std::optional<std::int32_t> SimulatedAudioHardware::processPid(AudioObjectID process) const {
    return read(*graph_, Operation::processPid, process, [&] {
        return selected(graph_->process(process), [](const auto& item) { return item.pid; });
    });
}

std::optional<bool> SimulatedAudioHardware::processIsRunningOutput(AudioObjectID process) const {
    return read(*graph_, Operation::processIsRunningOutput, process, [&] {
        return selected(graph_->process(process), [](const auto& item) { return item.playing; });
    });
}

std::optional<AudioObjectID> SimulatedAudioHardware::processForPid(std::int32_t pid) const {
    return read(*graph_, Operation::processForPid, 0, [&] {
        return selected(graph_->processOfPid(pid), [](const auto& item) { return item.id; });
    });
}

std::optional<std::vector<AudioObjectID>> SimulatedAudioHardware::devices() const {
    return read(
        *graph_, Operation::devices, 0, [&] { return std::optional(idsOf(graph_->devices)); });
}

std::optional<std::string> SimulatedAudioHardware::deviceName(AudioObjectID device) const {
    return read(*graph_, Operation::deviceName, device, [&] {
        return selected(graph_->device(device), [](const auto& item) { return item.about.name; });
    });
}

std::optional<std::string> SimulatedAudioHardware::deviceUID(AudioObjectID device) const {
    return read(*graph_, Operation::deviceUID, device, [&] {
        return selected(graph_->device(device), [](const auto& item) { return item.about.uid; });
    });
}

std::optional<std::vector<std::uint32_t>>
SimulatedAudioHardware::streamChannels(AudioObjectID device, Scope scope) const {
    return read(*graph_, Operation::streamChannels, device, [&] {
        return selected(graph_->device(device), [&](const auto& item) {
            return scope == Scope::input ? item.about.inputs : item.about.outputs;
        });
    });
}

std::optional<Transport> SimulatedAudioHardware::transport(AudioObjectID device) const {
    return read(*graph_, Operation::transport, device, [&] {
        return selected(graph_->device(device),
                        [](const auto& item) { return item.about.transport; });
    });
}

std::optional<double> SimulatedAudioHardware::nominalRate(AudioObjectID device) const {
    return read(*graph_, Operation::nominalRate, device, [&] {
        if (graph_->aggregate(device) != nullptr) {
            return std::optional(graph_->rateHz);
        }
        return selected(graph_->device(device), [](const auto& item) { return item.about.rateHz; });
    });
}

Status SimulatedAudioHardware::requestBufferFrames(AudioObjectID device, std::uint32_t frames) {
    return request(*graph_, Operation::requestBufferFrames, device, [&] {
        DeviceState* found = graph_->device(device);
        if (found != nullptr) {
            found->requestedFrames = frames;
        }
        return found != nullptr;
    });
}

std::optional<AudioObjectID> SimulatedAudioHardware::defaultOutputDevice() const {
    return read(*graph_, Operation::defaultOutputDevice, 0, [&] {
        return std::optional(graph_->defaultOutput);
    });
}

void SimulatedAudioHardware::onDefaultOutputChange(std::function<void()> listener) {
    const std::scoped_lock guard(graph_->mutex);
    graph_->defaultOutputListeners.emplace_back(
        [this, listener = std::move(listener)] { mainQueue_.post(listener); });
}

StatusOr<AudioObjectID> SimulatedAudioHardware::createTap(const TapDescription& description) {
    AudioObjectID id = 0;
    const Status status = request(*graph_, Operation::createTap, description.process, [&] {
        if (graph_->process(description.process) == nullptr) {
            return false;
        }
        id = graph_->nextObject();
        graph_->taps.push_back({id, description, graph_->mixdownDivisor()});
        graph_->tapHistory.push_back(description);
        return true;
    });
    return status == statusOk ? StatusOr<AudioObjectID>(id) : std::unexpected(status);
}

Status SimulatedAudioHardware::destroyTap(AudioObjectID tap) {
    return release(*graph_, Operation::destroyTap, tap, [&] { return eraseId(graph_->taps, tap); });
}

StatusOr<AudioObjectID>
SimulatedAudioHardware::createAggregate(const AggregateDescription& description) {
    AudioObjectID id = 0;
    const Status status = request(*graph_, Operation::createAggregate, 0, [&] {
        id = graph_->makeAggregate(description);
        return true;
    });
    return status == statusOk ? StatusOr<AudioObjectID>(id) : std::unexpected(status);
}

Status SimulatedAudioHardware::destroyAggregate(AudioObjectID device) {
    return release(*graph_, Operation::destroyAggregate, device, [&] {
        eraseId(graph_->devices, device);
        return eraseId(graph_->aggregates, device);
    });
}

StatusOr<IOProcID> SimulatedAudioHardware::createIOProc(AudioObjectID device, IOCallback callback) {
    IOProcID id = 0;
    const Status status = request(*graph_, Operation::createIOProc, device, [&] {
        if (graph_->aggregate(device) == nullptr) {
            return false;
        }
        id = graph_->nextObject();
        graph_->ioProcs.push_back(
            {.id = id, .device = device, .callback = std::move(callback), .epoch = graph_->epoch});
        return true;
    });
    return status == statusOk ? StatusOr<IOProcID>(id) : std::unexpected(status);
}

Status SimulatedAudioHardware::destroyIOProc(AudioObjectID device, IOProcID proc) {
    return release(*graph_, Operation::destroyIOProc, device, [&] {
        return std::erase_if(graph_->ioProcs, [&](const IOProcState& item) {
                   return item.device == device && item.id == proc;
               }) > 0;
    });
}

Status SimulatedAudioHardware::startDevice(AudioObjectID device, IOProcID proc) {
    return request(*graph_, Operation::startDevice, device, [&] {
        IOProcState* found = graph_->ioProc(device, proc);
        const bool isAlive = found != nullptr && found->epoch == graph_->epoch;
        if (isAlive) {
            found->startedAs = graph_->nextStart();
        }
        return isAlive;
    });
}

Status SimulatedAudioHardware::stopDevice(AudioObjectID device, IOProcID proc) {
    return end(*graph_, Operation::stopDevice, device, [&] {
        IOProcState* found = graph_->ioProc(device, proc);
        if (found != nullptr) {
            found->startedAs = 0;
        }
        return found != nullptr;
    });
}

} // namespace velmora
