// One cycle of the simulated machine: captures, then outputs, then what the devices play is kept.
#include "platform/simulated/SoundGraph.h"

#include <algorithm>
#include <functional>
#include <span>

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
    blockFrames = nextBlockFrames();
    for (DeviceState& item : devices) {
        item.clock.beginCycle(blockFrames);
        item.playing = silentBlock(item.channels(Scope::output), item.clock.blocks() * blockFrames);
    }
    if (standstillCycles == 0) {
        runCallbacks();
    } else if (isAnythingStarted()) {
        ++missedCycles;
    }
    playApplications();
    keepHeard();
    for (DeviceState& item : devices) {
        item.clock.endCycle();
    }
    frame += blockFrames;
    for (std::int64_t* const left :
         {&delayedCaptureCycles, &skippedOutputCycles, &standstillCycles}) {
        *left = std::max<std::int64_t>(*left - 1, 0);
    }
}

void SoundGraph::runCallbacks() {
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
}

void SoundGraph::runCaptures() {
    std::map<std::uint64_t, std::function<void()>> inOrderOfStart;
    for (const TapState* tap : taps) {
        if (tap->startedAs != 0) {
            inOrderOfStart[tap->startedAs] = [this, tap] { runTap(*tap); };
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

void SoundGraph::runTap(const TapState& tap) {
    const DeviceClock clock = applicationsClock();
    for (std::int64_t block = 0; block < clock.blocks(); ++block) {
        std::vector<float> samples = tapBlock(tap, frame + clock.ahead(block));
        const TapBlock handed{.data = tapBlocks == TapBlocks::null ? nullptr : samples.data(),
                              .samples = tapBlocks == TapBlocks::filled
                                             ? static_cast<std::int64_t>(samples.size())
                                             : 0};
        callBack([&] { tap.callback(handed); });
    }
}

DeviceClock SoundGraph::applicationsClock() {
    const DeviceState* speakers = device(defaultOutput);
    return speakers == nullptr ? DeviceClock{} : speakers->clock;
}

std::vector<float> SoundGraph::tapBlock(const TapState& tap, std::int64_t first) {
    std::vector<float> block(static_cast<std::size_t>(blockFrames) * stereoChannels);
    const ProcessState* player = process(tap.about.process);
    if (player == nullptr || !player->playing) {
        return block;
    }
    for (std::size_t index = 0; index < block.size(); ++index) {
        const auto at = first + static_cast<std::int64_t>(index / stereoChannels);
        block[index] = player->signal(at, index % stereoChannels) / tap.divisor;
    }
    return block;
}

void SoundGraph::runInput(const InputUnitState& unit) {
    const DeviceState* source = device(unit.device);
    if (source == nullptr) {
        return;
    }
    for (std::int64_t block = 0; block < source->clock.blocks(); ++block) {
        ChannelBlock sound;
        for (std::size_t at = 0; at < unit.count; ++at) {
            sound.push_back(channelOf(
                source->input, unit.first + at, frame + source->clock.ahead(block), blockFrames));
        }
        const std::vector<float*> channels = pointersTo(sound);
        const std::vector<const float*> readable(channels.begin(), channels.end());
        callBack([&] { unit.receive(blockFrames, readable); });
    }
}

void SoundGraph::runOutputs() {
    for (const OutputUnitState* unit : outputUnits) {
        if (unit->startedAs != 0) {
            runOutput(*unit);
        }
    }
}

void SoundGraph::runOutput(const OutputUnitState& unit) {
    DeviceState* target = device(unit.device);
    if (target == nullptr) {
        return;
    }
    std::vector<std::int32_t> map = unit.map;
    if (map.empty()) {
        map = {0, 1};
    }
    for (std::int64_t block = 0; block < target->clock.blocks(); ++block) {
        const ChannelBlock sound = rendered(unit);
        for (std::size_t channel = 0; channel < map.size(); ++channel) {
            if (map[channel] >= 0) {
                playInto(*target,
                         channel,
                         sound[static_cast<std::size_t>(map[channel])],
                         block * blockFrames);
            }
        }
    }
}

ChannelBlock SoundGraph::rendered(const OutputUnitState& unit) {
    ChannelBlock sound = silentBlock(stereoChannels, blockFrames);
    const std::vector<float*> channels = pointersTo(sound);
    callBack([&] { unit.render(blockFrames, channels); });
    return sound;
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
            playInto(*speakers,
                     channel,
                     channelOf(player.signal,
                               channel,
                               frame + speakers->clock.ahead(0),
                               speakers->clock.blocks() * blockFrames));
        }
    }
}

bool SoundGraph::isMuted(AudioObjectID process) const {
    return std::ranges::any_of(taps, [&](const TapState* tap) {
        return tap->about == TapRequest{process, ApplicationTaps::Mute::whileTapped};
    });
}

void SoundGraph::playInto(DeviceState& target,
                          std::size_t channel,
                          const std::vector<float>& samples,
                          std::int64_t from) {
    if (channel < target.playing.size()) {
        const auto heard =
            std::span(target.playing[channel])
                .subspan(std::min(static_cast<std::size_t>(from), target.playing[channel].size()));
        // Adds as much as fits: a part of an aggregate may move fewer blocks than the whole.
        std::ranges::transform(heard, samples, heard.begin(), std::plus{});
    }
    for (const std::string& part : target.partUIDs) {
        if (DeviceState* subDevice = deviceByUID(part)) {
            playInto(*subDevice, channel, samples, from);
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
