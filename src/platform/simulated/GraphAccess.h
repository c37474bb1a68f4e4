// GraphAccess.h: how the simulated interfaces read the graph and ask it for something. Private to
// this folder.
#pragma once

#include "platform/simulated/SoundGraph.h"

#include <functional>
#include <mutex>
#include <optional>
#include <type_traits>
#include <vector>

namespace velmora {

/// Runs `answer` under the lock unless the service is away or the read is refused.
template <typename Answer>
auto read(SoundGraph& graph, Operation operation, AudioObjectID object, Answer answer)
    -> decltype(answer()) {
    const std::scoped_lock guard(graph.mutex);
    if (!graph.isAvailable || graph.refusals.find(operation, object)) {
        return std::nullopt;
    }
    return answer();
}

/// Answers with what `select` makes of the object, or with none when there is no such object.
template <typename Object, typename Select>
auto selected(const Object* object, Select select) {
    using Value = std::remove_cvref_t<std::invoke_result_t<Select, const Object&>>;
    return object == nullptr ? std::nullopt : std::optional<Value>(select(*object));
}

template <typename Items>
std::vector<AudioObjectID> idsOf(const Items& items) {
    std::vector<AudioObjectID> ids;
    ids.reserve(items.size());
    for (const auto& item : items) {
        ids.push_back(item.id);
    }
    return ids;
}

} // namespace velmora
