// PatientClock.cpp: a sound card's clock that waits for those who are late, as a plug-in of the
// sound server.
//
// On a machine whose processors are also given to others, every thread stands still for tens of
// milliseconds now and then, and a clock that runs on meanwhile leaves gaps in any program's sound.
// This one begins a block when its time has come and the block before is through the whole graph.
// So what a test hears depends on what the programs do, not on when they may do it.
//
// Properties: clock.ppm = how much faster than the machine's clock it is, like a sound card's
// crystal.

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <new>

#include <spa/node/command.h>
#include <spa/node/io.h>
#include <spa/node/keys.h>
#include <spa/node/node.h>
#include <spa/node/utils.h>
#include <spa/support/loop.h>
#include <spa/support/plugin.h>
#include <spa/support/system.h>
#include <spa/utils/hook.h>
#include <spa/utils/keys.h>
#include <spa/utils/names.h>
#include <spa/utils/string.h>

namespace velmora::support {
namespace {

constexpr std::uint64_t nsecPerSecond = 1'000'000'000;

/// Whoever needs longer is not late but stopped. From then on the clock waits for nobody, until a
/// block comes through in time again.
constexpr std::uint64_t patienceNsec = nsecPerSecond / 4;

/// What the server wants of the next block. From PipeWire 1.0 on it says that apart from what is
/// true of the block that is under way.
struct Block {
    std::uint64_t frames;
    std::uint32_t rateHz;
};
template <typename Clock>
Block nextBlock(const Clock& clock) {
    if constexpr (requires { clock.target_duration; }) {
        return {.frames = clock.target_duration, .rateHz = clock.target_rate.denom};
    } else {
        return {.frames = clock.duration, .rateHz = clock.rate.denom};
    }
}

/// A node without ports that drives whatever shares its group.
/// Threads: construction, methods but `process`: the server's main thread. The rest: its data
/// thread.
class PatientClock {
public:
    PatientClock(spa_loop* loop, spa_system* system, double speed)
        : loop_(loop), system_(system), speed_(speed) {
        spa_hook_list_init(&listeners_);
        node_.iface =
            spa_interface{SPA_TYPE_INTERFACE_Node, SPA_VERSION_NODE, spa_callbacks{&methods, this}};
        timer_.func = [](spa_source* source) {
            static_cast<PatientClock*>(source->data)->onTimer();
        };
        timer_.data = this;
        timer_.fd =
            spa_system_timerfd_create(system_, CLOCK_MONOTONIC, SPA_FD_CLOEXEC | SPA_FD_NONBLOCK);
        timer_.mask = SPA_IO_IN;
        spa_loop_add_source(loop_, &timer_);
    }
    ~PatientClock() {
        onDataThread([this] { spa_loop_remove_source(loop_, &timer_); });
        spa_system_close(system_, timer_.fd);
    }
    PatientClock(const PatientClock&) = delete;
    PatientClock& operator=(const PatientClock&) = delete;

    [[nodiscard]] spa_node* node() { return &node_; }

private:
    static PatientClock& of(void* object) { return *static_cast<PatientClock*>(object); }

    static int
    addListener(void* object, spa_hook* hook, const spa_node_events* events, void* data) {
        PatientClock& self = of(object);
        spa_hook_list before{};
        spa_hook_list_isolate(&self.listeners_, &before, hook, events, data);
        const spa_dict_item isDriver{SPA_KEY_NODE_DRIVER, "true"};
        spa_dict properties{.flags = 0, .n_items = 1, .items = &isDriver};
        spa_node_info info{};
        info.change_mask = SPA_NODE_CHANGE_MASK_FLAGS | SPA_NODE_CHANGE_MASK_PROPS;
        info.flags = SPA_NODE_FLAG_RT;
        info.props = &properties;
        spa_node_emit_info(&self.listeners_, &info);
        spa_hook_list_join(&self.listeners_, &before);
        return 0;
    }

