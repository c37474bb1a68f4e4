// GivenBackStreams.h: streams that were given their targets back a moment ago.
#pragma once

#include "platform/pipewire/keep/MutedStream.h"
#include "platform/pipewire/view/Graph.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// Whoever chooses a device for a stream while we give it back, and is a moment earlier, has his
/// choice replaced by our orders. It is heard all the same, before they are: then it is told once
/// more.
///
/// Threads: any, with the control loop's lock.
class GivenBackStreams {
public:
    using Clock = std::chrono::steady_clock;

    explicit GivenBackStreams(const Graph& graph) : graph_(graph) {}

    /// The session manager was told these about the stream; they have not arrived yet.
    void add(Serial stream, std::vector<TargetOrder> orders, Clock::time_point now);
    /// It is muted again.
    void remove(Serial stream) { streams_.erase(stream); }
    void clear() { streams_.clear(); }

    /// To be called for every entry of the session's metadata as it comes; the graph has it.
    /// Returns what is to be told of the stream once more, and counts it as told.
    [[nodiscard]] std::optional<TargetOrder>
    hear(GlobalId stream, const std::string& key, Clock::time_point now);

    /// All that was told has arrived, or never will.
    [[nodiscard]] bool isSettled(Clock::time_point now) const;

private:
    struct Orders {
        std::vector<TargetOrder> awaited;            ///< in the order in which they were told
        std::map<std::string, TargetOrder> chosen{}; ///< by somebody else since, by key
        Clock::time_point toldAt;
    };
    std::optional<TargetOrder> hear(GlobalId stream, const char* key, Orders& orders);

    const Graph& graph_;
    std::map<Serial, Orders> streams_;
};

} // namespace velmora::pipewire
