// ControlTest.h: the backend's control side on a private session, without the mixer's interfaces.
#pragma once

#include "platform/pipewire/RunningPart.h"
#include "platform/pipewire/Session.h"
#include "platform/pipewire/node/PlaybackPart.h"
#include "support/ClientPrograms.h"
#include "support/SessionTest.h"
#include "support/Wait.h"

#include <atomic>
#include <memory>
#include <span>
#include <string>
#include <utility>

namespace velmora {

class PipeWireLibrary {
public:
    PipeWireLibrary() { pw_init(nullptr, nullptr); }
    ~PipeWireLibrary() { pw_deinit(); }
    PipeWireLibrary(const PipeWireLibrary&) = delete;
    PipeWireLibrary& operator=(const PipeWireLibrary&) = delete;
};

/// An output of the mix, and how often it was called.
class CalledPart {
public:
    CalledPart(pipewire::Session& backend, const std::string& device) : part_(backend) {
        EXPECT_EQ(
            part_.start({.rateHz = 48000},
                        pipewire::PlaybackRoute{.deviceUID = device, .map = {0, 1}},
                        [calls = calls_](std::int64_t, std::span<float* const>) { ++*calls; }),
            statusOk);
    }

    [[nodiscard]] bool isAlive() const { return part_.isAlive(); }
    [[nodiscard]] int calls() const { return *calls_; }

private:
    std::shared_ptr<std::atomic<int>> calls_ = std::make_shared<std::atomic<int>>(0);
    pipewire::RunningPart<pipewire::PlaybackPart> part_;
};

/// The control side by itself, and what it tells.
class ControlTest : public support::SessionTest {
protected:
    ControlTest() { backend.waitForListing(support::patience); }

    void TearDown() override {
        session().startServices(); // what a failed test left dead
        support::SessionTest::TearDown();
    }

    static std::string ownNode() {
        const support::AudioGraph graph = session().graph();
        for (const support::GraphNode& node : graph.nodes()) {
            if (node.name.starts_with("velmora.mix.")) {
                return node.name;
            }
        }
        return {};
    }
    /// Nothing more is told for a while.
    void settle() {
        int seen = -1;
        EXPECT_TRUE(support::waitUntil(
            [&] { return std::exchange(seen, changed.load()) == changed.load(); }));
    }

    PipeWireLibrary library;
    std::atomic<int> changed = 0;
    std::atomic<int> defaultOutputChanged = 0;
    std::atomic<const CalledPart*> watched = nullptr;
    std::atomic<int> changedSinceDeath = 0;
    pipewire::Session backend{
        {.unknownApplications =
             [this](const auto& claims) {
                 backend.change([&](pipewire::SessionState& state) {
                     for (const auto& [client, claim] : claims) {
                         state.processes.resolve(
                             client,
                             claim,
                             {.program = {.pid = claim.pid}, .leader = {.pid = claim.pid}});
                     }
                 });
             },
         .notFirst = [](pipewire::ThreadId) {},
         .cardsNamed = [](const auto&) {},
         .muteEnding = [this](AudioObjectID mute) { backend.endMute(mute); },
         .defaultOutputChanged = [this] { ++defaultOutputChanged; },
         .changed =
             [this] {
                 ++changed;
                 const CalledPart* const part = watched;
                 changedSinceDeath += part != nullptr && !part->isAlive();
             }},
        {}};
};

} // namespace velmora
