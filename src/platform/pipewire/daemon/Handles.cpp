#include "platform/pipewire/daemon/Handles.h"

namespace velmora::pipewire {

PropertiesHandle makeProperties(const Properties& properties) {
    PropertiesHandle made(pw_properties_new(nullptr, nullptr));
    for (const auto& [key, value] : properties) {
        pw_properties_set(made.get(), key.c_str(), value.c_str());
    }
    return made;
}

Properties readProperties(const spa_dict* dictionary) {
    Properties properties;
    for (std::uint32_t at = 0; dictionary != nullptr && at < dictionary->n_items; ++at) {
        const spa_dict_item& item = dictionary->items[at];
        if (item.key != nullptr && item.value != nullptr) {
            properties[item.key] = item.value;
        }
    }
    return properties;
}

ContextHandle makeRealtimeContext(pw_loop* loop) {
    // Up to 0.3 the plain client configuration has no real-time module; from 1.0 on it has, and the
    // other file may be gone.
    auto wanted = makeProperties({{PW_KEY_CONFIG_NAME, "client-rt.conf"}});
    ContextHandle context(pw_context_new(loop, wanted.release(), 0));
    return context ? std::move(context) : ContextHandle(pw_context_new(loop, nullptr, 0));
}

} // namespace velmora::pipewire
