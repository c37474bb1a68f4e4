// RouteMemory.h: knows what the session manager has stored of where streams play.
#pragma once

#include "platform/pipewire/view/Graph.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace velmora::pipewire {

/// The session manager tells nobody what it has stored; it writes it to a file of its own, a second
/// after the last change. What was chosen since is seen in the targets that streams are given.
///
/// Threads: any, with the control loop's lock. Reads a file of a few kilobytes.
class RouteMemory {
public:
    using Clock = std::chrono::steady_clock;

    /// @param folder  where the session manager keeps its files
    explicit RouteMemory(const Graph& graph, std::filesystem::path folder = managerFolder())
        : graph_(graph), folder_(std::move(folder)) {}

    /// To be called after every change of the graph.
    void follow(Clock::time_point now);
    /// To be called for every entry about a stream as it comes: the next may be another already.
    /// @param key  `targetObjectKey` or `targetNodeKey`
    void hear(const Node& stream, const char* key, Clock::time_point now);
    /// We tell the session manager this ourselves: when it is heard, it is nobody's choice.
    void expect(Serial stream, const char* key, const std::string& value, Clock::time_point now);
    /// The connection has gone, and the graph's objects with it.
    void clear();

    /// `node.name` of the device that is stored for streams like this one, which need not be there;
    /// empty when none is. Where the files cannot be read: the stream's own target.
    [[nodiscard]] std::string device(const Node& stream, Clock::time_point now) const;

    /// As the session manager's file has it, which is some seconds behind; empty when none is
    /// stored, no value when the files cannot be read.
    [[nodiscard]] std::optional<std::string> written(const RouteKey& key) const;

    /// The session manager acts later on what it has told everybody of (WirePlumber 0.5).
    [[nodiscard]] bool isManagerQueueing() const;

    /// How far behind the file is, or a little more on a busy machine.
    static constexpr std::chrono::seconds writtenWithin{3};

    /// What the user has chosen for a stream of the kind just now; none when nothing.
    [[nodiscard]] std::optional<std::string> lastChoice(const RouteKey& key,
                                                        Clock::time_point now) const;

    [[nodiscard]] static std::filesystem::path managerFolder();

private:
    struct Choice {
        std::string device;
        Clock::time_point time;
    };
    using Place = std::pair<Serial, const char*>; ///< a stream and which of its keys

    struct Own {
        std::string value;
        Clock::time_point time;
    };
    [[nodiscard]] bool
    isOwn(const Place& place, const std::string& value, Clock::time_point now) const;

    const Graph& graph_;
    std::filesystem::path folder_;
    bool isFirst_ = true; // what is there already may be of any age
    std::map<Place, std::string> targets_;
    std::map<Place, Own> own_;
    std::map<RouteKey, Choice> choices_;
};

} // namespace velmora::pipewire
