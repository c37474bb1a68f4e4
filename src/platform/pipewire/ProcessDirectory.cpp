#include "platform/pipewire/ProcessDirectory.h"

#include <algorithm>
#include <ranges>

namespace velmora::pipewire {

bool isOutputStream(const Node& node) {
    if (node.mediaClass == "Stream/Output/Audio") {
        return true;
    }
    // Programs that come through JACK are plain nodes without a class.
    return node.clientApi == "jack" && node.mediaClass.empty() &&
           std::ranges::any_of(node.ports,
                               [](const Port& port) { return port.isOutput && port.isAudio; });
}

void ProcessDirectory::update(const Graph& graph) {
    std::set<std::int32_t> livePids;
    std::set<std::int32_t> liveLeaders;
    unresolved_.clear();
    for (const auto& [serial, client] : graph.clients()) {
        if (client.pid == 0 || client.pid == ownPid_) {
            continue;
        }
        livePids.insert(client.pid);
        if (const std::int32_t leader = leaderOf(client); leader != 0) {
            liveLeaders.insert(leader);
        } else {
            unresolved_.insert(client.pid);
        }
    }
    // A number may be given to another process later: forget it with its last client.
    std::erase_if(leaders_, [&](const auto& one) { return !livePids.contains(one.first); });
    std::erase_if(processes_,
                  [&](const auto& one) { return !liveLeaders.contains(one.second.leader); });
    for (auto& process : processes_ | std::views::values) {
        process.streams.clear();
    }
    for (const auto& [serial, node] : graph.nodes()) {
        const auto client = graph.clients().find(node.client);
        if (client == graph.clients().end() || !isOutputStream(node)) {
            continue;
        }
        if (const std::int32_t leader = leaderOf(client->second);
            leader != 0 && leader != ownPid_) {
            Process& process = processes_[objectFor(leader)];
            process.streams.push_back(serial);
            if (process.name.empty()) {
                process.name = client->second.applicationName;
            }
        }
    }
}

std::vector<AudioObjectID> ProcessDirectory::objects() const {
    const auto ids = processes_ | std::views::keys;
    return {ids.begin(), ids.end()};
}

std::int32_t ProcessDirectory::pid(AudioObjectID object) const {
    const auto found = processes_.find(object);
    return found == processes_.end() ? 0 : found->second.leader;
}

AudioObjectID ProcessDirectory::objectOf(std::int32_t leader) const {
    const auto found = std::ranges::find_if(
        processes_, [leader](const auto& one) { return one.second.leader == leader; });
    return found == processes_.end() ? 0 : found->first;
}

std::string ProcessDirectory::name(std::int32_t leader) const {
    const auto found = processes_.find(objectOf(leader));
    return found == processes_.end() ? std::string{} : found->second.name;
}

const std::vector<Serial>& ProcessDirectory::streams(AudioObjectID object) const {
    static const std::vector<Serial> none;
    const auto found = processes_.find(object);
    return found == processes_.end() ? none : found->second.streams;
}

std::int32_t ProcessDirectory::leaderOf(const Client& client) const {
    const auto found = leaders_.find(client.pid);
    return found == leaders_.end() ? 0 : found->second;
}

AudioObjectID ProcessDirectory::objectFor(std::int32_t leader) {
    if (const AudioObjectID known = objectOf(leader); known != 0) {
        return known;
    }
    const AudioObjectID made = ids_.next();
    processes_[made].leader = leader;
    return made;
}

} // namespace velmora::pipewire
