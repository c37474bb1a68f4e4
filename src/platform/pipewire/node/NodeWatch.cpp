#include "platform/pipewire/node/NodeWatch.h"

#include <utility>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// While a node of ours lives. The thread that is told the rate must not wake anybody.
constexpr auto measureEvery = 500ms;

} // namespace

NodeWatch::NodeWatch(const Loop& loop, GraphRate& rate, std::function<void()> rateChanged)
    : rate_(rate), rateChanged_(std::move(rateChanged)), timer_(loop, [this] { measure(); }) {
}

std::optional<std::string> NodeWatch::watch(const MixNode& node) {
    auto dead = countDeath();
    name_ = node.name();
    life_ = node.life();
    isSeen_ = false;
    timer_.start(measureEvery);
    return dead;
}

void NodeWatch::lose() {
    if (life_) {
        life_->end();
    }
}

std::optional<std::string> NodeWatch::follow(const Graph& graph) {
    const bool isThere = graph.nodeNamed(name_) != nullptr;
    if (std::exchange(isSeen_, isThere) && !isThere) {
        lose();
    }
    return countDeath();
}

std::optional<std::string> NodeWatch::countDeath() {
    if (!life_ || !life_->isDead()) {
        return std::nullopt;
    }
    life_.reset();
    ++deaths_;
    return name_;
}

void NodeWatch::measure() {
    if (!life_ || !life_->isAlive()) {
        rate_.stopMeasuring();
        return;
    }
    const double before = rate_.hz();
    rate_.measure(life_->cycles().rateHz());
    if (rate_.hz() != before) {
        rateChanged_();
    }
    timer_.start(measureEvery);
}

} // namespace velmora::pipewire
