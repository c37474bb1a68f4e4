// Bindings.h: objects of the daemon whose details we follow.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Handles.h"

#include <functional>
#include <memory>
#include <string>

namespace velmora::pipewire {

using Changed = std::function<void()>;
/// One entry of a metadata object; the graph has it by now.
using MetadataTold = std::function<void(GlobalId subject, const std::string& key)>;

/// Follows a node's properties, state and material. Threads: any, with the loop's lock.
[[nodiscard]] std::unique_ptr<Binding>
bindNode(pw_registry* registry, GlobalId id, Serial serial, Graph& graph, Changed changed);

/// Follows a client's properties. Threads: any, with the loop's lock.
[[nodiscard]] std::unique_ptr<Binding>
bindClient(pw_registry* registry, GlobalId id, Serial serial, Graph& graph, Changed changed);

/// Follows a metadata object.
class MetadataBinding : public Binding {
public:
    /// What requests are made on.
    [[nodiscard]] virtual pw_proxy* proxy() const = 0;
    /// Puts all that was collected in the place of what the graph had, and follows from now on.
    virtual void publish() = 0;
};

enum class MetadataStart {
    following, ///< every entry goes to the graph as it comes
    collecting ///< as well; at `publish`, what did not come goes from the graph
};

/// Threads: any, with the loop's lock.
[[nodiscard]] std::unique_ptr<MetadataBinding> bindMetadata(pw_registry* registry,
                                                            GlobalId id,
                                                            const std::string& name,
                                                            MetadataStart start,
                                                            Graph& graph,
                                                            MetadataTold told,
                                                            Changed changed);

} // namespace velmora::pipewire
