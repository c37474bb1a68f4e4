#include "platform/pipewire/keep/MuteSinks.h"

#include "platform/pipewire/view/Earliest.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace velmora::pipewire {

MuteSinks::MuteSinks(Connection& connection,
                     const Graph& graph,
                     std::function<std::string()> newName)
    : memory_(graph),
      writer_(
          connection, graph, memory_, newName, [this](const RouteKey& key) { will_.remove(key); }),
      givenBack_(graph), tools_{.connection = connection,
                                .graph = graph,
                                .will = will_,
                                .memory = memory_,
                                .writer = writer_,
                                .givenBack = givenBack_,
                                .newName = std::move(newName)} {
}

std::optional<MuteSinks::Clock::time_point>
MuteSinks::follow(const Mutes& wanted, const StreamsOf& streamsOf, Clock::time_point now) {
    memory_.follow(now);
    std::optional<Clock::time_point> comeAgain;
    for (const AudioObjectID process : wanted | std::views::values) {
        auto& sink = sinks_[process];
        if (!sink) {
            sink = std::make_unique<MuteSink>(tools_);
        }
        comeAgain = earliest(comeAgain, sink->follow(streamsOf(process), now));
    }
    return earliest(comeAgain, writer_.follow(now));
}

void MuteSinks::hear(GlobalId subject, const std::string& key, Clock::time_point now) {
    const Node* const stream = tools_.graph.nodeWithId(subject);
    for (const char* const one : {targetObjectKey, targetNodeKey}) {
        if (stream != nullptr && key == one) {
            memory_.hear(*stream, one, now);
            for (const auto& sink : sinks_ | std::views::values) {
                sink->hear(*stream, one, now);
            }
        }
    }
    if (const auto again = givenBack_.hear(subject, key, now)) {
        tools_.connection.setSessionMetadata(subject, again->key, again->value);
    }
}

std::optional<MuteSinks::Clock::time_point>
MuteSinks::keepOnly(const Mutes& wanted, const Mutes& ending, Clock::time_point now) {
    const auto processes = wanted | std::views::values;
    const MuteGrace::Processes asked(processes.begin(), processes.end());
    MuteGrace::Processes kept = asked;
    std::ranges::copy(ending | std::views::values, std::inserter(kept, kept.end()));
    const MuteGrace::Processes silent = grace_.follow(kept, now);
    std::erase_if(sinks_, [&](const auto& one) {
        const auto& [process, sink] = one;
        return !silent.contains(process) || (!asked.contains(process) && !sink->isSilencing());
    });
    return grace_.due();
}

std::set<AudioObjectID> MuteSinks::unsilenced() const {
    std::set<AudioObjectID> processes;
    for (const auto& [process, sink] : sinks_) {
        if (!sink->isSilencing()) {
            processes.insert(process);
        }
    }
    return processes;
}

void MuteSinks::forgetTargets() {
    givenBack_.clear();
    for (const auto& sink : sinks_ | std::views::values) {
        sink->forgetTargets();
    }
}

void MuteSinks::lose() {
    forgetTargets();
    grace_.clear();
    sinks_.clear();
    writer_.giveUp();
    memory_.clear();
}

void MuteSinks::clear() {
    grace_.clear();
    sinks_.clear();
    writer_.clear();
}

} // namespace velmora::pipewire
