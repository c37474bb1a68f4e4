// PortClient.h: a program's own node, linked to chosen channels of other nodes of the graph.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <pipewire/filter.h>
#include <pipewire/pipewire.h>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora::support {

/// Plays into, or records from, ports of other nodes; links again when they come back.
///
/// Threads: everything on the thread that calls `run`, but `process`.
class PortClient {
public:
    enum class Direction { play, record };

    struct Target {
        std::string node;        ///< node.name
        std::uint32_t channel{}; ///< 1-based
    };

    /// One block: `frames` floats per target; a pointer may be null.
    /// Threads: the node's real-time thread.
    using Process = std::function<void(std::uint32_t frames, std::span<float* const> channels)>;

    /// @param targets  one for each of the client's own ports, in their order
    /// Errors: throws std::runtime_error when there is no sound server.
    PortClient(Direction direction, std::vector<Target> targets, Process process);
    ~PortClient();
    PortClient(const PortClient&) = delete;
    PortClient& operator=(const PortClient&) = delete;

    [[nodiscard]] pw_loop* loop() const { return pw_main_loop_get_loop(mainLoop_); }
    /// Until SIGINT, SIGTERM or the end of the connection.
    void run();
    /// How fast the clock is that the latest block came from, as that says itself. 1 = as the
    /// machine's; 0 before the first block. Threads: any.
    [[nodiscard]] double clockSpeed() const { return clockSpeed_.load(std::memory_order_relaxed); }

private:
    using PortKey = std::pair<std::uint32_t, std::uint32_t>; // node id, index in its direction

    struct Events; // the C callbacks
    void addGlobal(std::uint32_t id, const char* type, const spa_dict* properties);
    void removeGlobal(std::uint32_t id);
    [[nodiscard]] bool isTarget(std::string_view node) const;
    void linkWhatIsThere();
    void dropLinks();
    void process(const spa_io_position* position);

    Direction direction_;
    std::vector<Target> targets_;
    Process process_;
    pw_main_loop* mainLoop_;
    pw_context* context_;
    pw_core* core_ = nullptr;
    pw_registry* registry_ = nullptr;
    pw_filter* filter_ = nullptr;
    std::vector<void*> ports_;
    std::vector<float*> blocks_;
    std::atomic<double> clockSpeed_ = 0;
    spa_hook coreHook_{};
    spa_hook registryHook_{};
    spa_hook filterHook_{};

    std::map<std::string, std::uint32_t, std::less<>> nodes_; // ids of the targets by name
    std::map<PortKey, std::uint32_t> inputs_;                 // global ids of every node's ports
    std::map<PortKey, std::uint32_t> outputs_;
    struct Link {
        pw_proxy* proxy{};
        std::uint32_t targetPort{}; // global id
    };
    std::map<std::size_t, Link> links_; // by own port
};

} // namespace velmora::support
