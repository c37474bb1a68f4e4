#include "platform/pipewire/FilterNode.h"

#include "platform/pipewire/RealtimeMath.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// A filter that streams is called in the next cycle; one was seen to wait for seconds
/// (libpipewire 0.3.65, dozens of nodes opened at once) until something woke it.
constexpr auto callsExpectedWithin = 500ms;

/// More would not fit between the two ends of a ring.
constexpr std::uint32_t largestCycleFrames = 1024;

std::string fraction(std::uint32_t frames, double rateHz) {
    return std::to_string(frames) + "/" + std::to_string(static_cast<std::uint32_t>(rateHz));
}

Properties nodeProperties(const FilterNode::Setup& setup) {
    return {
        {PW_KEY_NODE_NAME, setup.name},
        {PW_KEY_NODE_DESCRIPTION, setup.description},
        {PW_KEY_MEDIA_TYPE, "Audio"},
        {PW_KEY_MEDIA_CATEGORY, "Filter"},
        {PW_KEY_MEDIA_ROLE, "DSP"},
        // Nobody but us links these nodes.
        {PW_KEY_NODE_AUTOCONNECT, "false"},
        {PW_KEY_NODE_LATENCY, fraction(setup.blockFrames, setup.rateHz)},
        {"node.max-latency", fraction(largestCycleFrames, setup.rateHz)},
        // One driver for all of them, also while a device that one of them plays to is away.
        {PW_KEY_NODE_GROUP, "velmora"},
        {PW_KEY_NODE_ALWAYS_PROCESS, "true"},
    };
}

} // namespace

FilterNode::FilterNode(std::shared_ptr<NodeLoop> loop, Handler& handler)
    : handler_(handler), loop_(std::move(loop)) {
}

FilterNode::~FilterNode() {
    const Loop::Lock lock(loop_->loop());
    watchdog_.reset();
    hook_.reset();
    filter_.reset(); // waits for the data thread to finish its cycle
    core_.reset();
}

StatusOr<std::unique_ptr<FilterNode>>
FilterNode::open(std::shared_ptr<NodeLoop> loop, const Setup& setup, Handler& handler) {
    try {
        std::unique_ptr<FilterNode> node(new FilterNode(std::move(loop), handler));
        if (const Status status = node->connect(setup); status != statusOk) {
            return std::unexpected(status);
        }
        return node;
    } catch (const std::bad_alloc&) {
        return std::unexpected(-ENOMEM);
    }
}

Status FilterNode::connect(const Setup& setup) {
    static constexpr pw_filter_events events = [] {
        pw_filter_events made{};
        made.version = PW_VERSION_FILTER_EVENTS;
        made.state_changed = [](void* self, pw_filter_state, pw_filter_state state, const char*) {
            static_cast<FilterNode*>(self)->onState(state);
        };
        made.process = [](void* self, spa_io_position* position) {
            static_cast<FilterNode*>(self)->onProcess(position);
        };
        return made;
    }();

    const Loop::Lock lock(loop_->loop());
    if (const Status status = openFilter(setup); status != statusOk) {
        return status;
    }
    hook_ = std::make_unique<Hook>();
    pw_filter_add_listener(filter_.get(), hook_->get(), &events, this);
    for (const PortSetup& port : setup.ports) {
        if (!addPort(port)) {
            return -ENOMEM;
        }
    }
    watchdog_ = std::make_unique<LoopTimer>(loop_->loop(), [this] { checkCalls(); });
    const Status status = pw_filter_connect(filter_.get(), PW_FILTER_FLAG_RT_PROCESS, nullptr, 0);
    return std::min(status, statusOk);
}

Status FilterNode::openFilter(const Setup& setup) {
    core_ = loop_->connect();
    if (core_) {
        filter_.reset(pw_filter_new(
            core_.get(), setup.name.c_str(), makeProperties(nodeProperties(setup)).release()));
    }
    return filter_ ? statusOk : -(errno == 0 ? EIO : errno);
}

bool FilterNode::addPort(const PortSetup& port) {
    constexpr std::size_t dataSize = sizeof(int); // unused, but must not be 0
    auto properties = makeProperties(
        {{PW_KEY_PORT_NAME, port.name}, {PW_KEY_FORMAT_DSP, "32 bit float mono audio"}});
    const bool isInput = port.direction == Direction::input;
    ports_.push_back(pw_filter_add_port(filter_.get(),
                                        isInput ? PW_DIRECTION_INPUT : PW_DIRECTION_OUTPUT,
                                        PW_FILTER_PORT_FLAG_MAP_BUFFERS,
                                        dataSize,
                                        properties.release(),
                                        nullptr,
                                        0));
    return ports_.back() != nullptr;
}

float* FilterNode::buffer(std::size_t index, std::uint32_t frames) const noexcept {
    return static_cast<float*>(pw_filter_get_dsp_buffer(ports_[index], frames));
}

void FilterNode::onState(pw_filter_state state) {
    if (state == PW_FILTER_STATE_STREAMING && watchdog_) {
        callsSeen_ = calls_.load(std::memory_order_relaxed);
        watchdog_->start(callsExpectedWithin);
    }
}

void FilterNode::checkCalls() {
    const bool isStreaming =
        pw_filter_get_state(filter_.get(), nullptr) == PW_FILTER_STATE_STREAMING;
    if (isStreaming && calls_.load(std::memory_order_relaxed) == callsSeen_) {
        pw_filter_set_active(filter_.get(), false);
        pw_filter_set_active(filter_.get(), true);
        watchdog_->start(callsExpectedWithin);
    }
}

void FilterNode::onProcess(const spa_io_position* position) noexcept {
    calls_.fetch_add(1, std::memory_order_relaxed);
    if (position == nullptr) {
        return;
    }
    flushDenormals();
    const spa_io_clock& clock = position->clock;
    const auto frames = static_cast<std::uint32_t>(clock.duration);
    handler_.process(*this,
                     {.frames = frames, .turn = clock_.next(clock.id, clock.position, frames)});
}

} // namespace velmora::pipewire