    static int setCallbacks(void* object, const spa_node_callbacks* callbacks, void* data) {
        of(object).server_ = spa_callbacks{callbacks, data};
        return 0;
    }

    static int setIo(void* object, std::uint32_t id, void* area, std::size_t size) {
        PatientClock& self = of(object);
        const bool isClock = id == SPA_IO_Clock;
        if (!isClock && id != SPA_IO_Position) {
            return -ENOENT;
        }
        if (area != nullptr && size < (isClock ? sizeof(spa_io_clock) : sizeof(spa_io_position))) {
            return -EINVAL;
        }
        self.onDataThread([&] {
            if (isClock) {
                self.clock_ = static_cast<spa_io_clock*>(area);
            } else {
                self.position_ = static_cast<spa_io_position*>(area);
            }
            self.beginIfDriving();
        });
        return 0;
    }

    static int sendCommand(void* object, const spa_command* command) {
        PatientClock& self = of(object);
        self.onDataThread([&] {
            self.isStarted_ = SPA_NODE_COMMAND_ID(command) == SPA_NODE_COMMAND_Start;
            self.beginIfDriving();
        });
        return 0;
    }

    /// The server calls it when everyone has finished the block.
    static int process(void* object) {
        PatientClock& self = of(object);
        self.isBlockThrough_ = true;
        if (self.isOverdue_) {
            self.wakeAt(now(self));
        }
        return SPA_STATUS_HAVE_DATA | SPA_STATUS_NEED_DATA;
    }

    static std::uint64_t now(const PatientClock& self) {
        timespec time{};
        spa_system_clock_gettime(self.system_, CLOCK_MONOTONIC, &time);
        return SPA_TIMESPEC_TO_NSEC(&time);
    }

    /// Returns when the data thread has done it.
    template <typename Work>
    void onDataThread(Work work) {
        const auto invoke = [](spa_loop* /*loop*/,
                               bool /*async*/,
                               std::uint32_t /*sequence*/,
                               const void* /*data*/,
                               std::size_t /*size*/,
                               void* task) {
            (*static_cast<Work*>(task))();
            return 0;
        };
        spa_loop_invoke(loop_, invoke, 0, nullptr, 0, /*block=*/true, &work);
    }

    [[nodiscard]] bool isDriving() const {
        return isStarted_ && clock_ != nullptr && position_ != nullptr &&
               position_->clock.id == clock_->id;
    }

    void beginIfDriving() {
        isBlockThrough_ = true;
        isOverdue_ = false;
        due_ = now(*this);
        wakeAt(isDriving() ? due_ : 0);
    }

    /// @param nsec  0 = never
    void wakeAt(std::uint64_t nsec) {
        itimerspec time{};
        time.it_value.tv_sec = static_cast<time_t>(nsec / nsecPerSecond);
        time.it_value.tv_nsec = static_cast<long>(nsec % nsecPerSecond);
        spa_system_timerfd_settime(system_, timer_.fd, SPA_FD_TIMER_ABSTIME, &time, nullptr);
    }

    void onTimer() {
        std::uint64_t expirations = 0;
        spa_system_timerfd_read(system_, timer_.fd, &expirations);
        if (!isDriving()) {
            return;
        }
        const std::uint64_t time = now(*this);
        if (!isBlockThrough_ && isPatient_ && time < due_ + patienceNsec) {
            isOverdue_ = true;
            wakeAt(due_ + patienceNsec);
            return;
        }
        isPatient_ = isBlockThrough_;
        begin(time);
    }

    void begin(std::uint64_t time) {
        spa_io_clock& clock = *clock_;
        const auto [frames, rateHz] = nextBlock(position_->clock);
        const auto length = static_cast<std::uint64_t>(static_cast<double>(frames * nsecPerSecond) /
                                                       (rateHz * speed_));
        // A little late is caught up with. More than a block is left out of this clock's time, as
        // the blocks that would make up for it would only crowd.
        due_ = time > due_ + length ? time : due_;
        clock.nsec = due_;
        clock.rate = spa_fraction{1, rateHz};
        clock.position += clock.duration;
        clock.duration = frames;
        clock.delay = 0;
        clock.rate_diff = speed_;
        due_ += length;
        clock.next_nsec = due_;
        isBlockThrough_ = false;
        isOverdue_ = false;
        wakeAt(due_);
        spa_node_call_ready(&server_, SPA_STATUS_HAVE_DATA | SPA_STATUS_NEED_DATA);
    }

