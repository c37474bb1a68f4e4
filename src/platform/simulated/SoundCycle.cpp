// One cycle of the simulated machine: captures, then outputs, then what the devices play is kept.
#include "platform/simulated/SoundGraph.h"

#include <algorithm>
#include <numeric>

namespace velmora {
namespace {

constexpr std::size_t stereoChannels = 2;

std::vector<float*> pointersTo(ChannelBlock& block) {
    std::vector<float*> pointers;
    for (auto& channel : block) {
        pointers.push_back(channel.data());
    }
    return pointers;
}

ChannelBlock silentBlock(std::size_t channels, std::int64_t frames) {
    return {channels, std::vector<float>(static_cast<std::size_t>(frames))};
}

std::vector<float>
channelOf(const Waveform& signal, std::size_t channel, std::int64_t first, std::int64_t frames) {
    std::vector<float> samples(static_cast<std::size_t>(frames));
    for (std::size_t index = 0; index < samples.size(); ++index) {
        samples[index] = signal(first + static_cast<std::int64_t>(index), channel);
    }
    return samples;
}

} // namespace

void SoundGraph::runCycle() {
    for (DeviceState& item : devices) {
        item.playing = silentBlock(item.channels(Scope::output), blockFrames);
    }
    const bool capturesAreLate = delayedCaptureCycles > 0;
    if (!capturesAreLate) {
        runCaptures();
    }
    if (skippedOutputCycles == 0) {
        runOutputs();
    }
    if (capturesAreLate) {
        runCaptures();
    }
    playApplications();
    keepHeard();
    frame += blockFrames;
    delayedCaptureCycles = std::max<std::int64_t>(delayedCaptureCycles - 1, 0);
    skippedOutputCycles = std::max<std::int64_t>(skippedOutputCycles - 1, 0);
}

void SoundGraph::runCaptures() {
    std::map<std::uint64_t, std::function<void()>> inOrderOfStart;
    for (const IOProcState& proc : ioProcs) {
        if (proc.startedAs != 0) {
            inOrderOfStart[proc.startedAs] = [&] { runIOProc(proc); };
        }
    }
    for (const InputUnitState* unit : inputUnits) {
        if (unit->startedAs != 0) {
            inOrderOfStart[unit->startedAs] = [this, unit] { runInput(*unit); };
        }
    }
    for (const auto& [order, run] : inOrderOfStart) {
        run();
    }
}

void SoundGraph::runIOProc(const IOProcState& proc) {
    const AggregateState* device = aggregate(proc.device);
    if (device == nullptr) {
        return;
    }
    std::vector<std::vector<float>> blocks;
    for (const std::string& uuid : device->about.taps) {
        if (const TapState* tap = tapByUUID(uuid)) {
            blocks.push_back(tapBlock(*tap));
        }
    }
    std::vector<IOBuffer> buffers;
    buffers.reserve(blocks.size());
    for (std::vector<float>& block : blocks) {
        buffers.push_back(
            {tapBuffers == TapBuffers::null ? nullptr : block.data(),
             tapBuffers == TapBuffers::filled ? static_cast<std::int64_t>(block.size()) : 0});
    }
    callBack([&] { proc.callback(buffers); });
}

std::vector<float> SoundGraph::tapBlock(const TapState& tap) {
    std::vector<float> block(static_cast<std::size_t>(blockFrames) * stereoChannels);
    const ProcessState* player = process(tap.about.process);
    if (player == nullptr || !player->playing) {
        return block;
    }
    for (std::size_t index = 0; index < block.size(); ++index) {
        const auto at = frame + static_cast<std::int64_t>(index / stereoChannels);
        block[index] = player->signal(at, index % stereoChannels) / tap.divisor;
    }
    return block;
}

void SoundGraph::runInput(const InputUnitState& unit) {
    const DeviceState* source = device(unit.device);
    if (source == nullptr) {
        return;
    }
    ChannelBlock block;
    for (std::size_t channel = 0; channel < source->channels(Scope::input); ++channel) {
        block.push_back(channelOf(source->input, channel, frame, blockFrames));
    }
    const std::vector<float*> channels = pointersTo(block);
    const std::vector<const float*> readable(channels.begin(), channels.end());
    callBack([&] { unit.receive(blockFrames, readable); });
}

void SoundGraph::runOutputs() {
    for (const OutputUnitState* unit : outputUnits) {
        if (unit->running) {
            runOutput(*unit);
        }
    }
}

void SoundGraph::runOutput(const OutputUnitState& unit) {
    DeviceState* target = device(unit.device);
    if (target == nullptr) {
        return;
    }
    ChannelBlock block = silentBlock(stereoChannels, blockFrames);
    const std::vector<float*> channels = pointersTo(block);
    callBack([&] { unit.render(blockFrames, channels); });
    std::vector<std::int32_t> map = unit.map;
    if (map.empty()) {
        map = {0, 1};
    }
    for (std::size_t channel = 0; channel < map.size(); ++channel) {
        if (map[channel] >= 0) {
            playInto(*target, channel, block[static_cast<std::size_t>(map[channel])]);
        }
    }
}

void SoundGraph::playApplications() {
    DeviceState* speakers = device(defaultOutput);
    if (speakers == nullptr) {
        return;
    }
    for (const ProcessState& player : processes) {
        if (!player.playing || isMuted(player.id)) {
            continue;
        }
        for (std::size_t channel = 0; channel < stereoChannels; ++channel) {
            playInto(*speakers, channel, channelOf(player.signal, channel, frame, blockFrames));
        }
    }
}

bool SoundGraph::isMuted(AudioObjectID process) const {
    return std::ranges::any_of(taps, [&](const TapState& tap) {
        return tap.about.process == process && tap.about.mute == MuteBehavior::mutedWhenTapped;
    });
}

void SoundGraph::playInto(DeviceState& target,
                          std::size_t channel,
                          const std::vector<float>& samples) {
    if (channel < target.playing.size()) {
        std::ranges::transform(
            target.playing[channel], samples, target.playing[channel].begin(), std::plus{});
    }
    for (const std::string& part : target.partUIDs) {
        if (DeviceState* subDevice = deviceByUID(part)) {
            playInto(*subDevice, channel, samples);
        }
    }
}

void SoundGraph::keepHeard() {
    for (DeviceState& item : devices) {
        item.heard.resize(item.playing.size());
        for (std::size_t channel = 0; channel < item.playing.size(); ++channel) {
            auto& kept = item.heard[channel];
            kept.insert(kept.end(), item.playing[channel].begin(), item.playing[channel].end());
        }
    }
}

void SoundGraph::callBack(const std::function<void()>& callback) const {
    if (callbackEntered) {
        callbackEntered();
    }
    callback();
    if (callbackLeft) {
        callbackLeft();
    }
}

} // namespace velmora
