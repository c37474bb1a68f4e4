#include "platform/pipewire/view/Graph.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <tuple>

namespace velmora::pipewire {
namespace {

constexpr double usualRate = 48000.0; // Hz, the daemon's own default

std::string firstFilled(std::initializer_list<std::string> candidates) {
    const auto found =
        std::ranges::find_if(candidates, [](const std::string& one) { return !one.empty(); });
    return found == candidates.end() ? std::string{} : *found;
}

GlobalId globalId(const Properties& properties, std::string_view key) {
    return static_cast<GlobalId>(number(properties, key).value_or(~std::uint64_t{0}));
}

/// The kernel vouches for `pipewire.sec.pid`, but behind the Pulse protocol that is the protocol
/// server; there the program's own word is all there is.
ProgramClaim claimOf(const Properties& properties) {
    const auto claimed = number(properties, "application.process.id");
    const auto checked = number(properties, "pipewire.sec.pid");
    const bool isVouchedFor = checked && text(properties, "client.api") != "pipewire-pulse";
    return {.pid = static_cast<std::int32_t>(isVouchedFor ? *checked : claimed.value_or(0)),
            .isVouchedFor = isVouchedFor,
            .program = text(properties, "application.process.binary"),
            .machine = text(properties, "application.process.machine-id"),
            .host = text(properties, "application.process.host"),
            .sandbox = text(properties, "pipewire.access.portal.app_id")};
}

/// Programs that come through ALSA get a name around their own: "PipeWire ALSA [aplay]".
std::string applicationName(const Properties& properties) {
    constexpr std::string_view opening = "PipeWire ALSA [";
    std::string name = text(properties, "application.name");
    if (name.starts_with(opening) && name.ends_with(']')) {
        return name.substr(opening.size(), name.size() - opening.size() - 1);
    }
    return name;
}

/// `{"name":"<node.name>"}` is all that the session manager writes here.
std::optional<std::string> nameInJson(const std::string& text) {
    constexpr bool throws = false;
    const auto json = nlohmann::json::parse(text, nullptr, throws);
    const auto name = json.find("name"); // its end in anything but an object
    return name != json.end() && name->is_string() ? std::optional(name->get<std::string>())
                                                   : std::nullopt;
}

} // namespace

void change(MetadataEntries& entries,
            GlobalId subject,
            const std::string& key,
            std::optional<MetadataValue> value) {
    if (key.empty()) {
        entries.erase(subject);
    } else if (value) {
        entries[subject][key] = *std::move(value);
    } else if (const auto found = entries.find(subject); found != entries.end()) {
        found->second.erase(key);
    }
}

Serial Graph::serialOf(GlobalId id) const {
    const auto found = serials_.find(id);
    return found == serials_.end() ? 0 : found->second;
}

void Graph::addNode(GlobalId id, const Properties& properties) {
    Node node;
    node.serial = number(properties, "object.serial").value_or(id);
    node.id = id;
    node.client = serialOf(globalId(properties, "client.id"));
    node.name = text(properties, "node.name");
    node.mediaClass = text(properties, "media.class");
    serials_[id] = node.serial;
    nodes_[node.serial] = std::move(node);
}

void Graph::addPort(GlobalId id, const Properties& properties) {
    const auto owner = nodes_.find(serialOf(globalId(properties, "node.id")));
    if (owner == nodes_.end()) {
        return;
    }
    Port port;
    port.serial = number(properties, "object.serial").value_or(id);
    port.id = id;
    port.index = static_cast<std::uint32_t>(number(properties, "port.id").value_or(0));
    port.isOutput = text(properties, "port.direction") == "out";
    port.isAudio = text(properties, "format.dsp") == "32 bit float mono audio";
    port.name = text(properties, "port.name");
    port.channel = text(properties, "audio.channel");
    serials_[id] = port.serial;
    portOwners_[port.serial] = owner->first;
    auto& ports = owner->second.ports;
    ports.push_back(std::move(port));
    std::ranges::stable_sort(
        ports, {}, [](const Port& one) { return std::tuple(one.isOutput, one.index); });
}

void Graph::addClient(GlobalId id, const Properties& properties) {
    const Serial serial = number(properties, "object.serial").value_or(id);
    serials_[id] = serial;
    clients_[serial] = {.serial = serial};
}

void Graph::addCard(GlobalId id, const Properties& properties) {
    const Serial serial = number(properties, "object.serial").value_or(id);
    serials_[id] = serial;
    cards_[serial] = text(properties, "device.name");
}

void Graph::addLink(GlobalId id, const Properties& properties) {
    const Serial serial = number(properties, "object.serial").value_or(id);
    serials_[id] = serial;
    links_[serial] = {.id = id,
                      .client = globalId(properties, "client.id"),
                      .outputNode = serialOf(globalId(properties, "link.output.node")),
                      .inputNode = serialOf(globalId(properties, "link.input.node")),
                      .outputPort = serialOf(globalId(properties, "link.output.port")),
                      .inputPort = serialOf(globalId(properties, "link.input.port"))};
}

void Graph::remove(GlobalId id) {
    const Serial serial = serialOf(id);
    serials_.erase(id);
    clients_.erase(serial);
    cards_.erase(serial);
    links_.erase(serial);
    if (const auto owner = portOwners_.find(serial); owner != portOwners_.end()) {
        if (const auto node = nodes_.find(owner->second); node != nodes_.end()) {
            std::erase_if(node->second.ports,
                          [serial](const Port& port) { return port.serial == serial; });
        }
        portOwners_.erase(owner);
    }
    if (nodes_.erase(serial) > 0) {
        for (auto& [name, metadata] : metadata_) {
            metadata.subjects.erase(id);
        }
    }
    std::erase_if(metadata_, [serial](const auto& one) { return one.second.serial == serial; });
}

void Graph::clear() {
    *this = Graph{};
}

void Graph::describeNode(Serial serial, const Properties& properties) {
    const auto found = nodes_.find(serial);
    if (found == nodes_.end()) {
        return;
    }
    Node& node = found->second;
    node.description = firstFilled(
        {text(properties, "node.description"), text(properties, "node.nick"), node.name});
    node.mediaClass = text(properties, "media.class");
    node.clientApi = text(properties, "client.api");
    node.linkGroup = text(properties, "node.link-group");
    node.isHardware = properties.contains("device.id") && !flag(properties, "node.virtual") &&
                      text(properties, "factory.name") != "support.null-audio-sink";
    node.isBluetooth =
        text(properties, "device.api") == "bluez5" || flag(properties, "bluez5.loopback");
    node.isMeter = flag(properties, "stream.monitor") || flag(properties, "resample.peaks");
    // 0.3.65 names it by the first, later versions by the second as well.
    node.isMovable = flag(properties, "node.autoconnect") &&
                     !flag(properties, "node.dont-reconnect") &&
                     !flag(properties, "node.dont-move");
    for (const RoleKeys roles : {RoleKeys::every, RoleKeys::notification}) {
        node.routeKeys[roles] = routeKey(properties, roles);
    }
    node.routeKey = node.routeKeys[roleKeys_];
    const auto card = cards_.find(serialOf(globalId(properties, "device.id")));
    node.place = cardPlace(properties, card == cards_.end() ? std::string{} : card->second);
    if (node.place.card.empty()) {
        node.uid = node.name;
    }
    node.isDescribed = true;
}

void Graph::describeClient(Serial serial, const Properties& properties) {
    if (const auto found = clients_.find(serial); found != clients_.end()) {
        found->second.isDescribed = true;
        found->second.claim = claimOf(properties);
        found->second.applicationName = applicationName(properties);
    }
    if (flag(properties, "wireplumber.daemon")) {
        roleKeys_ = roleKeysOf(properties);
        for (auto& [nodeSerial, node] : nodes_) {
            node.routeKey = node.routeKeys[roleKeys_];
        }
    }
}

void Graph::setRunning(Serial serial, bool running) {
    if (const auto found = nodes_.find(serial); found != nodes_.end()) {
        found->second.isRunning = running;
    }
}

void Graph::setVolume(Serial serial, const DeviceVolume& volume) {
    if (const auto found = nodes_.find(serial); found != nodes_.end()) {
        found->second.volume = volume;
    }
}

void Graph::setContent(Serial serial, std::vector<std::string> positions) {
    if (const auto found = nodes_.find(serial); found != nodes_.end()) {
        found->second.content = std::move(positions);
    }
}

void Graph::setUid(Serial serial, const std::string& uid) {
    if (const auto found = nodes_.find(serial); found != nodes_.end()) {
        found->second.uid = uid;
    }
}

void Graph::addMetadata(GlobalId id, const std::string& object) {
    // Its serial is not needed by anybody else; the id cannot be reused while the object lives.
    const Serial serial = (Serial{1} << 63U) | id;
    serials_[id] = serial;
    metadata_[object] = {.serial = serial, .subjects = {}};
}

void Graph::setMetadata(const std::string& object,
                        GlobalId subject,
                        const std::string& key,
                        std::optional<MetadataValue> value) {
    if (const auto found = metadata_.find(object); found != metadata_.end()) {
        change(found->second.subjects, subject, key, std::move(value));
    }
}

void Graph::replaceMetadata(const std::string& object, MetadataEntries entries) {
    if (const auto found = metadata_.find(object); found != metadata_.end()) {
        found->second.subjects = std::move(entries);
    }
}

const Node* Graph::node(Serial serial) const {
    const auto found = nodes_.find(serial);
    return found == nodes_.end() ? nullptr : &found->second;
}

const Node* Graph::nodeWithId(GlobalId id) const {
    return node(serialOf(id));
}

const Node* Graph::nodeOfPort(Serial port) const {
    const auto owner = portOwners_.find(port);
    return owner == portOwners_.end() ? nullptr : node(owner->second);
}

const Node* Graph::nodeNamed(std::string_view name) const {
    const auto found =
        std::ranges::find_if(nodes_, [name](const auto& one) { return one.second.name == name; });
    return found == nodes_.end() ? nullptr : &found->second;
}

const Node* Graph::nodeWithUid(std::string_view uid) const {
    const auto found =
        std::ranges::find_if(nodes_, [uid](const auto& one) { return one.second.uid == uid; });
    return found == nodes_.end() ? nullptr : &found->second;
}

const Link* Graph::linkBetween(Serial outputPort, Serial inputPort) const {
    const auto found = std::ranges::find_if(links_, [&](const auto& one) {
        return one.second.outputPort == outputPort && one.second.inputPort == inputPort;
    });
    return found == links_.end() ? nullptr : &found->second;
}

bool Graph::hasMetadata(const std::string& object) const {
    return metadata_.contains(object);
}

std::optional<MetadataValue>
Graph::metadata(const std::string& object, GlobalId subject, const std::string& key) const {
    const auto found = metadata_.find(object);
    if (found == metadata_.end()) {
        return std::nullopt;
    }
    const auto entries = found->second.subjects.find(subject);
    if (entries == found->second.subjects.end()) {
        return std::nullopt;
    }
    const auto value = entries->second.find(key);
    return value == entries->second.end() ? std::nullopt : std::optional(value->second);
}

std::optional<std::string> Graph::defaultSinkName() const {
    const auto entry = metadata("default", 0, "default.audio.sink");
    return entry ? nameInJson(entry->value) : std::nullopt;
}

double Graph::configuredRate() const {
    for (const char* const key : {"clock.force-rate", "clock.rate"}) {
        if (const auto entry = metadata("settings", 0, key)) {
            const auto hz = number({{key, entry->value}}, key).value_or(0);
            if (hz > 0) {
                return static_cast<double>(hz);
            }
        }
    }
    return usualRate;
}

} // namespace velmora::pipewire
