#include "platform/pipewire/daemon/Bindings.h"

#include "platform/pipewire/daemon/NodeVolume.h"

#include <pipewire/extensions/metadata.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/audio/type-info.h>
#include <spa/param/param.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace velmora::pipewire {
namespace {

pw_proxy* bindGlobal(pw_registry* registry, GlobalId id, const char* type, std::uint32_t version) {
    return static_cast<pw_proxy*>(pw_registry_bind(registry, id, type, version, 0));
}

/// Short names such as "FL"; empty for channels without a position.
std::vector<std::string> positions(const spa_audio_info_raw& format) {
    std::vector<std::string> names(
        std::min<std::uint32_t>(format.channels, SPA_AUDIO_MAX_CHANNELS));
    for (std::size_t at = 0; at < names.size(); ++at) {
        for (const spa_type_info* type = spa_type_audio_channel; type->name != nullptr; ++type) {
            if (type->type == format.position[at]) {
                const std::string_view name = type->name; // "Spa:Enum:AudioChannel:FL"
                names[at] = name.substr(name.rfind(':') + 1);
            }
        }
    }
    return names;
}

/// What is recorded from a virtual source follows its volume; from a silent device of the daemon's
/// own that serves as one, only where it was made so.
bool isTurnedDownForRecorders(const Properties& properties) {
    return text(properties, "media.class") == "Audio/Source/Virtual" &&
           (text(properties, "factory.name") != "support.null-audio-sink" ||
            flag(properties, "monitor.channel-volumes"));
}

/// Common part of every binding; members go in the right order: hook first, then proxy.
class ObjectBinding : public Binding {
public:
    ObjectBinding(pw_proxy* proxy, Serial serial, Graph& graph, Changed changed)
        : graph_(graph), changed_(std::move(changed)), serial_(serial), proxy_(proxy) {}

protected:
    Graph& graph_;
    Changed changed_;
    Serial serial_;
    ProxyHandle proxy_;
    Hook hook_;
};

class NodeBinding final : public ObjectBinding {
public:
    using ObjectBinding::ObjectBinding;

    void listen() {
        static constexpr pw_node_events events = [] {
            pw_node_events made{};
            made.version = PW_VERSION_NODE_EVENTS;
            made.info = [](void* self, const pw_node_info* info) {
                static_cast<NodeBinding*>(self)->onInfo(*info);
            };
            made.param = [](void* self,
                            int,
                            std::uint32_t id,
                            std::uint32_t,
                            std::uint32_t,
                            const spa_pod* parameter) {
                static_cast<NodeBinding*>(self)->onParam(id, parameter);
            };
            return made;
        }();
        auto* const node = reinterpret_cast<pw_node*>(proxy_.get());
        pw_node_add_listener(node, hook_.get(), &events, this);
    }

private:
    void onInfo(const pw_node_info& info) {
        if ((info.change_mask & PW_NODE_CHANGE_MASK_PROPS) != 0U) {
            const Properties properties = readProperties(info.props);
            graph_.describeNode(serial_, properties);
            followVolume(properties);
        }
        if ((info.change_mask & PW_NODE_CHANGE_MASK_STATE) != 0U) {
            graph_.setRunning(serial_, info.state == PW_NODE_STATE_RUNNING);
        }
        const Node* const known = graph_.node(serial_);
        const bool isStream = known != nullptr && known->mediaClass == "Stream/Output/Audio";
        if (isStream && (info.change_mask & PW_NODE_CHANGE_MASK_PARAMS) != 0U) {
            auto* const node = reinterpret_cast<pw_node*>(proxy_.get());
            pw_node_enum_params(node, 0, SPA_PARAM_EnumFormat, 0, 1, nullptr);
        }
        changed_();
    }

    void followVolume(const Properties& properties) {
        if (!followsVolume_ && isTurnedDownForRecorders(properties)) {
            followsVolume_ = true;
            std::uint32_t volume = SPA_PARAM_Props;
            pw_node_subscribe_params(reinterpret_cast<pw_node*>(proxy_.get()), &volume, 1);
        }
    }

    void onParam(std::uint32_t id, const spa_pod* parameter) {
        if (parameter == nullptr) {
            return;
        }
        if (id == SPA_PARAM_Props) {
            if (const auto volume = readVolume(*parameter)) {
                graph_.setVolume(serial_, *volume);
                changed_();
            }
        } else if (id == SPA_PARAM_EnumFormat) {
            onFormat(*parameter);
        }
    }

