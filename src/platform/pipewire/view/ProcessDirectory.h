// ProcessDirectory.h: groups output streams by the application that plays them.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/ObjectIds.h"

#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace velmora::pipewire {

/// True for a node that carries an application's sound to the outside.
[[nodiscard]] bool isOutputStream(const Node& node);

/// One process object per running application that has had an output stream. It stays until the
/// application's last client has left, also while no stream of it exists. When the same process
/// connects and plays again, it is the same object: a tap of it hears it again.
///
/// Which application a process belongs to is somebody else's knowledge and may arrive late:
/// `unresolvedPids` asks, `resolve` answers; until then the process belongs to none.
///
/// Threads: one at a time.
class ProcessDirectory {
public:
    /// The leading process of an application.
    struct Leader {
        std::int32_t pid{};
        std::uint64_t start{}; ///< when it started, in any unit; 0 = unknown
    };

    ProcessDirectory(ObjectIds& ids, std::int32_t ownPid) : ids_(ids), ownPid_(ownPid) {}

    /// Follows the graph. To be called after every change of it.
    void update(const Graph& graph);

    [[nodiscard]] const std::set<std::int32_t>& unresolvedPids() const { return unresolved_; }
    void resolve(std::int32_t pid, Leader leader) { leaders_[pid] = leader; }

    /// In the order in which the applications first played.
    [[nodiscard]] std::vector<AudioObjectID> objects() const;
    /// The leading process; 0 for an unknown object.
    [[nodiscard]] std::int32_t pid(AudioObjectID object) const;
    /// 0 when no application with this leading process has played.
    [[nodiscard]] AudioObjectID objectOf(std::int32_t leader) const;
    /// What the application calls itself; empty when it does not say, or never played.
    [[nodiscard]] std::string name(std::int32_t leader) const;
    /// The output streams that exist now, oldest first.
    [[nodiscard]] const std::vector<Serial>& streams(AudioObjectID object) const;

private:
    struct Process {
        Leader leader;
        std::string name;
        std::vector<Serial> streams;
        bool isHere{}; ///< a client of it is connected
    };
    [[nodiscard]] const Process* here(AudioObjectID object) const;
    [[nodiscard]] Leader leaderOf(const Client& client) const;
    AudioObjectID objectFor(Leader leader);
    void forgetOldest();

    ObjectIds& ids_;
    std::int32_t ownPid_;
    std::map<AudioObjectID, Process> processes_; // ids are counted up: oldest first
    std::map<std::int32_t, Leader> leaders_;     // by pid
    std::set<std::int32_t> unresolved_;
};

} // namespace velmora::pipewire
