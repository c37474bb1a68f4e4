// ProcessDirectory.h: groups output streams by the application that plays them.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/ProgramClaim.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/ObjectIds.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// True for a node that carries an application's sound to the outside.
[[nodiscard]] bool isOutputStream(const Node& node);

/// One process object per running application that has had an output stream. It stays until the
/// application's last client has left, also while no stream of it exists. When the same process
/// connects and plays again, it is the same object: a tap of it hears it again.
///
/// Which process a client is, and which application that belongs to, is somebody else's knowledge
/// and may arrive late: `unresolved` asks, `resolve` answers; until then the client belongs to
/// none. A client whose process cannot be told is an application of its own, under a stand-in's
/// number.
///
/// Threads: one at a time.
class ProcessDirectory {
public:
    /// The leading process of an application.
    struct Leader {
        std::int32_t pid{};
        std::uint64_t start{}; ///< when it started, in any unit; 0 = unknown
    };

    /// What a client turned out to be.
    struct Owner {
        ProgramIdentity program; ///< its process is 0 when nobody can tell
        Leader leader{};         ///< of that process
    };

    ProcessDirectory(ObjectIds& ids, std::int32_t ownPid) : ids_(ids), ownPid_(ownPid) {}

    /// Follows the graph. To be called after every change of it.
    void update(const Graph& graph);

    using Claims = std::map<Serial, ProgramClaim>; // by client
    [[nodiscard]] const Claims& unresolved() const { return unresolved_; }
    /// The first answer counts; one to what is not, or no longer, `unresolved` is passed over.
    void resolve(Serial client, const ProgramClaim& claim, const Owner& owner);

    /// In the order in which the applications first played.
    [[nodiscard]] std::vector<AudioObjectID> objects() const;
    /// The leading process; 0 for an unknown object.
    [[nodiscard]] std::int32_t pid(AudioObjectID object) const;
    /// 0 when no application with this leading process has played.
    [[nodiscard]] AudioObjectID objectOf(std::int32_t leader) const;
    /// 0 as long as the client's application is unknown, or has not played.
    [[nodiscard]] AudioObjectID objectOfClient(Serial client) const;
    /// It is a connection of this program.
    [[nodiscard]] bool isOurs(const Client& client) const;
    /// What the application calls itself; empty when it does not say, or never played.
    [[nodiscard]] std::string name(std::int32_t leader) const;
    /// The installed application that a stand-in is known to be; empty when nobody knows.
    [[nodiscard]] std::string bundleID(std::int32_t leader) const;
    /// The output streams that exist now, oldest first.
    [[nodiscard]] const std::vector<Serial>& streams(AudioObjectID object) const;

private:
    struct Process {
        Leader leader;
        std::string name;
        std::string bundleID;
        std::vector<Serial> streams;
        bool isHere{}; ///< a client of it is connected
    };
    [[nodiscard]] const Process* here(AudioObjectID object) const;
    struct KnownOwner {
        ProgramClaim claim; // the answer is about this one
        Owner owner;
    };
    [[nodiscard]] const Owner* ownerOf(Serial client) const;
    void forgetOwners(const Graph& graph);
    void ask(const Client& client);
    AudioObjectID objectFor(Leader leader);
    void forgetOldest();

    ObjectIds& ids_;
    std::int32_t ownPid_;
    std::map<AudioObjectID, Process> processes_; // ids are counted up: oldest first
    std::map<Serial, KnownOwner> owners_;        // by client
    Claims unresolved_;
    std::int32_t nextStandIn_ = firstStandIn;
};

} // namespace velmora::pipewire
