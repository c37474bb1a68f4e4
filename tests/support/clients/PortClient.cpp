#include "support/clients/PortClient.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <spa/utils/string.h>
#include <stdexcept>

namespace velmora::support {

struct PortClient::Events {
    static PortClient& self(void* data) { return *static_cast<PortClient*>(data); }

    static void global(void* data,
                       std::uint32_t id,
                       std::uint32_t /*permissions*/,
                       const char* type,
                       std::uint32_t /*version*/,
                       const spa_dict* properties) {
        self(data).addGlobal(id, type, properties);
    }
    static void globalRemove(void* data, std::uint32_t id) { self(data).removeGlobal(id); }
    static void stateChanged(void* data,
                             pw_filter_state /*old*/,
                             pw_filter_state /*now*/,
                             const char* /*error*/) {
        self(data).linkWhatIsThere();
    }
    static void process(void* data, spa_io_position* position) { self(data).process(position); }
    static void error(void* data, std::uint32_t id, int /*sequence*/, int result, const char*) {
        if (id == PW_ID_CORE && result == -EPIPE) {
            pw_main_loop_quit(self(data).mainLoop_);
        }
    }
    static void quit(void* data, int /*signal*/) { pw_main_loop_quit(self(data).mainLoop_); }

    static const pw_core_events core;
    static const pw_registry_events registry;
    static const pw_filter_events filter;
};

const pw_core_events PortClient::Events::core = [] {
    pw_core_events events{};
    events.version = PW_VERSION_CORE_EVENTS;
    events.error = error;
    return events;
}();
const pw_registry_events PortClient::Events::registry = [] {
    pw_registry_events events{};
    events.version = PW_VERSION_REGISTRY_EVENTS;
    events.global = global;
    events.global_remove = globalRemove;
    return events;
}();
const pw_filter_events PortClient::Events::filter = [] {
    pw_filter_events events{};
    events.version = PW_VERSION_FILTER_EVENTS;
    events.state_changed = stateChanged;
    events.process = process;
    return events;
}();

PortClient::PortClient(Direction direction, std::vector<Target> targets, Process process)
    : direction_(direction), targets_(std::move(targets)), process_(std::move(process)),
      mainLoop_(pw_main_loop_new(nullptr)),
      context_(pw_context_new(
          loop(), pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0)) {
    core_ = pw_context_connect(context_, nullptr, 0);
    if (core_ == nullptr) {
        throw std::runtime_error("no sound server answers");
    }
    pw_core_add_listener(core_, &coreHook_, &Events::core, this);
    registry_ = pw_core_get_registry(core_, PW_VERSION_REGISTRY, 0);
    pw_registry_add_listener(registry_, &registryHook_, &Events::registry, this);

    const char* name = direction_ == Direction::play ? "port-feeder" : "port-recorder";
    filter_ = pw_filter_new(core_,
                            name,
                            pw_properties_new(PW_KEY_NODE_NAME,
                                              name,
                                              PW_KEY_MEDIA_TYPE,
                                              "Audio",
                                              PW_KEY_NODE_AUTOCONNECT,
                                              "false",
                                              nullptr));
    pw_filter_add_listener(filter_, &filterHook_, &Events::filter, this);
    const auto portDirection =
        direction_ == Direction::play ? PW_DIRECTION_OUTPUT : PW_DIRECTION_INPUT;
    for (const Target& target : targets_) {
        const std::string portName = target.node + "_" + std::to_string(target.channel);
        ports_.push_back(pw_filter_add_port(filter_,
                                            portDirection,
                                            PW_FILTER_PORT_FLAG_MAP_BUFFERS,
                                            sizeof(void*),
                                            pw_properties_new(PW_KEY_FORMAT_DSP,
                                                              "32 bit float mono audio",
                                                              PW_KEY_PORT_NAME,
                                                              portName.c_str(),
                                                              nullptr),
                                            nullptr,
                                            0));
    }
    blocks_.resize(ports_.size());
    pw_loop_add_signal(loop(), SIGINT, Events::quit, this);
    pw_loop_add_signal(loop(), SIGTERM, Events::quit, this);
    pw_filter_connect(filter_, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0);
}

PortClient::~PortClient() {
    dropLinks();
    if (filter_ != nullptr) {
        pw_filter_destroy(filter_);
    }
    if (registry_ != nullptr) {
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    }
    if (core_ != nullptr) {
        pw_core_disconnect(core_);
    }
    pw_context_destroy(context_);
    pw_main_loop_destroy(mainLoop_);
}

void PortClient::run() {
    pw_main_loop_run(mainLoop_);
}

void PortClient::addGlobal(std::uint32_t id, const char* type, const spa_dict* properties) {
    const auto text = [&](const char* key) {
        const char* value = properties == nullptr ? nullptr : spa_dict_lookup(properties, key);
        return std::string(value == nullptr ? "" : value);
    };
    if (spa_streq(type, PW_TYPE_INTERFACE_Node) && isTarget(text(PW_KEY_NODE_NAME))) {
        nodes_[text(PW_KEY_NODE_NAME)] = id;
    } else if (spa_streq(type, PW_TYPE_INTERFACE_Port)) {
        const auto number = [&](const char* key) {
            return static_cast<std::uint32_t>(std::strtoul(text(key).c_str(), nullptr, 10));
        };
        auto& side = text(PW_KEY_PORT_DIRECTION) == "in" ? inputs_ : outputs_;
        side[{number(PW_KEY_NODE_ID), number(PW_KEY_PORT_ID)}] = id;
    }
    linkWhatIsThere();
}

void PortClient::removeGlobal(std::uint32_t id) {
    std::erase_if(nodes_, [&](const auto& node) { return node.second == id; });
    std::erase_if(links_, [&](const auto& entry) {
        const bool lost = entry.second.targetPort == id;
        if (lost) {
            pw_proxy_destroy(entry.second.proxy);
        }
        return lost;
    });
    for (auto* side : {&inputs_, &outputs_}) {
        std::erase_if(*side, [&](const auto& port) { return port.second == id; });
    }
}

bool PortClient::isTarget(std::string_view node) const {
    return std::ranges::find(targets_, node, &Target::node) != targets_.end();
}

void PortClient::linkWhatIsThere() {
    if (filter_ == nullptr) {
        return;
    }
    const std::uint32_t own = pw_filter_get_node_id(filter_);
    const bool plays = direction_ == Direction::play;
    for (std::size_t i = 0; i < targets_.size(); ++i) {
        const auto node = nodes_.find(targets_[i].node);
        if (node == nodes_.end()) {
            continue;
        }
        const PortKey ownKey{own, static_cast<std::uint32_t>(i)};
        const PortKey targetKey{node->second, targets_[i].channel - 1};
        const PortKey& outputKey = plays ? ownKey : targetKey;
        const PortKey& inputKey = plays ? targetKey : ownKey;
        const auto output = outputs_.find(outputKey);
        const auto input = inputs_.find(inputKey);
        if (output == outputs_.end() || input == inputs_.end() || links_.contains(i)) {
            continue;
        }
        pw_properties* properties = pw_properties_new(nullptr, nullptr);
        pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_NODE, "%u", outputKey.first);
        pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_PORT, "%u", output->second);
        pw_properties_setf(properties, PW_KEY_LINK_INPUT_NODE, "%u", inputKey.first);
        pw_properties_setf(properties, PW_KEY_LINK_INPUT_PORT, "%u", input->second);
        void* link = pw_core_create_object(
            core_, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties->dict, 0);
        links_[i] = {.proxy = static_cast<pw_proxy*>(link),
                     .targetPort = plays ? input->second : output->second};
        pw_properties_free(properties);
    }
}

void PortClient::dropLinks() {
    for (const auto& [port, link] : links_) {
        pw_proxy_destroy(link.proxy);
    }
    links_.clear();
}

void PortClient::process(const spa_io_position* position) {
    clockSpeed_.store(position->clock.rate_diff, std::memory_order_relaxed);
    const auto frames = static_cast<std::uint32_t>(position->clock.duration);
    for (std::size_t i = 0; i < ports_.size(); ++i) {
        blocks_[i] = static_cast<float*>(pw_filter_get_dsp_buffer(ports_[i], frames));
    }
    process_(frames, blocks_);
}

} // namespace velmora::support
