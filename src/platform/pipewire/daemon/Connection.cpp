#include "platform/pipewire/daemon/Connection.h"

#include "platform/pipewire/daemon/Bindings.h"

#include <pipewire/extensions/metadata.h>

#include <cerrno>
#include <utility>

namespace velmora::pipewire {
namespace {

/// The first brings the list of objects, the second the details of those that we bound, the third
/// the formats that we asked for then.
constexpr int roundTripsToList = 3;

} // namespace

Connection::Connection(pw_loop* loop, Graph& graph, Events events)
    : loop_(loop), graph_(graph), events_(std::move(events)) {
}

Connection::~Connection() {
    close();
}

Status Connection::open() {
    static constexpr pw_core_events coreEvents = [] {
        pw_core_events made{};
        made.version = PW_VERSION_CORE_EVENTS;
        made.done = [](void* self, std::uint32_t, int sequence) {
            static_cast<Connection*>(self)->onDone(sequence);
        };
        made.error = [](void* self, std::uint32_t id, int, int result, const char*) {
            static_cast<Connection*>(self)->onError(id, result);
        };
        return made;
    }();
    static constexpr pw_registry_events registryEvents = [] {
        pw_registry_events made{};
        made.version = PW_VERSION_REGISTRY_EVENTS;
        made.global = [](void* self,
                         std::uint32_t id,
                         std::uint32_t,
                         const char* type,
                         std::uint32_t,
                         const spa_dict* properties) {
            static_cast<Connection*>(self)->onGlobal(id, type, readProperties(properties));
        };
        made.global_remove = [](void* self, std::uint32_t id) {
            static_cast<Connection*>(self)->onGlobalRemove(id);
        };
        return made;
    }();

    close();
    context_.reset(pw_context_new(loop_, nullptr, 0));
    core_.reset(context_ ? pw_context_connect(context_.get(), nullptr, 0) : nullptr);
    if (!core_) {
        const int code = errno == 0 ? EIO : errno;
        context_.reset();
        return -code;
    }
    coreHook_ = std::make_unique<Hook>();
    pw_core_add_listener(core_.get(), coreHook_->get(), &coreEvents, this);
    auto* const registry = pw_core_get_registry(core_.get(), PW_VERSION_REGISTRY, 0);
    registry_.reset(reinterpret_cast<pw_proxy*>(registry));
    registryHook_ = std::make_unique<Hook>();
    pw_registry_add_listener(registry, registryHook_->get(), &registryEvents, this);
    roundTrips_ = roundTripsToList;
    sequence_ = pw_core_sync(core_.get(), PW_ID_CORE, 0);
    return statusOk;
}

void Connection::close() {
    nextSessionMetadata_.reset();
    sessionMetadata_.reset();
    bindings_.clear();
    registryHook_.reset();
    registry_.reset();
    coreHook_.reset();
    core_.reset();
    context_.reset();
    roundTrips_ = 0;
    probeSequence_ = 0;
    awaited_.clear();
    graph_.clear();
}

ProxyHandle Connection::create(const char* factory,
                               const char* type,
                               std::uint32_t version,
                               const Properties& properties) {
    if (!isOpen()) {
        return nullptr;
    }
    const auto wanted = makeProperties(properties);
    return ProxyHandle(static_cast<pw_proxy*>(
        pw_core_create_object(core_.get(), factory, type, version, &wanted->dict, 0)));
}

ProxyHandle Connection::bindGlobal(GlobalId id, const char* type, std::uint32_t version) {
    if (!registry_) {
        return nullptr;
    }
    auto* const registry = reinterpret_cast<pw_registry*>(registry_.get());
    return ProxyHandle(static_cast<pw_proxy*>(pw_registry_bind(registry, id, type, version, 0)));
}

void Connection::destroyGlobal(GlobalId id) {
    if (registry_) {
        pw_registry_destroy(reinterpret_cast<pw_registry*>(registry_.get()), id);
    }
}

void Connection::setSessionMetadata(GlobalId subject,
                                    const std::string& key,
                                    const std::optional<MetadataValue>& value) {
    if (!sessionMetadata_) {
        return;
    }
    pw_metadata_set_property(reinterpret_cast<pw_metadata*>(sessionMetadata_->proxy()),
                             subject,
                             key.c_str(),
                             value ? value->type.c_str() : nullptr,
                             value ? value->value.c_str() : nullptr);
    // Whoever reads next must not take our own value, already withdrawn, for the user's.
    graph_.setMetadata("default", subject, key, value);
}

void Connection::onGlobal(GlobalId id, const std::string& type, const Properties& properties) {
    auto* const registry = reinterpret_cast<pw_registry*>(registry_.get());
    const Serial serial = number(properties, PW_KEY_OBJECT_SERIAL).value_or(id);
    if (type == PW_TYPE_INTERFACE_Node) {
        graph_.addNode(id, properties);
        bind(id, bindNode(registry, id, serial, graph_, events_.changed));
    } else if (type == PW_TYPE_INTERFACE_Port) {
        graph_.addPort(id, properties);
    } else if (type == PW_TYPE_INTERFACE_Client) {
        graph_.addClient(id, properties);
        bind(id, bindClient(registry, id, serial, graph_, events_.changed));
        events_.clientCame();
    } else if (type == PW_TYPE_INTERFACE_Device) {
        graph_.addCard(id, properties);
    } else if (type == PW_TYPE_INTERFACE_Link) {
        graph_.addLink(id, properties);
    } else if (type == PW_TYPE_INTERFACE_Metadata) {
        onMetadata(id, text(properties, "metadata.name"));
    }
    events_.changed();
}

void Connection::onMetadata(GlobalId id, const std::string& name) {
    const bool isSession = name == "default";
    if (!isSession && name != "settings") {
        return;
    }
    graph_.addMetadata(id, name);
    auto* const registry = reinterpret_cast<pw_registry*>(registry_.get());
    const auto follow = [&](MetadataTold told) {
        return bindMetadata(
            registry, id, name, MetadataStart::following, graph_, std::move(told), events_.changed);
    };
    if (isSession) {
        sessionMetadata_ = follow(events_.metadataTold);
        sessionMetadataId_ = id;
    } else {
        bind(id, follow([](GlobalId, const std::string&) {}));
    }
}

void Connection::readSessionMetadataAgain() {
    if (sessionMetadata_) {
        nextSessionMetadata_ = bindMetadata(reinterpret_cast<pw_registry*>(registry_.get()),
                                            sessionMetadataId_,
                                            "default",
                                            MetadataStart::collecting,
                                            graph_,
                                            events_.metadataTold,
                                            events_.changed);
        nextSequence_ = pw_core_sync(core_.get(), PW_ID_CORE, 0);
    }
}

void Connection::onGlobalRemove(GlobalId id) {
    if (sessionMetadata_ && id == sessionMetadataId_) {
        nextSessionMetadata_.reset();
        sessionMetadata_.reset();
        events_.managerLost();
    }
    bindings_.erase(id);
    graph_.remove(id);
    events_.changed();
}

void Connection::probe() {
    if (isOpen()) {
        probeSequence_ = pw_core_sync(core_.get(), PW_ID_CORE, 0);
    }
}

void Connection::whenSeen(std::function<void()> then) {
    if (isOpen()) {
        awaited_[pw_core_sync(core_.get(), PW_ID_CORE, 0)] = std::move(then);
    }
}

void Connection::startRoundTrip() {
    if (isOpen()) {
        roundTrips_ = 1;
        sequence_ = pw_core_sync(core_.get(), PW_ID_CORE, 0);
    }
}

void Connection::onDone(int sequence) {
    if (nextSessionMetadata_ && sequence == nextSequence_) {
        sessionMetadata_ = std::move(nextSessionMetadata_);
        sessionMetadata_->publish();
    }
    if (sequence == probeSequence_) {
        probeSequence_ = 0;
    }
    if (const auto awaited = awaited_.extract(sequence)) {
        awaited.mapped()();
    }
    if (roundTrips_ == 0 || sequence != sequence_) {
        return;
    }
    --roundTrips_;
    if (roundTrips_ > 0) {
        sequence_ = pw_core_sync(core_.get(), PW_ID_CORE, 0);
    }
    events_.changed();
}

void Connection::onError(std::uint32_t id, int result) {
    // Errors of single objects reach those objects; only the core's own end the connection.
    if (id == PW_ID_CORE && result == -EPIPE) {
        events_.lost();
    }
}

void Connection::bind(GlobalId id, std::unique_ptr<Binding> binding) {
    if (binding) {
        bindings_[id] = std::move(binding);
    }
}

} // namespace velmora::pipewire
