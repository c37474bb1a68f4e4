#include "platform/pipewire/Units.h"

#include "platform/pipewire/PlaybackNode.h"
#include "platform/pipewire/RecordingNode.h"

#include <algorithm>
#include <cerrno>

namespace velmora::pipewire {
namespace {

/// The device that a unit was pointed at.
struct Target {
    AudioObjectID id{};
    std::string uid;
    std::uint32_t channels{};
    std::uint32_t blockFrames{usualBlockFrames};
    double rateHz{};
};

StatusOr<Target> findTarget(Session& session, AudioObjectID id, Scope scope) {
    return session.read([&](SessionState& state, bool isAvailable) -> StatusOr<Target> {
        if (!isAvailable) {
            return std::unexpected(-EHOSTDOWN);
        }
        const auto devices = listDevices(state.graph);
        const auto device = std::ranges::find_if(
            devices, [&](const Device& one) { return state.ids.ofDevice(one.uid) == id; });
        if (device == devices.end()) {
            return std::unexpected(-ENODEV);
        }
        const std::uint32_t channels = scope == Scope::input ? device->inputs : device->outputs;
        if (channels == 0) {
            return std::unexpected(-ENXIO);
        }
        const auto asked = state.blockFrames.find(id);
        return Target{.id = id,
                      .uid = device->uid,
                      .channels = channels,
                      .blockFrames =
                          asked == state.blockFrames.end() ? usualBlockFrames : asked->second,
                      .rateHz = state.graph.rate()};
    });
}

/// The device may have gone since the unit was pointed at it.
Status checkTarget(Session& session, const std::optional<Target>& target, Scope scope) {
    if (!target) {
        return -ENODEV;
    }
    const auto found = findTarget(session, target->id, scope);
    return found ? statusOk : found.error();
}

/// A route that exists as long as this object.
class RouteHold {
public:
    RouteHold(Session& session, std::string_view kind, Route route) : session_(session) {
        session_.change([&](SessionState& state) {
            name_ = state.newNodeName(kind);
            state.routes[name_] = std::move(route);
        });
    }
    ~RouteHold() {
        session_.change([&](SessionState& state) { state.routes.erase(name_); });
    }
    RouteHold(const RouteHold&) = delete;
    RouteHold& operator=(const RouteHold&) = delete;

    [[nodiscard]] const std::string& nodeName() const { return name_; }

private:
    Session& session_;
    std::string name_;
};

class PipeWireOutput final : public OutputUnit {
public:
    explicit PipeWireOutput(Session& session) : session_(session) {}
    ~PipeWireOutput() override { PipeWireOutput::stop(); }

    Status setDevice(AudioObjectID device) override {
        auto target = findTarget(session_, device, Scope::output);
        if (!target) {
            return target.error();
        }
        target_ = *std::move(target);
        map_ = {0, 1};
        return statusOk;
    }

    Status setChannelMap(std::span<const std::int32_t> map) override {
        if (!target_) {
            return -ENODEV;
        }
        const bool isValid = map.size() <= target_->channels &&
                             std::ranges::all_of(map, [](auto at) { return at >= -1 && at <= 1; });
        if (!isValid) {
            return -EINVAL;
        }
        map_.assign(map.begin(), map.end());
        return statusOk;
    }

    [[nodiscard]] double sampleRate() const override { return target_ ? target_->rateHz : 0.0; }

    Status start(RenderCallback render) override {
        stop();
        if (const Status status = checkTarget(session_, target_, Scope::output);
            status != statusOk) {
            return status;
        }
        route_.emplace(session_, "output", PlaybackRoute{.deviceUID = target_->uid, .map = map_});
        auto node = PlaybackNode::open(
            route_->nodeName(), target_->blockFrames, target_->rateHz, std::move(render));
        if (!node) {
            route_.reset();
            return node.error();
        }
        node_ = *std::move(node);
        return statusOk;
    }

    void stop() noexcept override {
        route_.reset();
        node_.reset();
    }

private:
    Session& session_;
    std::optional<Target> target_;
    std::vector<std::int32_t> map_;
    std::optional<RouteHold> route_;
    std::unique_ptr<PlaybackNode> node_;
};

class PipeWireInput final : public InputUnit {
public:
    explicit PipeWireInput(Session& session) : session_(session) {}
    ~PipeWireInput() override { PipeWireInput::stop(); }

    Status setDevice(AudioObjectID device) override {
        auto target = findTarget(session_, device, Scope::input);
        if (!target) {
            return target.error();
        }
        target_ = *std::move(target);
        return statusOk;
    }

    [[nodiscard]] std::uint32_t channelCount() const override {
        return target_ ? target_->channels : 0;
    }

    [[nodiscard]] double sampleRate() const override { return target_ ? target_->rateHz : 0.0; }

    Status start(ReceiveCallback receive) override {
        stop();
        if (const Status status = checkTarget(session_, target_, Scope::input);
            status != statusOk) {
            return status;
        }
        route_.emplace(session_,
                       "input",
                       RecordingRoute{.deviceUID = target_->uid, .channels = target_->channels});
        auto node = RecordingNode::open({.name = route_->nodeName(),
                                         .channels = target_->channels,
                                         .blockFrames = target_->blockFrames,
                                         .rateHz = target_->rateHz},
                                        std::move(receive));
        if (!node) {
            route_.reset();
            return node.error();
        }
        node_ = *std::move(node);
        return statusOk;
    }

    void stop() noexcept override {
        route_.reset();
        node_.reset();
    }

private:
    Session& session_;
    std::optional<Target> target_;
    std::optional<RouteHold> route_;
    std::unique_ptr<RecordingNode> node_;
};

} // namespace

std::unique_ptr<OutputUnit> Units::makeOutput() {
    return std::make_unique<PipeWireOutput>(session_);
}

std::unique_ptr<InputUnit> Units::makeInput() {
    return std::make_unique<PipeWireInput>(session_);
}

} // namespace velmora::pipewire
