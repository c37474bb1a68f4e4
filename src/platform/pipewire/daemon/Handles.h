// Handles.h: owners of PipeWire's client-side objects.
#pragma once

#include "platform/pipewire/view/Properties.h"

#include <pipewire/pipewire.h>

#include <memory>

namespace velmora::pipewire {

/// Releases a PipeWire object.
/// Threads: any, with the loop's lock, or while the loop does not run.
struct Release {
    void operator()(pw_context* context) const noexcept { pw_context_destroy(context); }
    void operator()(pw_core* core) const noexcept { pw_core_disconnect(core); }
    void operator()(pw_proxy* proxy) const noexcept { pw_proxy_destroy(proxy); }
    void operator()(pw_filter* filter) const noexcept { pw_filter_destroy(filter); }
    void operator()(pw_properties* properties) const noexcept { pw_properties_free(properties); }
};
using ContextHandle = std::unique_ptr<pw_context, Release>;
using CoreHandle = std::unique_ptr<pw_core, Release>;
using ProxyHandle = std::unique_ptr<pw_proxy, Release>;
using FilterHandle = std::unique_ptr<pw_filter, Release>;
using PropertiesHandle = std::unique_ptr<pw_properties, Release>;

/// Place in a list of listeners; leaves the list when destroyed. Must go before the object whose
/// list it is.
class Hook {
public:
    Hook() = default;
    ~Hook() { spa_hook_remove(&hook_); }
    Hook(const Hook&) = delete;
    Hook& operator=(const Hook&) = delete;

    spa_hook* get() { return &hook_; }

private:
    spa_hook hook_{};
};

[[nodiscard]] PropertiesHandle makeProperties(const Properties& properties);
[[nodiscard]] Properties readProperties(const spa_dict* dictionary);

/// A context whose data thread asks for real-time priority where the process may have it.
/// Null when the client configuration cannot be loaded.
[[nodiscard]] ContextHandle makeRealtimeContext(pw_loop* loop);

} // namespace velmora::pipewire
