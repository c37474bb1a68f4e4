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
    graph_->tellChanged();
    if (id == graph_->defaultOutput && graph_->isAvailable) {
        graph_->tellDefaultOutput();
    }
    return id;
}

void SimulatedSound::removeDevice(AudioObjectID device) {
    const Guard guard(graph_->mutex);
    std::erase_if(graph_->devices, [&](const DeviceState& item) { return item.id == device; });
    graph_->tellChanged();
}

void SimulatedSound::setInput(AudioObjectID device, Waveform signal) {
    const Guard guard(graph_->mutex);
    if (DeviceState* found = graph_->device(device)) {
        found->input = std::move(signal);
    }
}

void SimulatedSound::setInputChannels(AudioObjectID device, std::uint32_t channels) {
    const Guard guard(graph_->mutex);
    if (DeviceState* found = graph_->device(device)) {
        found->about.inputs = {channels};
    }
    graph_->tellChanged();
}

void SimulatedSound::setVolume(AudioObjectID device, const DeviceVolume& volume) {
    const Guard guard(graph_->mutex);
    if (DeviceState* found = graph_->device(device)) {
        found->volume = volume;
        graph_->tellChanged();
    }
}

void SimulatedSound::setDefaultOutput(AudioObjectID device) {
    const Guard guard(graph_->mutex);
    const bool differs = std::exchange(graph_->defaultOutput, device) != device;
    if (!differs || !graph_->isAvailable) {
        return;
    }
    if (graph_->device(device) == nullptr) {
        graph_->tellChanged();
    } else {
        graph_->tellDefaultOutput();
    }
}

void SimulatedSound::loseService() {
    const Guard guard(graph_->mutex);
    graph_->loseService();
    graph_->tellChanged();
}

void SimulatedSound::pauseService() {
    const Guard guard(graph_->mutex);
    graph_->isAvailable = false;
    graph_->tellChanged();
}

void SimulatedSound::returnService() {
    const Guard guard(graph_->mutex);
    graph_->isAvailable = true;
    graph_->tellChanged();
    if (graph_->defaultOutput != 0) {
        graph_->tellDefaultOutput();
    }
}

void SimulatedSound::removeOurNode() {
    const Guard guard(graph_->mutex);
    graph_->killStarted();
    graph_->tellChanged();
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
    if (std::erase_if(graph_->processes,
                      [&](const ProcessState& item) { return item.pid == pid; }) > 0) {
        graph_->tellChanged();
    }
    graph_->endRecordings(pid);
}

void SimulatedSound::record(std::int32_t pid, AudioObjectID device) {
    const Guard guard(graph_->mutex);
    graph_->recordings.push_back({.pid = pid, .device = device});
    graph_->tellChanged();
}

void SimulatedSound::measure(std::int32_t pid, AudioObjectID device) {
    const Guard guard(graph_->mutex);
    graph_->recordings.push_back({.pid = pid, .device = device, .isMeter = true});
}

void SimulatedSound::stopRecording(std::int32_t pid) {
    const Guard guard(graph_->mutex);
    graph_->endRecordings(pid);
}

void SimulatedSound::setSound(std::int32_t pid, ApplicationSound sound) {
    const Guard guard(graph_->mutex);
    if (ProcessState* const process = graph_->processOfPid(pid)) {
        process->sound = sound;
        graph_->tellChanged();
    }
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

std::size_t SimulatedSound::refusalsGiven(Operation operation) const {
    const std::scoped_lock guard(graph_->mutex);
    return graph_->refusals.given(operation);
}

void SimulatedSound::allow(Operation operation, AudioObjectID object) {
    const Guard guard(graph_->mutex);
    graph_->refusals.allow(operation, object);
}

void SimulatedSound::setTapBlocks(TapBlocks blocks) {
    const Guard guard(graph_->mutex);
    graph_->tapBlocks = blocks;
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
    graph_->wantedFrames = frames;
}

std::int64_t SimulatedSound::blockFrames() const {
    const Guard guard(graph_->mutex);
    return graph_->nextBlockFrames();
}

std::uint32_t SimulatedSound::leastBlockFrames() const {
    const Guard guard(graph_->mutex);
    return static_cast<std::uint32_t>(graph_->leastFrames);
}

void SimulatedSound::setRealTime(bool isRealTime) {
    const Guard guard(graph_->mutex);
    graph_->isRealTime = isRealTime;
}

void SimulatedSound::setRate(double rateHz) {
    const Guard guard(graph_->mutex);
    graph_->rateHz = rateHz;
    for (DeviceState& device : graph_->devices) {
        device.about.rateHz = rateHz;
    }
    graph_->tellChanged();
}

std::chrono::nanoseconds SimulatedSound::cyclePeriod() const {
    const Guard guard(graph_->mutex);
    const std::chrono::duration<double> period{static_cast<double>(graph_->nextBlockFrames()) /
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
    const auto running = [](const auto& units) {
        return static_cast<std::size_t>(std::ranges::count_if(
            units, [](const UnitState* unit) { return unit->startedAs != 0; }));
    };
    return {
        .taps = graph_->taps.size(),
        .sinks = graph_->sinks.size(),
        .units = graph_->outputUnits.size() + graph_->inputUnits.size(),
        .runningUnits = running(graph_->outputUnits) + running(graph_->inputUnits),
        .wrongReleases = graph_->wrongReleases,
    };
}

std::uint32_t SimulatedSound::requestedBufferFrames(AudioObjectID device) const {
    const Guard guard(graph_->mutex);
    const DeviceState* found = graph_->device(device);
    return found == nullptr ? 0 : found->requestedFrames;
}

std::vector<TapRequest> SimulatedSound::openedTaps() const {
    const Guard guard(graph_->mutex);
    return graph_->openedTaps;
}

std::vector<PublicSink> SimulatedSound::createdSinks() const {
    const Guard guard(graph_->mutex);
    return graph_->createdSinks;
}

void SimulatedSound::forgetRequests() {
    const Guard guard(graph_->mutex);
    graph_->openedTaps.clear();
    graph_->createdSinks.clear();
}

} // namespace velmora
