#include "platform/pipewire/node/MixNode.h"

#include "platform/AudioUnits.h"
#include "platform/pipewire/node/MixPart.h"
#include "platform/pipewire/node/RealtimeMath.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <new>
#include <utility>

/// From PipeWire 1.1 on; null where the library at hand is older.
extern "C" __attribute__((weak)) pw_loop* pw_filter_get_data_loop(pw_filter* filter);

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// A filter that streams is called in the next cycle; one was seen to wait for seconds
/// (libpipewire 0.3.65, dozens of nodes opened at once) until something woke it.
constexpr auto callsExpectedWithin = 500ms;

std::string fraction(std::int64_t frames, double rateHz) {
    return std::to_string(frames) + "/" + std::to_string(static_cast<std::uint32_t>(rateHz));
}

/// Where the filter is called. Later versions may give a context several such loops.
pw_loop* dataLoop(pw_filter* filter, pw_context* context) {
    return pw_filter_get_data_loop != nullptr
               ? pw_filter_get_data_loop(filter)
               : pw_data_loop_get_loop(pw_context_get_data_loop(context));
}

/// What a clock says of itself; only later versions of PipeWire tell what it lost.
template <typename Clock>
Cycle cycleOf(const Clock& clock) {
    Cycle cycle{.clock = clock.id,
                .position = clock.position,
                .frames = static_cast<std::uint32_t>(clock.duration),
                .rateHz = clock.rate.denom};
    if constexpr (requires { clock.xrun; }) {
        cycle.clockLost = clock.xrun;
    }
    return cycle;
}

Properties nodeProperties(const MixNode::Setup& setup, const std::string& latency) {
    return {
        {PW_KEY_NODE_NAME, setup.name},
        {PW_KEY_NODE_DESCRIPTION, "Velmora Mix"},
        {PW_KEY_MEDIA_TYPE, "Audio"},
        {PW_KEY_MEDIA_CATEGORY, "Filter"},
        {PW_KEY_MEDIA_ROLE, "DSP"},
        // Nobody but us links this node.
        {PW_KEY_NODE_AUTOCONNECT, "false"},
        {PW_KEY_NODE_LATENCY, latency},
        {"node.max-latency", fraction(largestBacklogFrames, setup.rateHz)},
        // Called on while nothing is linked to it.
        {PW_KEY_NODE_GROUP, "velmora"},
        {PW_KEY_NODE_ALWAYS_PROCESS, "true"},
    };
}

} // namespace

MixNode::MixNode(const Setup& setup)
    : blockSeconds_(setup.blockFrames / setup.rateHz), rateHz_(setup.rateHz),
      leastFrames_(setup.leastFrames), callsPause_(callsExpectedWithin), name_(setup.name),
      died_(setup.died), loop_("velmora-mix") {
}

StatusOr<std::shared_ptr<MixNode>> MixNode::open(const Setup& setup) {
    try {
        std::shared_ptr<MixNode> made(new MixNode(setup));
        if (const Status status = made->start(setup); status != statusOk) {
            return std::unexpected(status);
        }
        return made;
    } catch (const std::bad_alloc&) {
        return std::unexpected(-ENOMEM);
    }
}

MixNode::~MixNode() {
    life_->close();
    loop_.stop();
    hook_.reset();
    watchdog_.reset();
    filter_.reset(); // waits for the data thread to finish its cycle
    coreHook_.reset();
    core_.reset();
    context_.reset();
}

Status MixNode::start(const Setup& setup) {
    context_ = makeRealtimeContext(loop_.get());
    if (!context_) {
        return -(errno == 0 ? EIO : errno);
    }
    if (const Status status = connect(setup); status != statusOk) {
        return status;
    }
    return loop_.start() ? statusOk : -EAGAIN;
}

