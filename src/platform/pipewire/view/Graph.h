// Graph.h: what the daemon has told about nodes, ports, clients and links, as plain values.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/ProgramClaim.h"
#include "platform/pipewire/view/CardPlace.h"
#include "platform/pipewire/view/Properties.h"
#include "platform/pipewire/view/StoredRoute.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::pipewire {

/// `object.serial`: names one object for as long as the daemon lives. Global ids, in contrast, go
/// to the next object at once; nothing outside a registry callback may be kept under one.
using Serial = std::uint64_t; // 0 = none
using GlobalId = std::uint32_t;

struct Port {
    Serial serial{};
    GlobalId id{};
    std::uint32_t index{}; ///< `port.id`: channel number − 1 within its direction
    bool isOutput{};       ///< sound leaves the node here
    bool isAudio{};        ///< carries float samples (not MIDI)
    std::string name;
    std::string channel; ///< position such as "FL"; empty when the node does not say
};

struct Node {
    Serial serial{};
    GlobalId id{};
    Serial client{}; ///< 0 when the daemon itself made the node
    std::string name;
    std::string uid; ///< under which the mixer knows it as a device: its name, or see `CardNames`
    std::string description;
    std::string mediaClass;
    CardPlace place;
    std::string clientApi;
    std::string linkGroup;
    bool isHardware{};  ///< belongs to a device object and is no software node
    bool isBluetooth{}; ///< of a headset, or what stands for its microphone while that is off
    bool isDescribed{}; ///< all properties have arrived, not only the registry's few
    bool isRunning{};
    bool isMeter{};    ///< takes sound only to show how loud it is
    bool isMovable{};  ///< the session manager links it, and may link it elsewhere
    RouteKey routeKey; ///< what this session manager remembers the node by
    std::map<RoleKeys, RouteKey> routeKeys; ///< what one or the other would
    std::optional<DeviceVolume> volume;     ///< only followed on virtual sources
    std::vector<std::string> content;       ///< positions of the material itself, before any remix
    std::vector<Port> ports;                ///< ascending by index within each direction
};

struct Client {
    Serial serial{};
    bool isDescribed{};            ///< its properties have arrived
    ProgramClaim claim{};          ///< may become another while the program introduces itself
    std::string applicationName{}; ///< as the program calls itself; may be empty
};

struct Link {
    GlobalId id{};
    GlobalId client{}; ///< who asked for it
    Serial outputNode{};
    Serial inputNode{};
    Serial outputPort{};
    Serial inputPort{};
};

struct MetadataValue {
    std::string type;
    std::string value;

    bool operator==(const MetadataValue&) const = default;
};

/// The entries of one metadata object, by the global id that they are about.
using MetadataEntries = std::map<GlobalId, std::map<std::string, MetadataValue>>;

/// Applies one change as the daemon tells it: no value removes the key, an empty key removes
/// everything about the subject.
void change(MetadataEntries& entries,
            GlobalId subject,
            const std::string& key,
            std::optional<MetadataValue> value);

/// The mirror of the daemon's object list. Every change comes in through the few functions here, in
/// the order in which the daemon tells it.
///
/// Threads: one at a time.
class Graph {
public:
    void addNode(GlobalId id, const Properties& properties);
    void addPort(GlobalId id, const Properties& properties);
    void addClient(GlobalId id, const Properties& properties);
    void addCard(GlobalId id, const Properties& properties);
    void addLink(GlobalId id, const Properties& properties);
    void remove(GlobalId id);
    void clear();

    void describeNode(Serial serial, const Properties& properties);
    void describeClient(Serial serial, const Properties& properties);
    void setRunning(Serial serial, bool running);
    void setVolume(Serial serial, const DeviceVolume& volume);
    void setContent(Serial serial, std::vector<std::string> positions);
    void setUid(Serial serial, const std::string& uid);

    /// See `change`.
    void setMetadata(const std::string& object,
                     GlobalId subject,
                     const std::string& key,
                     std::optional<MetadataValue> value);
    void addMetadata(GlobalId id, const std::string& object);
    void replaceMetadata(const std::string& object, MetadataEntries entries);

    /// Ascending serial: the order in which the objects came.
    [[nodiscard]] const std::map<Serial, Node>& nodes() const { return nodes_; }
    [[nodiscard]] const std::map<Serial, Client>& clients() const { return clients_; }
    [[nodiscard]] const std::map<Serial, Link>& links() const { return links_; }

    [[nodiscard]] const Node* node(Serial serial) const;
    [[nodiscard]] const Node* nodeWithId(GlobalId id) const;
    [[nodiscard]] const Node* nodeOfPort(Serial port) const;
    [[nodiscard]] const Node* nodeNamed(std::string_view name) const;
    [[nodiscard]] const Node* nodeWithUid(std::string_view uid) const;
    /// Null when these two ports are not linked.
    [[nodiscard]] const Link* linkBetween(Serial outputPort, Serial inputPort) const;

    [[nodiscard]] bool hasMetadata(const std::string& object) const;
    [[nodiscard]] std::optional<MetadataValue>
    metadata(const std::string& object, GlobalId subject, const std::string& key) const;

    /// `node.name` of the session's default sink; it need not exist (yet).
    [[nodiscard]] std::optional<std::string> defaultSinkName() const;
    /// Hz: what the settings name; the graph may run at another one.
    [[nodiscard]] double configuredRate() const;

private:
    [[nodiscard]] Serial serialOf(GlobalId id) const;

    std::map<GlobalId, Serial> serials_; // of every live object
    std::map<Serial, Node> nodes_;
    std::map<Serial, Serial> portOwners_; // port to node
    std::map<Serial, Client> clients_;
    std::map<Serial, std::string> cards_; // names
    std::map<Serial, Link> links_;

    struct Metadata {
        Serial serial{};
        MetadataEntries subjects;
    };
    std::map<std::string, Metadata> metadata_;
    RoleKeys roleKeys_ = RoleKeys::every; // of the latest session manager
};

} // namespace velmora::pipewire
