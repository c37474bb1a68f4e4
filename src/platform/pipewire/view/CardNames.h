// CardNames.h: keeps the UIDs of a card's devices while its profiles change.
#pragma once

#include "platform/pipewire/view/CardPlace.h"
#include "platform/pipewire/view/Graph.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmora::pipewire {

/// A node of a card is named after the card's profile. The mixer knows the device by the name that
/// it had first: when that node has gone and exactly one other is at its place, that one is the
/// device. A node that was known by its own name once stays what it is.
///
/// Threads: one at a time.
class CardNames {
public:
    /// @param kept  as `kept` gave it in a run before; empty, or unreadable: nothing is known
    explicit CardNames(std::string_view kept = {});

    /// Gives a UID to every node of a card. To be called after every change of a graph that is
    /// listed. Returns whether `kept` has changed.
    [[nodiscard]] bool follow(Graph& graph);

    /// One text, for the next run. Of the oldest devices that are away, no more than a few hundred.
    [[nodiscard]] std::string kept() const;

private:
    struct Known {
        std::string uid;
        CardPlace place;
    };
    [[nodiscard]] const Known*
    deviceAt(const Graph& graph, const Node& node, const std::vector<const Node*>& strangers) const;
    void forgetSome(const Graph& graph);

    std::vector<Known> known_; // oldest first
};

} // namespace velmora::pipewire