Status MixNode::connect(const Setup& setup) {
    static constexpr pw_filter_events events = [] {
        pw_filter_events made{};
        made.version = PW_VERSION_FILTER_EVENTS;
        made.state_changed = [](void* self, pw_filter_state, pw_filter_state state, const char*) {
            static_cast<MixNode*>(self)->onState(state);
        };
        made.process = [](void* self, spa_io_position* position) {
            static_cast<MixNode*>(self)->onProcess(position);
        };
        return made;
    }();
    static constexpr pw_core_events coreEvents = [] {
        pw_core_events made{};
        made.version = PW_VERSION_CORE_EVENTS;
        made.done = [](void* self, std::uint32_t, int sequence) {
            static_cast<MixNode*>(self)->onDone(sequence);
        };
        return made;
    }();

    core_.reset(pw_context_connect(context_.get(), nullptr, 0));
    if (core_) {
        filter_.reset(
            pw_filter_new(core_.get(),
                          setup.name.c_str(),
                          makeProperties(nodeProperties(setup, wishedLatency())).release()));
    }
    if (!filter_) {
        return -(errno == 0 ? EIO : errno);
    }
    coreHook_ = std::make_unique<Hook>();
    pw_core_add_listener(core_.get(), coreHook_->get(), &coreEvents, this);
    watchdog_ = std::make_unique<LoopTimer>(loop_, [this] { checkCalls(); });
    hook_ = std::make_unique<Hook>();
    pw_filter_add_listener(filter_.get(), hook_->get(), &events, this);
    const Status status = pw_filter_connect(filter_.get(), PW_FILTER_FLAG_RT_PROCESS, nullptr, 0);
    return std::min(status, statusOk);
}

std::string MixNode::wishedLatency() const {
    const auto wished = std::llround(blockSeconds_ * rateHz_);
    return fraction(std::max<std::int64_t>(wished, leastFrames_), rateHz_);
}

void MixNode::tellWish() {
    const auto wish = makeProperties({{PW_KEY_NODE_LATENCY, wishedLatency()}});
    pw_filter_update_properties(filter_.get(), nullptr, &wish->dict);
}

void MixNode::askForBlocksOf(std::uint32_t frames, double rateHz) {
    const Loop::Lock lock(loop_);
    if (frames / rateHz < blockSeconds_) {
        blockSeconds_ = frames / rateHz;
        rateHz_ = rateHz;
        tellWish();
    }
}

void MixNode::askForAtLeast(std::uint32_t frames) {
    const Loop::Lock lock(loop_);
    if (std::exchange(leastFrames_, frames) != frames) {
        tellWish();
    }
}

std::optional<bool> MixNode::isRealTime() const {
    return pipewire::isRealTime(callingThread_.load(std::memory_order_relaxed));
}

void MixNode::portsAreClear(std::vector<std::string> names) {
    const Loop::Lock lock(loop_);
    clearing_[pw_core_sync(core_.get(), PW_ID_CORE, 0)] = std::move(names);
}

void MixNode::onDone(int sequence) {
    if (const auto cleared = clearing_.extract(sequence)) {
        for (const std::string& name : cleared.mapped()) {
            ports_.clear(name);
        }
    }
}

const NodePorts::Port* MixNode::takePort(NodePorts::Direction direction) {
    if (const NodePorts::Port* const port = ports_.take(direction)) {
        return port;
    }
    return addPort(direction);
}

const NodePorts::Port* MixNode::addPort(NodePorts::Direction direction) {
    auto idle = idleInputs_; // the real-time thread must not allocate
    idle.makeRoom();
    betweenCalls([&] { std::swap(idleInputs_, idle); });
    constexpr std::size_t dataSize = sizeof(int); // unused, but must not be 0
    auto properties = makeProperties({{PW_KEY_PORT_NAME, ports_.nextName(direction)},
                                      {PW_KEY_FORMAT_DSP, "32 bit float mono audio"}});
    void* const made = pw_filter_add_port(
        filter_.get(),
        direction == NodePorts::Direction::input ? PW_DIRECTION_INPUT : PW_DIRECTION_OUTPUT,
        PW_FILTER_PORT_FLAG_MAP_BUFFERS,
        dataSize,
        properties.release(),
        nullptr,
        0);
    return made == nullptr ? nullptr : &ports_.add(direction, made);
}

