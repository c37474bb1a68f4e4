// MixPart.h: one capture or one output of the mix, with ports of its own.
#pragma once

#include "platform/pipewire/node/MixNode.h"
#include "platform/pipewire/view/Routes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace velmora::pipewire {

/// Threads: main, except `buffer`. Real-time: no, except `buffer`.
class MixPart {
public:
    enum class Kind { capture, output }; ///< of a cycle, all captures are called before any output
    struct Setup {
        Kind kind{};
        std::size_t ports{}; ///< inputs of a capture, outputs of an output
    };

    /// Receives the cycles of one part.
    class Handler {
    public:
        virtual ~Handler() = default;
        /// @param frames  length of every port's block
        /// Threads: the node's real-time thread. Must not allocate, block or throw.
        virtual void process(const MixPart& part, std::uint32_t frames) noexcept = 0;
    };

    /// The ports appear shortly after, unless they have served another part. `handler` outlives the
    /// part. Errors: the status.
    [[nodiscard]] static StatusOr<std::unique_ptr<MixPart>>
    open(std::shared_ptr<MixNode> node, const Setup& setup, Handler& handler);

    /// When this returns, the handler is not running and will not run again.
    ~MixPart();
    MixPart(const MixPart&) = delete;
    MixPart& operator=(const MixPart&) = delete;

    [[nodiscard]] const std::shared_ptr<MixNode>& node() const { return node_; }
    /// Where other programs see the ports, in their order.
    [[nodiscard]] PartPorts ports() const;
    /// False once the node has ended by somebody else's doing; it stays so.
    /// Threads: any. Real-time: yes.
    [[nodiscard]] bool isAlive() const noexcept { return node_->life()->isAlive(); }

    /// The block of port `index`, `frames` floats; null while nothing is linked to it. Blocks of
    /// outputs are to be written in every cycle.
    /// Threads: inside `process`. Real-time: yes.
    [[nodiscard]] float* buffer(std::size_t index, std::uint32_t frames) const noexcept;

private:
    friend class MixNode;

    MixPart(std::shared_ptr<MixNode> node, Kind kind, Handler& handler);
    Status takePorts(std::size_t count);

    Handler& handler_;
    Kind kind_;
    std::shared_ptr<MixNode> node_;
    std::vector<const NodePorts::Port*> ports_; // the node's
};

} // namespace velmora::pipewire
