#include "platform/simulated/SimulatedSound.h"

#include "platform/simulated/SoundGraph.h"

#include <algorithm>
#include <utility>

namespace velmora {

using Guard = std::scoped_lock<std::mutex>;

SimulatedSound::SimulatedSound() : graph_(std::make_shared<SoundGraph>()) {
}

SimulatedSound::~SimulatedSound() = default;

AudioObjectID SimulatedSound::addDevice(const SimulatedDevice& device) {
    const Guard guard(graph_->mutex);
    const AudioObjectID id = device.id.value_or(graph_->idForUID(device.uid));
    graph_->devices.push_back({.id = id, .about = device});
    return id;
}

void SimulatedSound::removeDevice(AudioObjectID device) {
    const Guard guard(graph_->mutex);
    std::erase_if(graph_->devices, [&](const DeviceState& item) { return item.id == device; });
}

void SimulatedSound::setInput(AudioObjectID device, Waveform signal) {
    const Guard guard(graph_->mutex);
    if (DeviceState* found = graph_->device(device)) {
        found->input = std::move(signal);
    }
}

void SimulatedSound::setDefaultOutput(AudioObjectID device) {
    const Guard guard(graph_->mutex);
    const bool differs = std::exchange(graph_->defaultOutput, device) != device;
    if (differs && graph_->isAvailable) {
        graph_->tellDefaultOutput();
    }
}

void SimulatedSound::loseService() {
    const Guard guard(graph_->mutex);
    graph_->loseService();
    graph_->tellAvailability();
}

void SimulatedSound::pauseService() {
    const Guard guard(graph_->mutex);
    graph_->isAvailable = false;
    graph_->tellAvailability();
}

void SimulatedSound::returnService() {
    const Guard guard(graph_->mutex);
    graph_->isAvailable = true;
    graph_->tellAvailability();
    if (graph_->defaultOutput != 0) {
        graph_->tellDefaultOutput();
    }
}

AudioObjectID SimulatedSound::play(std::int32_t pid, Waveform signal) {
    const Guard guard(graph_->mutex);
    ProcessState* player = graph_->processOfPid(pid);
    if (player == nullptr) {
        player = &graph_->makeProcess(pid);
    }
    player->signal = std::move(signal);
    player->playing = true;
    return player->id;
}

AudioObjectID SimulatedSound::addProcess(std::int32_t pid) {
    const Guard guard(graph_->mutex);
    return graph_->makeProcess(pid).id;
}

void SimulatedSound::playProcess(AudioObjectID process, Waveform signal) {
    const Guard guard(graph_->mutex);
    if (ProcessState* player = graph_->process(process)) {
        player->signal = std::move(signal);
        player->playing = true;
    }
}

void SimulatedSound::pause(std::int32_t pid) {
    const Guard guard(graph_->mutex);
    for (ProcessState& player : graph_->processes) {
        player.playing = player.playing && player.pid != pid;
    }
}

void SimulatedSound::pauseProcess(AudioObjectID process) {
    const Guard guard(graph_->mutex);
    if (ProcessState* player = graph_->process(process)) {
        player->playing = false;
    }
}

void SimulatedSound::endProcess(std::int32_t pid) {
    const Guard guard(graph_->mutex);
    std::erase_if(graph_->processes, [&](const ProcessState& item) { return item.pid == pid; });
}

void SimulatedSound::addHelper(std::int32_t pid, std::int32_t helper) {
    const Guard guard(graph_->mutex);
    graph_->leaderOfHelper[helper] = pid;
}

std::vector<float> SimulatedSound::heard(AudioObjectID device, std::size_t channel) const {
    const Guard guard(graph_->mutex);
    const DeviceState* found = graph_->device(device);
    if (found == nullptr || channel < 1 || channel > found->heard.size()) {
        return {};
    }
    return found->heard[channel - 1];
}

void SimulatedSound::forgetHeard() {
    const Guard guard(graph_->mutex);
    for (DeviceState& device : graph_->devices) {
        device.heard.clear();
    }
}

void SimulatedSound::refuse(Operation operation, Status status, AudioObjectID object) {
    const Guard guard(graph_->mutex);
    graph_->refusals.refuse(operation, status, object);
}

void SimulatedSound::allow(Operation operation, AudioObjectID object) {
    const Guard guard(graph_->mutex);
    graph_->refusals.allow(operation, object);
}

void SimulatedSound::setTapBuffers(TapBuffers buffers) {
    const Guard guard(graph_->mutex);
    graph_->tapBuffers = buffers;
}

void SimulatedSound::setMixdownDivided(bool divided) {
    const Guard guard(graph_->mutex);
    graph_->mixdownDivided = divided;
}

void SimulatedSound::delayCaptures(std::int64_t cycles) {
    const Guard guard(graph_->mutex);
    graph_->delayedCaptureCycles = cycles;
}

void SimulatedSound::skipOutputs(std::int64_t cycles) {
    const Guard guard(graph_->mutex);
    graph_->skippedOutputCycles = cycles;
}

void SimulatedSound::standStill(std::int64_t cycles) {
    const Guard guard(graph_->mutex);
    graph_->standstillCycles = cycles;
}

void SimulatedSound::setClockSkew(AudioObjectID device, double ppm) {
    const Guard guard(graph_->mutex);
    if (DeviceState* found = graph_->device(device)) {
        found->clock.setSkew(ppm);
    }
}

void SimulatedSound::setBlockFrames(std::int64_t frames) {
    const Guard guard(graph_->mutex);
    graph_->blockFrames = frames;
}

std::int64_t SimulatedSound::blockFrames() const {
    const Guard guard(graph_->mutex);
    return graph_->blockFrames;
}

void SimulatedSound::setRate(double rateHz) {
    const Guard guard(graph_->mutex);
    graph_->rateHz = rateHz;
}

std::chrono::nanoseconds SimulatedSound::cyclePeriod() const {
    const Guard guard(graph_->mutex);
    const std::chrono::duration<double> period{static_cast<double>(graph_->blockFrames) /
                                               graph_->rateHz};
    return std::chrono::round<std::chrono::nanoseconds>(period);
}

void SimulatedSound::runCycle() {
    const Guard guard(graph_->mutex);
    graph_->runCycle();
}

void SimulatedSound::watchCallbacks(std::function<void()> entered, std::function<void()> left) {
    const Guard guard(graph_->mutex);
    graph_->callbackEntered = std::move(entered);
    graph_->callbackLeft = std::move(left);
}

SimulatedSound::Census SimulatedSound::census() const {
    const Guard guard(graph_->mutex);
    const auto running = [](auto& items, auto isRunning) {
        return static_cast<std::size_t>(std::ranges::count_if(items, isRunning));
    };
    return {
        .taps = graph_->taps.size(),
        .aggregates = graph_->aggregates.size(),
        .ioProcs = graph_->ioProcs.size(),
        .runningIOProcs =
            running(graph_->ioProcs, [](const IOProcState& item) { return item.startedAs != 0; }),
        .units = graph_->outputUnits.size() + graph_->inputUnits.size(),
        .runningUnits = running(graph_->outputUnits,
                                [](const OutputUnitState* item) { return item->running; }) +
                        running(graph_->inputUnits,
                                [](const InputUnitState* item) { return item->startedAs != 0; }),
        .wrongReleases = graph_->wrongReleases,
    };
}

std::uint32_t SimulatedSound::requestedBufferFrames(AudioObjectID device) const {
    const Guard guard(graph_->mutex);
    const DeviceState* found = graph_->device(device);
    return found == nullptr ? 0 : found->requestedFrames;
}

std::vector<TapDescription> SimulatedSound::tapDescriptions() const {
    const Guard guard(graph_->mutex);
    return graph_->tapHistory;
}

std::vector<AggregateDescription> SimulatedSound::aggregateDescriptions() const {
    const Guard guard(graph_->mutex);
    return graph_->aggregateHistory;
}

void SimulatedSound::forgetDescriptions() {
    const Guard guard(graph_->mutex);
    graph_->tapHistory.clear();
    graph_->aggregateHistory.clear();
}

} // namespace velmora
