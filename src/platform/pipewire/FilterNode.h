// FilterNode.h: a node of ours, called once per graph cycle.
#pragma once

#include "platform/Status.h"
#include "platform/pipewire/CycleClock.h"
#include "platform/pipewire/Handles.h"
#include "platform/pipewire/NodeLoop.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// One pw_filter with mono float ports, on the real-time thread of its loop.
///
/// Threads: main, except `buffer`. Real-time: no, except `buffer`.
class FilterNode {
public:
    enum class Direction { input, output };
    struct PortSetup {
        std::string name;
        Direction direction{};
    };
    struct Setup {
        std::string name;        ///< `node.name`, unique
        std::string description; ///< what a patch bay shows
        std::vector<PortSetup> ports;
        std::uint32_t blockFrames{}; ///< wanted frames per cycle, at `rateHz`
        double rateHz{};
    };

    struct Cycle {
        std::uint32_t frames{}; ///< length of every port's block
        CycleClock::Turn turn;
    };

    /// Receives the cycles of one node.
    class Handler {
    public:
        virtual ~Handler() = default;
        /// Threads: the loop's real-time thread. Must not allocate, block or throw.
        virtual void process(const FilterNode& node, const Cycle& cycle) noexcept = 0;
    };

    /// Connects to the daemon; the ports appear shortly after. `handler` outlives the node.
    /// Errors: the status; nothing is left open.
    [[nodiscard]] static StatusOr<std::unique_ptr<FilterNode>>
    open(std::shared_ptr<NodeLoop> loop, const Setup& setup, Handler& handler);

    /// When this returns, the handler is not running and will not run again.
    ~FilterNode();
    FilterNode(const FilterNode&) = delete;
    FilterNode& operator=(const FilterNode&) = delete;

    /// The block of port `index` (in the order of `Setup::ports`), `frames` floats; null while
    /// nothing is linked to it. Output blocks are to be written in every cycle.
    /// Threads: inside `process`. Real-time: yes.
    [[nodiscard]] float* buffer(std::size_t index, std::uint32_t frames) const noexcept;

private:
    FilterNode(std::shared_ptr<NodeLoop> loop, Handler& handler);
    Status connect(const Setup& setup);
    Status openFilter(const Setup& setup);
    bool addPort(const PortSetup& port);
    void onState(pw_filter_state state);
    void onProcess(const spa_io_position* position) noexcept;
    void checkCalls();

    Handler& handler_;
    std::atomic<std::uint64_t> calls_{0}; // written by the real-time thread
    CycleClock clock_;                    // real-time thread
    std::uint64_t callsSeen_ = 0;         // loop thread
    std::shared_ptr<NodeLoop> loop_;
    std::unique_ptr<LoopTimer> watchdog_;
    CoreHandle core_;
    FilterHandle filter_;
    std::unique_ptr<Hook> hook_;
    std::vector<void*> ports_;
};

} // namespace velmora::pipewire
