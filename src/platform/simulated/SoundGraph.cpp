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

std::optional<DeviceVolume> DeviceState::recordingVolume() const {
    const bool isVirtualSource =
        about.transport == Transport::virtualDevice && channels(Scope::input) > 0;
    return isVirtualSource ? std::optional(volume) : std::nullopt;
}

bool SoundGraph::isAnythingStarted() const {
    const auto isStarted = [](const auto* one) { return one->startedAs != 0; };
    return std::ranges::any_of(taps, isStarted) || std::ranges::any_of(outputUnits, isStarted) ||
           std::ranges::any_of(inputUnits, isStarted);
}

std::int64_t SoundGraph::nextBlockFrames() const {
    constexpr std::int64_t usual = 128;
    return wantedFrames.value_or(isAnythingStarted() ? std::max(usual, leastFrames) : usual);
}

void SoundGraph::loseService() {
    isAvailable = false;
    processes.clear();
    recordings.clear();
    killStarted();
    const auto killPointed = [](auto& units) {
        for (UnitState* const unit : units) {
            unit->isAlive = unit->isAlive && unit->device == 0;
        }
    };
    killPointed(outputUnits);
    killPointed(inputUnits);
}

void SoundGraph::killStarted() {
    const auto kill = [](auto& items) {
        for (auto* const item : items) {
            item->isAlive = item->isAlive && item->startedAs == 0;
            item->startedAs = 0;
        }
    };
    kill(taps);
    kill(outputUnits);
    kill(inputUnits);
}

DeviceState* SoundGraph::device(AudioObjectID id) {
    return findIn(devices, [&](const DeviceState& item) { return item.id == id; });
}

const DeviceState* SoundGraph::device(AudioObjectID id) const {
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
    tellChanged();
    return processes.emplace_back(ProcessState{.id = nextObject(), .pid = leaderOf(pid)});
}

Recorders SoundGraph::recorders(AudioObjectID device) {
    Recorders found;
    for (const RecordingState& recording : recordings) {
        if (recording.device != device || recording.isMeter) {
            continue;
        }
        found.areAny = true;
        if (const ProcessState* const process = processOfPid(recording.pid)) {
            found.processes.push_back(process->id);
        }
    }
    std::ranges::sort(found.processes);
    const auto repeated = std::ranges::unique(found.processes);
    found.processes.erase(repeated.begin(), repeated.end());
    return found;
}

void SoundGraph::endRecordings(std::int32_t pid) {
    const auto isOver = [pid](const RecordingState& one) { return one.pid == pid; };
    if (std::erase_if(recordings, isOver) > 0) {
        tellChanged();
    }
}

AudioObjectID SoundGraph::makeSink(const PublicSink& sink) {
    const AudioObjectID id = idForUID(sink.uid);
    sinks.push_back({id, sink});
    createdSinks.push_back(sink);
    DeviceState made;
    made.id = id;
    made.about = {
        .uid = sink.uid, .name = sink.name, .outputs = {2}, .transport = Transport::aggregate};
    made.partUIDs = {sink.masterUID, sink.followerUID};
    devices.push_back(std::move(made));
    tellChanged();
    return id;
}

bool SoundGraph::removeSink(AudioObjectID id) {
    const auto hasId = [id](const auto& item) { return item.id == id; };
    if (std::erase_if(sinks, hasId) == 0) {
        ++wrongReleases;
        return false;
    }
    std::erase_if(devices, hasId);
    tellChanged();
    return true;
}

} // namespace velmora
