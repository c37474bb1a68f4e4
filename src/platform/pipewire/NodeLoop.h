// NodeLoop.h: the real-time thread that our nodes share.
#pragma once

#include "platform/Status.h"
#include "platform/pipewire/Handles.h"
#include "platform/pipewire/Loop.h"

#include <memory>

namespace velmora::pipewire {

/// A context whose nodes all run on one real-time thread, one after the other.
///
/// Waking a thread costs several times what a source's effects cost; with one thread a cycle in
/// which all sources are ready wakes it once. A second of sound takes a source some milliseconds of
/// that thread, so that it never gets near to a whole core.
///
/// Threads: main. Real-time: no.
class NodeLoop {
public:
    /// Errors: the status when the client configuration cannot be loaded or there is no thread.
    [[nodiscard]] static StatusOr<std::shared_ptr<NodeLoop>> open();
    ~NodeLoop();
    NodeLoop(const NodeLoop&) = delete;
    NodeLoop& operator=(const NodeLoop&) = delete;

    /// Its lock guards the context and every node of it.
    [[nodiscard]] const Loop& loop() const { return loop_; }

    /// One more connection to the daemon; null when none answers, errno says why. Needs the lock.
    /// Each node has its own: descriptors that are still under way to it when it goes are closed
    /// with its connection, and would be lost on a shared one (libpipewire 0.3.65).
    [[nodiscard]] CoreHandle connect() const;

private:
    NodeLoop() : loop_("velmora-nodes") {}
    Status start();

    Loop loop_;
    ContextHandle context_;
};

/// Hands out the loop that other nodes are on, so that it lives from the first node to the last.
///
/// Threads: main. Real-time: no.
class NodeLoops {
public:
    /// Errors: as `NodeLoop::open`.
    [[nodiscard]] StatusOr<std::shared_ptr<NodeLoop>> take();

private:
    std::weak_ptr<NodeLoop> latest_;
};

} // namespace velmora::pipewire
