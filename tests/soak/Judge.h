// Judge.h: compares what is so with what should be.
#pragma once

#include "soak/Hearing.h"
#include "soak/Stage.h"
#include "soak/World.h"

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velmora::soak {

/// What is wrong, a sentence each; empty = nothing.
using Findings = std::vector<std::string>;

/// What the mixer says of itself. @param status  as of the command "status"
[[nodiscard]] Findings compareStatus(const World& world, const nlohmann::json& status);

/// Nodes and links of the mixer's that should not be there, or not so often.
[[nodiscard]] Findings compareGraph(const World& world, const support::AudioGraph& graph);

/// What is heard at this moment, over a quarter of a second.
[[nodiscard]] Findings compareSound(const World& world, const Stage& stage);

/// What was allowed to sound, at whatever moment, since the recorders were started.
class Allowed {
public:
    /// Whatever may be heard in this world; while it is so or becomes so.
    void add(const World& world);
    /// Nothing tells a program apart from one whose mute has gone with the sound server.
    void addDirect(const World& world);

    /// Tones in the recordings that never were.
    [[nodiscard]] Findings intruders(const World& world, const Stage& stage) const;

private:
    std::set<std::pair<Ear, double>> tones_;
};

} // namespace velmora::soak
