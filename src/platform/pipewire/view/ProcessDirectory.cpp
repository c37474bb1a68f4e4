#include "platform/pipewire/view/ProcessDirectory.h"

#include <algorithm>
#include <ranges>

namespace velmora::pipewire {
namespace {

/// Applications that have left; most never come back.
constexpr std::ptrdiff_t mostRemembered = 256;

} // namespace

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
        if (const Leader leader = leaderOf(client); leader.pid != 0) {
            liveLeaders.insert(leader.pid);
        } else {
            unresolved_.insert(client.pid);
        }
    }
    // A number may be given to another process later: ask again when its last client has left.
    std::erase_if(leaders_, [&](const auto& one) { return !livePids.contains(one.first); });
    for (auto& process : processes_ | std::views::values) {
        process.streams.clear();
        process.isHere = process.isHere && liveLeaders.contains(process.leader.pid);
    }
    for (const auto& [serial, node] : graph.nodes()) {
        const auto client = graph.clients().find(node.client);
        if (client == graph.clients().end() || !isOutputStream(node)) {
            continue;
        }
        if (const Leader leader = leaderOf(client->second);
            leader.pid != 0 && leader.pid != ownPid_) {
            Process& process = processes_[objectFor(leader)];
            process.isHere = true;
            process.streams.push_back(serial);
            if (process.name.empty()) {
                process.name = client->second.applicationName;
            }
        }
    }
}

std::vector<AudioObjectID> ProcessDirectory::objects() const {
    std::vector<AudioObjectID> ids;
    for (const auto& [id, process] : processes_) {
        if (process.isHere) {
            ids.push_back(id);
        }
    }
    return ids;
}

std::int32_t ProcessDirectory::pid(AudioObjectID object) const {
    const Process* const process = here(object);
    return process == nullptr ? 0 : process->leader.pid;
}

AudioObjectID ProcessDirectory::objectOf(std::int32_t leader) const {
    const auto found = std::ranges::find_if(processes_, [leader](const auto& one) {
        return one.second.isHere && one.second.leader.pid == leader;
    });
    return found == processes_.end() ? 0 : found->first;
}

std::string ProcessDirectory::name(std::int32_t leader) const {
    const Process* const process = here(objectOf(leader));
    return process == nullptr ? std::string{} : process->name;
}

const std::vector<Serial>& ProcessDirectory::streams(AudioObjectID object) const {
    static const std::vector<Serial> none;
    const Process* const process = here(object);
    return process == nullptr ? none : process->streams;
}

const ProcessDirectory::Process* ProcessDirectory::here(AudioObjectID object) const {
    const auto found = processes_.find(object);
    return found == processes_.end() || !found->second.isHere ? nullptr : &found->second;
}

ProcessDirectory::Leader ProcessDirectory::leaderOf(const Client& client) const {
    const auto found = leaders_.find(client.pid);
    return found == leaders_.end() ? Leader{} : found->second;
}

AudioObjectID ProcessDirectory::objectFor(Leader leader) {
    if (const AudioObjectID present = objectOf(leader.pid); present != 0) {
        return present;
    }
    const auto isSame = [&](const auto& one) {
        return one.second.leader.pid == leader.pid && leader.start != 0 &&
               one.second.leader.start == leader.start;
    };
    if (const auto back = std::ranges::find_if(processes_, isSame); back != processes_.end()) {
        return back->first;
    }
    forgetOldest();
    const AudioObjectID made = ids_.next();
    processes_[made].leader = leader;
    return made;
}

void ProcessDirectory::forgetOldest() {
    const auto hasLeft = [](const auto& one) { return !one.second.isHere; };
    if (std::ranges::count_if(processes_, hasLeft) > mostRemembered) {
        processes_.erase(std::ranges::find_if(processes_, hasLeft));
    }
}

} // namespace velmora::pipewire