void MixNode::enlist(MixPart& part) {
    const auto isOutput = [](const MixPart* one) { return one->kind_ == MixPart::Kind::output; };
    auto next = parts_; // the real-time thread must not allocate
    next.insert(isOutput(&part) ? next.end() : std::ranges::find_if(next, isOutput), &part);
    betweenCalls([&] {
        parts_.swap(next);
        idleInputs_.remove(part.ports_);
    });
}

void MixNode::dismiss(MixPart& part) {
    betweenCalls([&] {
        std::erase(parts_, &part);
        idleInputs_.add(part.ports_);
    });
    for (const NodePorts::Port* const port : part.ports_) {
        ports_.dismiss(*port);
    }
}

template <typename Change>
void MixNode::betweenCalls(Change change) {
    const auto run = [](spa_loop*, bool, std::uint32_t, const void*, std::size_t, void* data) {
        (*static_cast<Change*>(data))();
        return 0;
    };
    constexpr bool waits = true;
    pw_loop_invoke(dataLoop(filter_.get(), context_.get()), run, 0, nullptr, 0, waits, &change);
}

void MixNode::onState(pw_filter_state state) {
    if (state == PW_FILTER_STATE_STREAMING) {
        life_->cycles().restart();
        betweenCalls([this] { callingThread_.store(currentThread(), std::memory_order_relaxed); });
        callsSeen_ = calls_.load(std::memory_order_relaxed);
        watchdog_->start(callsPause_.next());
    } else if (state <= PW_FILTER_STATE_UNCONNECTED) {
        life_->end();
        died_();
    }
}

void MixNode::checkCalls() {
    if (calls_.load(std::memory_order_relaxed) != callsSeen_) {
        callsPause_.restart();
    } else if (pw_filter_get_state(filter_.get(), nullptr) == PW_FILTER_STATE_STREAMING) {
        pw_filter_set_active(filter_.get(), false);
        pw_filter_set_active(filter_.get(), true);
        watchdog_->start(callsPause_.next());
    }
}

void MixNode::onProcess(const spa_io_position* position) noexcept {
    calls_.fetch_add(1, std::memory_order_relaxed);
    if (position == nullptr || !life_->isAlive()) {
        return;
    }
    flushDenormals();
    const Cycle cycle = cycleOf(position->clock);
    life_->cycles().begin(cycle);
    for (const MixPart* const part : parts_) {
        part->handler_.process(*part, cycle.frames);
    }
    idleInputs_.drain();
}

StatusOr<std::shared_ptr<MixNode>> MixNodes::take(MixNode::Setup setup) {
    if (auto node = latest_.lock(); node && node->life()->isAlive()) {
        node->askForBlocksOf(setup.blockFrames, setup.rateHz);
        return node;
    }
    setup.leastFrames = leastFrames_;
    auto opened = MixNode::open(setup);
    if (opened) {
        missedBefore_ = blocks().missed;
        latest_ = *opened;
        latestLife_ = (*opened)->life();
    }
    return opened;
}

void MixNodes::askForAtLeast(std::uint32_t frames) {
    leastFrames_ = frames;
    if (const auto node = latest_.lock()) {
        node->askForAtLeast(frames);
    }
}

BlockReport MixNodes::blocks() const {
    BlockReport report{.missed =
                           missedBefore_ + (latestLife_ ? latestLife_->cycles().missed() : 0)};
    if (const auto node = latest_.lock(); node && node->life()->isAlive()) {
        report.frames = latestLife_->cycles().frames();
        report.isRealTime = node->isRealTime();
    }
    return report;
}

} // namespace velmora::pipewire