    void onFormat(const spa_pod& format) {
        std::uint32_t mediaType{};
        std::uint32_t subtype{};
        spa_audio_info_raw raw{};
        const bool isRawAudio = spa_format_parse(&format, &mediaType, &subtype) >= 0 &&
                                mediaType == SPA_MEDIA_TYPE_audio &&
                                subtype == SPA_MEDIA_SUBTYPE_raw &&
                                spa_format_audio_raw_parse(&format, &raw) >= 0;
        if (isRawAudio) {
            graph_.setContent(serial_, positions(raw));
            changed_();
        }
    }

    bool followsVolume_ = false;
};

class ClientBinding final : public ObjectBinding {
public:
    using ObjectBinding::ObjectBinding;

    void listen() {
        static constexpr pw_client_events events = [] {
            pw_client_events made{};
            made.version = PW_VERSION_CLIENT_EVENTS;
            made.info = [](void* self, const pw_client_info* info) {
                static_cast<ClientBinding*>(self)->onInfo(*info);
            };
            return made;
        }();
        auto* const client = reinterpret_cast<pw_client*>(proxy_.get());
        pw_client_add_listener(client, hook_.get(), &events, this);
    }

private:
    void onInfo(const pw_client_info& info) {
        if ((info.change_mask & PW_CLIENT_CHANGE_MASK_PROPS) != 0U) {
            graph_.describeClient(serial_, readProperties(info.props));
            changed_();
        }
    }
};

class BoundMetadata final : public MetadataBinding {
public:
    BoundMetadata(pw_proxy* proxy,
                  std::string name,
                  MetadataStart start,
                  Graph& graph,
                  MetadataTold told,
                  Changed changed)
        : graph_(graph), told_(std::move(told)), changed_(std::move(changed)),
          name_(std::move(name)), isCollecting_(start == MetadataStart::collecting), proxy_(proxy) {
    }

    [[nodiscard]] pw_proxy* proxy() const override { return proxy_.get(); }

    void publish() override {
        isCollecting_ = false;
        graph_.replaceMetadata(name_, std::move(collected_));
        changed_();
    }

    void listen() {
        static constexpr pw_metadata_events events = [] {
            pw_metadata_events made{};
            made.version = PW_VERSION_METADATA_EVENTS;
            made.property = [](void* self,
                               std::uint32_t subject,
                               const char* key,
                               const char* type,
                               const char* value) {
                static_cast<BoundMetadata*>(self)->onProperty(subject, key, type, value);
                return 0;
            };
            return made;
        }();
        auto* const metadata = reinterpret_cast<pw_metadata*>(proxy_.get());
        pw_metadata_add_listener(metadata, hook_.get(), &events, this);
    }

private:
    void onProperty(std::uint32_t subject, const char* key, const char* type, const char* value) {
        const std::string name = key == nullptr ? "" : key;
        std::optional<MetadataValue> entry;
        if (value != nullptr) {
            entry = {.type = type == nullptr ? "" : type, .value = value};
        }
        if (isCollecting_) {
            // What changes meanwhile comes here only; the next change may take its place at once.
            change(collected_, subject, name, entry);
        }
        graph_.setMetadata(name_, subject, name, std::move(entry));
        told_(subject, name);
        changed_();
    }

    Graph& graph_;
    MetadataTold told_;
    Changed changed_;
    std::string name_;
    bool isCollecting_;
    MetadataEntries collected_;
    ProxyHandle proxy_;
    Hook hook_; // goes before the proxy
};

template <typename Made>
std::unique_ptr<Binding> follow(pw_proxy* proxy, Serial serial, Graph& graph, Changed changed) {
    if (proxy == nullptr) {
        return nullptr;
    }
    auto made = std::make_unique<Made>(proxy, serial, graph, std::move(changed));
    made->listen();
    return made;
}

} // namespace

std::unique_ptr<Binding>
bindNode(pw_registry* registry, GlobalId id, Serial serial, Graph& graph, Changed changed) {
    auto* const proxy = bindGlobal(registry, id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE);
    return follow<NodeBinding>(proxy, serial, graph, std::move(changed));
}

std::unique_ptr<Binding>
bindClient(pw_registry* registry, GlobalId id, Serial serial, Graph& graph, Changed changed) {
    auto* const proxy = bindGlobal(registry, id, PW_TYPE_INTERFACE_Client, PW_VERSION_CLIENT);
    return follow<ClientBinding>(proxy, serial, graph, std::move(changed));
}

std::unique_ptr<MetadataBinding> bindMetadata(pw_registry* registry,
                                              GlobalId id,
                                              const std::string& name,
                                              MetadataStart start,
                                              Graph& graph,
                                              MetadataTold told,
                                              Changed changed) {
    auto* const proxy = bindGlobal(registry, id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA);
    if (proxy == nullptr) {
        return nullptr;
    }
    auto made = std::make_unique<BoundMetadata>(
        proxy, name, start, graph, std::move(told), std::move(changed));
    made->listen();
    return made;
}

} // namespace velmora::pipewire
