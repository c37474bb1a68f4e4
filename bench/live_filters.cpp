// velmora_live_filters: nodes that are called in every cycle and do nothing, all on one connection
// and one real-time thread, as the mixer's nodes are. What the sound server costs.
//
// velmora_live_filters <count>
// The nodes are empty.0, empty.1 ..., each with the inputs left and right. Tells "running" on
// stdout, and answers each line on stdin by how many frames its nodes have missed so far.

#include "platform/pipewire/FilterNode.h"

#include <pipewire/pipewire.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace velmora::pipewire;

class EmptyNode final : FilterNode::Handler {
public:
    EmptyNode(std::shared_ptr<NodeLoop> loop, int number) {
        using enum FilterNode::Direction;
        auto node = FilterNode::open(std::move(loop),
                                     {.name = "empty." + std::to_string(number),
                                      .description = "Empty",
                                      .ports = {{"left", input}, {"right", input}},
                                      .blockFrames = 128,
                                      .rateHz = 48000},
                                     *this);
        if (!node) {
            std::cerr << "velmora_live_filters: error " << node.error() << '\n';
            std::exit(1);
        }
        node_ = *std::move(node);
    }

    [[nodiscard]] std::uint64_t missedFrames() const { return missedFrames_; }

private:
    void process(const FilterNode& node, const FilterNode::Cycle& cycle) noexcept override {
        static_cast<void>(node.buffer(0, cycle.frames));
        static_cast<void>(node.buffer(1, cycle.frames));
        missedFrames_ += cycle.turn.missedFrames;
    }

    std::atomic<std::uint64_t> missedFrames_{0};
    std::unique_ptr<FilterNode> node_; // last: its end is the end of all callbacks
};

} // namespace

int main(int argc, char** argv) {
    pw_init(nullptr, nullptr);
    const int count = argc > 1 ? std::atoi(argv[1]) : 0;
    const auto loop = NodeLoop::open();
    if (!loop) {
        std::cerr << "velmora_live_filters: error " << loop.error() << '\n';
        return 1;
    }
    std::vector<std::unique_ptr<EmptyNode>> nodes;
    for (int number = 0; number < count; ++number) {
        nodes.push_back(std::make_unique<EmptyNode>(*loop, number));
    }
    std::cout << "running" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        std::uint64_t missed = 0;
        for (const auto& node : nodes) {
            missed += node->missedFrames();
        }
        std::cout << missed << std::endl;
    }
    return 0;
}
