// MixNode.h: the one node of ours that everything passes through.
#pragma once

#include "platform/AudioUnits.h"
#include "platform/GrowingPause.h"
#include "platform/Status.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/daemon/Loop.h"
#include "platform/pipewire/daemon/ThreadRights.h"
#include "platform/pipewire/node/IdleInputs.h"
#include "platform/pipewire/node/NodeLife.h"
#include "platform/pipewire/node/NodePorts.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora::pipewire {

class MixPart;

/// A pw_filter with mono float ports, called once per graph cycle on a real-time thread of its own.
///
/// All captures and outputs of a mix are parts of one node. So the daemon drives all of them by one
/// clock and calls them when every source of a cycle is ready, in one wake-up; waking a thread
/// costs several times what a source's effects cost. It also sees every loop of links through us,
/// and makes one of them a feedback. A second of sound takes a source some milliseconds of that
/// thread, so that it never gets near to a whole core.
///
/// Threads: main. Real-time: no.
class MixNode {
public:
    struct Setup {
        std::string name;            ///< `node.name`, never used before
        std::uint32_t blockFrames{}; ///< wanted frames per cycle, at `rateHz`
        double rateHz{};
        std::uint32_t leastFrames{}; ///< see `askForAtLeast`
        std::function<void()> died;  ///< called on the node's own thread, which must not wait
    };

    /// Errors: the status when the client configuration cannot be loaded, no daemon answers or
    /// there is no thread.
    [[nodiscard]] static StatusOr<std::shared_ptr<MixNode>> open(const Setup& setup);
    ~MixNode();
    MixNode(const MixNode&) = delete;
    MixNode& operator=(const MixNode&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }
    /// A dead node's parts are dead, and not called any more.
    [[nodiscard]] const std::shared_ptr<NodeLife>& life() const { return life_; }
    /// The smallest wish so far counts.
    void askForBlocksOf(std::uint32_t frames, double rateHz);
    /// Smaller blocks than this are not asked for, whatever was wished.
    void askForAtLeast(std::uint32_t frames);
    /// Whether its real-time thread has the priority of one; none before its first cycle.
    [[nodiscard]] std::optional<bool> isRealTime() const;
    /// The daemon has no link to or from these ports any more; they serve again when it has told
    /// this node so too. Threads: any.
    void portsAreClear(std::vector<std::string> names);

private:
    friend class MixPart;

    explicit MixNode(const Setup& setup);
    Status start(const Setup& setup);
    Status connect(const Setup& setup);
    void onState(pw_filter_state state);
    void onProcess(const spa_io_position* position) noexcept;
    void onDone(int sequence);
    void checkCalls();
    [[nodiscard]] std::string wishedLatency() const;
    void tellWish();

    // For the parts. Threads: any, with the node's lock.
    /// Null when there is no memory.
    [[nodiscard]] const NodePorts::Port* takePort(NodePorts::Direction direction);
    [[nodiscard]] const NodePorts::Port* addPort(NodePorts::Direction direction);
    /// From here on the part is called, captures before outputs.
    void enlist(MixPart& part);
    /// When this returns, the part is not running and will not run again.
    void dismiss(MixPart& part);
    /// Runs `change` on the real-time thread, and waits for it.
    template <typename Change>
    void betweenCalls(Change change);

    std::atomic<std::uint64_t> calls_{0}; // written by the real-time thread
    std::vector<MixPart*> parts_;         // captures first; written between calls only
    IdleInputs idleInputs_;               // written between calls only
    double blockSeconds_;                 // the smallest wish
    double rateHz_;                       // of that wish
    std::uint32_t leastFrames_;
    std::atomic<ThreadId> callingThread_{0};
    std::uint64_t callsSeen_ = 0;
    GrowingPause callsPause_;
    std::string name_;
    std::function<void()> died_;
    std::shared_ptr<NodeLife> life_ = std::make_shared<NodeLife>();
    Loop loop_;
    ContextHandle context_;
    std::unique_ptr<LoopTimer> watchdog_;
    CoreHandle core_;
    std::unique_ptr<Hook> coreHook_;
    FilterHandle filter_;
    std::unique_ptr<Hook> hook_;
    NodePorts ports_;
    std::map<int, std::vector<std::string>> clearing_; // by the answer's sequence
};

/// Hands out the node that other parts are on, so that it lives from the first part to the last.
/// One that is dead is replaced.
///
/// Threads: main. Real-time: no.
class MixNodes {
public:
    /// Errors: as `MixNode::open`.
    [[nodiscard]] StatusOr<std::shared_ptr<MixNode>> take(MixNode::Setup setup);
    /// Of the node that is there, and of those to come; see `MixNode::askForAtLeast`.
    void askForAtLeast(std::uint32_t frames);
    /// Of the node that is there; what was missed, of all so far.
    [[nodiscard]] BlockReport blocks() const;

private:
    std::weak_ptr<MixNode> latest_;
    std::shared_ptr<NodeLife> latestLife_; // also once it has gone
    std::uint64_t missedBefore_ = 0;       // by the nodes before
    std::uint32_t leastFrames_ = 0;
};

} // namespace velmora::pipewire
