// Connection.h: one connection to the daemon that keeps a Graph true.
#pragma once

#include "platform/Status.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/view/Graph.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace velmora::pipewire {

/// What one bound object (node, client, metadata) tells.
class Binding {
public:
    virtual ~Binding() = default;
};

class MetadataBinding;

/// The control connection: object list, metadata, and requests for new objects.
///
/// Threads: any, with the loop's lock; events come on the loop's thread.
class Connection {
public:
    struct Events {
        std::function<void()> changed; ///< the graph changed
        std::function<void()> clientCame;
        /// One entry of the session's metadata; the graph has it by now.
        std::function<void(GlobalId subject, const std::string& key)> metadataTold;
        std::function<void()> managerLost; ///< the session's metadata, which it owns, has gone
        std::function<void()> lost; ///< nothing answers any more; `close` is still to be called
    };

    Connection(pw_loop* loop, Graph& graph, Events events);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Errors: the status; the connection stays closed.
    Status open();
    /// Forgets the daemon and empties the graph. Not from inside a callback of this connection.
    void close();

    [[nodiscard]] bool isOpen() const { return core_ != nullptr; }
    /// Makes `isListed` false until the daemon has seen every request so far.
    void startRoundTrip();
    /// True once everything that existed when the connection was opened is in the graph.
    [[nodiscard]] bool isListed() const { return roundTrips_ == 0 && isOpen(); }

    /// Calls `then`, on the loop's thread, once the daemon has acted on every request so far; never
    /// when the connection closes before.
    void whenSeen(std::function<void()> then);

    /// Asks for a sign of life; `isAnswered` is false until it comes.
    void probe();
    [[nodiscard]] bool isAnswered() const { return probeSequence_ == 0; }

    /// Reads the session manager's metadata once more; the graph changes when all of it is here.
    void readSessionMetadataAgain();

    /// Null when the request could not even be sent. The object goes with the handle, unless its
    /// properties say that it lingers.
    [[nodiscard]] ProxyHandle create(const char* factory,
                                     const char* type,
                                     std::uint32_t version,
                                     const Properties& properties);
    /// A handle on an object that is there already. Null when there is no connection.
    [[nodiscard]] ProxyHandle bindGlobal(GlobalId id, const char* type, std::uint32_t version);
    /// Asks the daemon to remove an object, whoever made it.
    void destroyGlobal(GlobalId id);
    /// Writes to the session manager's metadata; none removes the key.
    void setSessionMetadata(GlobalId subject,
                            const std::string& key,
                            const std::optional<MetadataValue>& value);

private:
    void onGlobal(GlobalId id, const std::string& type, const Properties& properties);
    void onMetadata(GlobalId id, const std::string& name);
    void onGlobalRemove(GlobalId id);
    void onDone(int sequence);
    void onError(std::uint32_t id, int result);
    void bind(GlobalId id, std::unique_ptr<Binding> binding);

    pw_loop* loop_;
    Graph& graph_;
    Events events_;
    ContextHandle context_;
    CoreHandle core_;
    std::unique_ptr<Hook> coreHook_;
    ProxyHandle registry_;
    std::unique_ptr<Hook> registryHook_;
    std::map<GlobalId, std::unique_ptr<Binding>> bindings_;
    std::unique_ptr<MetadataBinding> sessionMetadata_;
    std::unique_ptr<MetadataBinding> nextSessionMetadata_; // being read
    GlobalId sessionMetadataId_ = 0;
    int nextSequence_ = 0; // of the round trip that ends the reading
    int roundTrips_ = 0;   // still to come until the first list is complete
    int sequence_ = 0;     // of the round trip under way
    int probeSequence_ = 0;
    std::map<int, std::function<void()>> awaited_; // by sequence
};

} // namespace velmora::pipewire