    static const spa_node_methods methods;

    spa_loop* loop_;
    spa_system* system_;
    double speed_; ///< 1 = as fast as the machine's clock
    spa_node node_{};
    spa_hook_list listeners_{};
    spa_callbacks server_{};
    spa_source timer_{};
    spa_io_clock* clock_ = nullptr;
    spa_io_position* position_ = nullptr;
    bool isStarted_ = false;
    bool isPatient_ = true;
    bool isBlockThrough_ = true; ///< everyone has finished the latest block
    bool isOverdue_ = false;     ///< the next one's time has come before
    std::uint64_t due_ = 0;      ///< when the next block begins; CLOCK_MONOTONIC, ns
};

const spa_node_methods PatientClock::methods = [] {
    spa_node_methods made{};
    made.version = SPA_VERSION_NODE_METHODS;
    made.add_listener = addListener;
    made.set_callbacks = setCallbacks;
    made.set_io = setIo;
    made.send_command = sendCommand;
    made.process = process;
    return made;
}();

/// What the server sees of one clock. It provides the memory.
struct Handle {
    spa_handle handle;
    PatientClock clock;
};

int getInterface(spa_handle* handle, const char* type, void** made) {
    if (!spa_streq(type, SPA_TYPE_INTERFACE_Node)) {
        return -ENOENT;
    }
    *made = reinterpret_cast<Handle*>(handle)->clock.node();
    return 0;
}

int clearHandle(spa_handle* handle) {
    reinterpret_cast<Handle*>(handle)->~Handle();
    return 0;
}

int initHandle(const spa_handle_factory* /*factory*/,
               spa_handle* memory,
               const spa_dict* properties,
               const spa_support* support,
               std::uint32_t supportCount) {
    const auto found = [&](const char* type) {
        return spa_support_find(support, supportCount, type);
    };
    auto* const loop = static_cast<spa_loop*>(found(SPA_TYPE_INTERFACE_DataLoop));
    auto* const system = static_cast<spa_system*>(found(SPA_TYPE_INTERFACE_DataSystem));
    if (loop == nullptr || system == nullptr) {
        return -EINVAL;
    }
    const char* ppm = properties == nullptr ? nullptr : spa_dict_lookup(properties, "clock.ppm");
    const double speed = 1 + (ppm == nullptr ? 0 : std::strtod(ppm, nullptr)) * 1e-6;
    new (memory) Handle{.handle = {.version = SPA_VERSION_HANDLE,
                                   .get_interface = getInterface,
                                   .clear = clearHandle},
                        .clock = {loop, system, speed}};
    return 0;
}

int enumInterfaces(const spa_handle_factory* /*factory*/,
                   const spa_interface_info** info,
                   std::uint32_t* index) {
    static constexpr spa_interface_info node{SPA_TYPE_INTERFACE_Node};
    if (*index > 0) {
        return 0;
    }
    ++*index;
    *info = &node;
    return 1;
}

const spa_handle_factory factory{
    .version = SPA_VERSION_HANDLE_FACTORY,
    .name = "velmora.patient-clock",
    .info = nullptr,
    .get_size = [](const spa_handle_factory*, const spa_dict*) { return sizeof(Handle); },
    .init = initHandle,
    .enum_interface_info = enumInterfaces,
};

} // namespace
} // namespace velmora::support

extern "C" SPA_EXPORT int spa_handle_factory_enum(const spa_handle_factory** found,
                                                  std::uint32_t* index) {
    if (*index > 0) {
        return 0;
    }
    ++*index;
    *found = &velmora::support::factory;
    return 1;
}
