// velmora_live_filters: nodes that are called in every cycle and do nothing, all on one connection
// and one real-time thread, as the mixer's nodes are. What the sound server costs.
//
// velmora_live_filters <count>
// The nodes are empty.0, empty.1 ..., each with the inputs left and right. Tells "running" on
// stdout, and answers each line on stdin by how many frames its nodes have missed so far.

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

/// A left and a right input that nothing is done with.
class EmptyNode {
public:
    EmptyNode(pw_core* core, int number)
        : filter_(pw_filter_new(core, "empty", properties(number))) {
        static constexpr pw_filter_events events = [] {
            pw_filter_events made{};
            made.version = PW_VERSION_FILTER_EVENTS;
            made.process = [](void* self, spa_io_position* position) {
                if (position != nullptr) {
                    static_cast<EmptyNode*>(self)->process(position->clock);
                }
            };
            return made;
        }();
        pw_filter_add_listener(filter_, &hook_, &events, this);
        for (const char* const name : {"left", "right"}) {
            ports_.push_back(pw_filter_add_port(
                filter_,
                PW_DIRECTION_INPUT,
                PW_FILTER_PORT_FLAG_MAP_BUFFERS,
                sizeof(int),
                pw_properties_new(
                    PW_KEY_PORT_NAME, name, PW_KEY_FORMAT_DSP, "32 bit float mono audio", nullptr),
                nullptr,
                0));
        }
        pw_filter_connect(filter_, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0);
    }
    ~EmptyNode() { pw_filter_destroy(filter_); }
    EmptyNode(const EmptyNode&) = delete;
    EmptyNode& operator=(const EmptyNode&) = delete;

    [[nodiscard]] std::uint64_t missedFrames() const { return missedFrames_; }

private:
    static pw_properties* properties(int number) {
        return pw_properties_new(PW_KEY_NODE_NAME,
                                 ("empty." + std::to_string(number)).c_str(),
                                 PW_KEY_NODE_AUTOCONNECT,
                                 "false",
                                 PW_KEY_NODE_LATENCY,
                                 "128/48000",
                                 PW_KEY_NODE_GROUP,
                                 "velmora",
                                 PW_KEY_NODE_ALWAYS_PROCESS,
                                 "true",
                                 nullptr);
    }

    void process(const spa_io_clock& clock) noexcept {
        for (void* const port : ports_) {
            static_cast<void>(
                pw_filter_get_dsp_buffer(port, static_cast<std::uint32_t>(clock.duration)));
        }
        if (clock.id == clock_ && clock.position > expected_) {
            missedFrames_ += clock.position - expected_;
        }
        clock_ = clock.id;
        expected_ = clock.position + clock.duration;
    }

    std::atomic<std::uint64_t> missedFrames_{0};
    std::uint32_t clock_ = SPA_ID_INVALID; // real-time thread, as what follows
    std::uint64_t expected_ = 0;
    std::vector<void*> ports_;
    pw_filter* filter_;
    spa_hook hook_{};
};

} // namespace

int main(int argc, char** argv) {
    pw_init(nullptr, nullptr);
    const int count = argc > 1 ? std::atoi(argv[1]) : 0;
    pw_thread_loop* const loop = pw_thread_loop_new("empty", nullptr);
    pw_context* const context =
        pw_context_new(pw_thread_loop_get_loop(loop),
                       pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr),
                       0);
    pw_core* const core = pw_context_connect(context, nullptr, 0);
    if (core == nullptr) {
        std::cerr << "velmora_live_filters: no sound server answers\n";
        return 1;
    }
    std::vector<std::unique_ptr<EmptyNode>> nodes;
    for (int number = 0; number < count; ++number) {
        nodes.push_back(std::make_unique<EmptyNode>(core, number));
    }
    pw_thread_loop_start(loop);
    std::cout << "running" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        std::uint64_t missed = 0;
        for (const auto& node : nodes) {
            missed += node->missedFrames();
        }
        std::cout << missed << std::endl;
    }
    pw_thread_loop_stop(loop);
    nodes.clear();
    pw_context_destroy(context);
    pw_thread_loop_destroy(loop);
    return 0;
}
