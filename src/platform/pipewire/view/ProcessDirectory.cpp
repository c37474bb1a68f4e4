#include "platform/pipewire/view/ProcessDirectory.h"

#include <algorithm>
#include <ranges>

namespace velmora::pipewire {
namespace {

/// Applications that have left; most never come back.
constexpr std::ptrdiff_t mostRemembered = 256;

/// A process has further names, should its connection give none; a stand-in has not.
std::string nameOf(const Client& client, const Node& stream, bool isStandIn) {
    if (!client.applicationName.empty() || !isStandIn) {
        return client.applicationName;
    }
    return client.claim.program.empty() ? stream.description : client.claim.program;
}

} // namespace

bool isOutputStream(const Node& node) {
    if (node.mediaClass == "Stream/Output/Audio") {
        return true;
    }
    // Programs that come through JACK, and PipeWire's own filters, are plain nodes without a class.
    const auto hasAudio = [&](bool isOutput) {
        return std::ranges::any_of(node.ports, [isOutput](const Port& port) {
            return port.isOutput == isOutput && port.isAudio;
        });
    };
    if (!node.isDescribed || !node.mediaClass.empty() || !hasAudio(/*isOutput=*/true)) {
        return false;
    }
    // A filter that also hears passes on what others play.
    return node.clientApi == "jack" ||
           (node.clientApi.empty() && node.linkGroup.empty() && !hasAudio(/*isOutput=*/false));
}

void ProcessDirectory::update(const Graph& graph) {
    forgetOwners(graph);
    std::set<std::int32_t> liveLeaders;
    unresolved_.clear();
    for (const auto& [serial, client] : graph.clients()) {
        if (const Owner* const owner = ownerOf(serial)) {
            liveLeaders.insert(owner->leader.pid);
        } else {
            ask(client);
        }
    }
    for (auto& process : processes_ | std::views::values) {
        process.streams.clear();
        process.isHere = process.isHere && liveLeaders.contains(process.leader.pid);
    }
    for (const auto& [serial, node] : graph.nodes()) {
        const auto client = graph.clients().find(node.client);
        if (client == graph.clients().end() || !isOutputStream(node)) {
            continue;
        }
        const Owner* const owner = ownerOf(client->first);
        if (owner != nullptr && owner->leader.pid != ownPid_) {
            Process& process = processes_[objectFor(owner->leader)];
            process.isHere = true;
            process.streams.push_back(serial);
            process.bundleID = owner->program.bundleID;
            if (process.name.empty()) {
                process.name = nameOf(client->second, node, owner->program.pid == 0);
            }
        }
    }
}

/// What a client says of itself may change: then it is another question.
void ProcessDirectory::forgetOwners(const Graph& graph) {
    std::erase_if(owners_, [&](const auto& one) {
        const auto client = graph.clients().find(one.first);
        return client == graph.clients().end() || client->second.claim != one.second.claim;
    });
}

void ProcessDirectory::ask(const Client& client) {
    if (client.isDescribed && !isOurs(client)) {
        unresolved_[client.serial] = client.claim;
    }
}

void ProcessDirectory::resolve(Serial client, const ProgramClaim& claim, const Owner& owner) {
    const auto question = unresolved_.find(client);
    if (question == unresolved_.end() || question->second != claim) {
        return;
    }
    unresolved_.erase(question);
    KnownOwner known{.claim = claim, .owner = owner};
    if (owner.program.pid == 0) {
        known.owner.leader = {.pid = nextStandIn_++};
    } else {
        // Connections of one process stay together, also when its parent has ended meanwhile.
        const auto same = std::ranges::find_if(owners_, [&](const auto& one) {
            return one.second.owner.program.pid == owner.program.pid;
        });
        if (same != owners_.end()) {
            known.owner.leader = same->second.owner.leader;
        }
    }
    owners_.insert_or_assign(client, std::move(known));
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

AudioObjectID ProcessDirectory::objectOfClient(Serial client) const {
    const Owner* const owner = ownerOf(client);
    return owner == nullptr ? 0 : objectOf(owner->leader.pid);
}

bool ProcessDirectory::isOurs(const Client& client) const {
    return client.claim.isVouchedFor && client.claim.pid == ownPid_;
}

std::string ProcessDirectory::name(std::int32_t leader) const {
    const Process* const process = here(objectOf(leader));
    return process == nullptr ? std::string{} : process->name;
}

std::string ProcessDirectory::bundleID(std::int32_t leader) const {
    const Process* const process = here(objectOf(leader));
    return process == nullptr ? std::string{} : process->bundleID;
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

const ProcessDirectory::Owner* ProcessDirectory::ownerOf(Serial client) const {
    const auto found = owners_.find(client);
    return found == owners_.end() ? nullptr : &found->second.owner;
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
