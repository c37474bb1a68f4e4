#include "platform/simulated/SoundGraph.h"

#include <algorithm>
#include <numeric>

namespace velmora {
namespace {

template <typename Items, typename Predicate>
auto* findIn(Items& items, Predicate matches) {
    const auto found = std::ranges::find_if(items, matches);
    return found == items.end() ? nullptr : &*found;
}

// FNV-1a, 32 bits.
AudioObjectID hashOf(std::string_view text) {
    constexpr std::uint32_t offsetBasis = 2166136261U;
    constexpr std::uint32_t prime = 16777619U;
    std::uint32_t hash = offsetBasis;
    for (const char character : text) {
        hash = (hash ^ static_cast<std::uint8_t>(character)) * prime;
    }
    return hash;
}

} // namespace

std::uint32_t DeviceState::channels(Scope scope) const {
    const auto& streams = scope == Scope::input ? about.inputs : about.outputs;
    return std::accumulate(streams.begin(), streams.end(), 0U);
}

AudioObjectID SoundGraph::idForUID(std::string_view uid) const {
    AudioObjectID id = hashOf(uid);
    const auto taken = [&] {
        return std::ranges::find(devices, id, &DeviceState::id) != devices.end();
    };
    while (id == 0 || taken()) {
        ++id;
    }
    return id;
}

void SoundGraph::tellAvailability() const {
    for (const auto& listener : availabilityListeners) {
        listener(isAvailable);
    }
}

void SoundGraph::tellDefaultOutput() const {
    for (const auto& listener : defaultOutputListeners) {
        listener();
    }
}

void SoundGraph::loseService() {
    isAvailable = false;
    ++epoch;
    processes.clear();
    for (IOProcState& proc : ioProcs) {
        proc.startedAs = 0;
    }
    for (OutputUnitState* const unit : outputUnits) {
        unit->running = false;
    }
    for (InputUnitState* const unit : inputUnits) {
        unit->startedAs = 0;
    }
}

DeviceState* SoundGraph::device(AudioObjectID id) {
    return findIn(devices, [&](const DeviceState& item) { return item.id == id; });
}

DeviceState* SoundGraph::deviceByUID(std::string_view uid) {
    return findIn(devices, [&](const DeviceState& item) { return item.about.uid == uid; });
}

ProcessState* SoundGraph::process(AudioObjectID id) {
    return findIn(processes, [&](const ProcessState& item) { return item.id == id; });
}

std::int32_t SoundGraph::leaderOf(std::int32_t pid) const {
    const auto leader = leaderOfHelper.find(pid);
    return leader == leaderOfHelper.end() ? pid : leader->second;
}

ProcessState* SoundGraph::processOfPid(std::int32_t pid) {
    const std::int32_t leader = leaderOf(pid);
    return findIn(processes, [&](const ProcessState& item) { return item.pid == leader; });
}

ProcessState& SoundGraph::makeProcess(std::int32_t pid) {
    return processes.emplace_back(ProcessState{.id = nextObject(), .pid = leaderOf(pid)});
}

TapState* SoundGraph::tapByUUID(std::string_view uuid) {
    return findIn(taps, [&](const TapState& item) { return item.about.uuid == uuid; });
}

AggregateState* SoundGraph::aggregate(AudioObjectID id) {
    return findIn(aggregates, [&](const AggregateState& item) { return item.id == id; });
}

AudioObjectID SoundGraph::makeAggregate(const AggregateDescription& description) {
    const AudioObjectID id = description.isPrivate ? nextObject() : idForUID(description.uid);
    aggregates.push_back({id, description});
    aggregateHistory.push_back(description);
    if (!description.isPrivate) {
        DeviceState made;
        made.id = id;
        made.about = {.uid = description.uid,
                      .name = description.name,
                      .outputs = {2},
                      .transport = Transport::aggregate};
        for (const SubDevice& part : description.subDevices) {
            made.partUIDs.push_back(part.uid);
        }
        devices.push_back(std::move(made));
    }
    return id;
}

IOProcState* SoundGraph::ioProc(AudioObjectID device, IOProcID id) {
    return findIn(ioProcs,
                  [&](const IOProcState& item) { return item.device == device && item.id == id; });
}

float SoundGraph::mixdownDivisor() {
    const DeviceState* speakers = device(defaultOutput);
    if (!mixdownDivided || speakers == nullptr) {
        return 1.0F;
    }
    return std::max(static_cast<float>(speakers->channels(Scope::output)) / 2.0F, 1.0F);
}

} // namespace velmora
