#include "platform/pipewire/keep/RouteMemory.h"

#include "platform/pipewire/view/Muting.h"
#include "platform/pipewire/view/StreamTarget.h"

#include <cstdlib>
#include <fstream>
#include <optional>
#include <system_error>

namespace velmora::pipewire {
namespace {

namespace fs = std::filesystem;

/// By then everybody has heard of what we told, on a busy machine as well.
constexpr std::chrono::seconds heardWithin{1};

constexpr const char* queueingManagersFile = "stream-properties";

/// Of the two kinds, the one that is in use; after an update both are there.
std::optional<fs::path> newestFile(const fs::path& folder) {
    std::optional<fs::path> newest;
    fs::file_time_type time;
    for (const char* const name : {queueingManagersFile, "restore-stream"}) {
        std::error_code missing;
        const auto written = fs::last_write_time(folder / name, missing);
        if (!missing && (!newest || written > time)) {
            newest = folder / name;
            time = written;
        }
    }
    return newest;
}

} // namespace

fs::path RouteMemory::managerFolder() {
    // NOLINTBEGIN(concurrency-mt-unsafe): nobody changes the environment.
    const char* const state = std::getenv("XDG_STATE_HOME");
    const char* const home = std::getenv("HOME");
    // NOLINTEND(concurrency-mt-unsafe)
    const fs::path folder = state != nullptr && *state != '\0'
                                ? fs::path(state)
                                : fs::path(home == nullptr ? "" : home) / ".local/state";
    return folder / "wireplumber";
}

void RouteMemory::follow(Clock::time_point now) {
    std::erase_if(targets_,
                  [this](const auto& one) { return graph_.node(one.first.first) == nullptr; });
    std::erase_if(own_, [now](const auto& one) { return now - one.second.time > heardWithin; });
    for (const auto& [serial, node] : graph_.nodes()) {
        for (const char* const key : {targetNodeKey, targetObjectKey}) {
            hear(node, key, now);
        }
    }
    std::erase_if(choices_,
                  [now](const auto& one) { return now - one.second.time > writtenWithin; });
    isFirst_ = false;
}

void RouteMemory::hear(const Node& stream, const char* key, Clock::time_point now) {
    const auto value = graph_.metadata(sessionMetadata, stream.id, key);
    // What the session manager does not move nobody sends anywhere, the stand-ins of ours included:
    // to each of them it gives the target that it is about to be told anew.
    if (!isMovableStream(stream) || stream.routeKey.isEmpty()) {
        return;
    }
    if (!value) {
        targets_.erase({stream.serial, key});
        return;
    }
    const Place place{stream.serial, key};
    std::string& known = targets_[place];
    if (known == value->value) {
        return;
    }
    known = value->value;
    const Node* const device = targetOf(graph_, key, *value);
    const bool isChoice = !isFirst_ && !isOwn(place, value->value, now);
    if (isChoice && device != nullptr && !isMuteSink(*device)) {
        choices_[stream.routeKey] = {.device = device->name, .time = now};
    }
}

void RouteMemory::expect(Serial stream,
                         const char* key,
                         const std::string& value,
                         Clock::time_point now) {
    own_[{stream, key}] = {.value = value, .time = now};
}

bool RouteMemory::isOwn(const Place& place, const std::string& value, Clock::time_point now) const {
    const auto own = own_.find(place);
    return own != own_.end() && own->second.value == value && now - own->second.time <= heardWithin;
}

void RouteMemory::clear() {
    own_.clear();
    isFirst_ = true;
    targets_.clear();
    choices_.clear();
}

std::optional<std::string> RouteMemory::lastChoice(const RouteKey& key,
                                                   Clock::time_point now) const {
    const auto chosen = choices_.find(key);
    const bool isFresh = chosen != choices_.end() && now - chosen->second.time <= writtenWithin;
    return isFresh ? std::optional(chosen->second.device) : std::nullopt;
}

bool RouteMemory::isManagerQueueing() const {
    const auto path = newestFile(folder_);
    return path && path->filename() == queueingManagersFile;
}

std::optional<std::string> RouteMemory::written(const RouteKey& key) const {
    if (const auto path = newestFile(folder_)) {
        if (std::ifstream file(*path); file) {
            return storedDevice(file, key).value_or("");
        }
    }
    return std::nullopt;
}

std::string RouteMemory::device(const Node& stream, Clock::time_point now) const {
    if (stream.routeKey.isEmpty()) {
        return {};
    }
    if (const auto chosen = lastChoice(stream.routeKey, now)) {
        return *chosen;
    }
    if (const auto device = written(stream.routeKey)) {
        return *device;
    }
    for (const char* const key : {targetObjectKey, targetNodeKey}) {
        const auto value = graph_.metadata(sessionMetadata, stream.id, key);
        const Node* const device = value ? targetOf(graph_, key, *value) : nullptr;
        if (device != nullptr && !isMuteSink(*device)) {
            return device->name;
        }
    }
    return {};
}

} // namespace velmora::pipewire
