// Bindings.h: objects of the daemon whose details we follow.
#pragma once

#include "platform/pipewire/Connection.h"
#include "platform/pipewire/Handles.h"

#include <functional>
#include <memory>
#include <string>

namespace velmora::pipewire {

using Changed = std::function<void()>;

/// Follows a node's properties, state and material. Loop: locked.
[[nodiscard]] std::unique_ptr<Binding>
bindNode(pw_registry* registry, GlobalId id, Serial serial, Graph& graph, Changed changed);

/// Follows a client's properties. Loop: locked.
[[nodiscard]] std::unique_ptr<Binding>
bindClient(pw_registry* registry, GlobalId id, Serial serial, Graph& graph, Changed changed);

/// Follows a metadata object; `proxy` receives what requests are made on. Loop: locked.
[[nodiscard]] std::unique_ptr<Binding> bindMetadata(pw_registry* registry,
                                                    GlobalId id,
                                                    const std::string& name,
                                                    Graph& graph,
                                                    Changed changed,
                                                    pw_proxy*& proxy);

} // namespace velmora::pipewire
