// velmora_port_recorder: writes chosen output ports to a growing file of raw interleaved 32-bit
// floats until it is ended. A sink's output ports are its monitor. One node for all channels, or
// one for each. "<file>.clock" holds how fast the clock is that they are recorded by; 1 = as the
// machine's.
//
// velmora_port_recorder <node.name>[,<node.name>...] <channel>[,<channel>...] <file>

#include "support/clients/Lists.h"
#include "support/clients/PortClient.h"

#include <atomic>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <spa/utils/ringbuffer.h>

namespace {

using namespace velmora::support;

/// Carries blocks from the real-time thread to the file.
class Tape {
public:
    Tape(const std::string& file, std::size_t channels)
        : out_(file, std::ios::binary | std::ios::trunc), channels_(channels), ring_(capacity) {
        if (!out_) {
            throw std::runtime_error("cannot write " + file);
        }
        spa_ringbuffer_init(&index_);
    }

    /// Threads: real-time. What does not fit is dropped: the file then lies, so it is counted.
    void record(std::uint32_t frames, std::span<float* const> blocks) {
        std::uint32_t at = 0;
        const std::int32_t filled = spa_ringbuffer_get_write_index(&index_, &at);
        const std::size_t samples = frames * channels_;
        if (static_cast<std::size_t>(filled) + samples > capacity) {
            lost_ = true;
            return;
        }
        for (std::uint32_t frame = 0; frame < frames; ++frame) {
            for (const float* block : blocks) {
                ring_[at++ & (capacity - 1)] = block == nullptr ? 0.0F : block[frame];
            }
        }
        spa_ringbuffer_write_update(&index_, static_cast<std::int32_t>(at));
    }

    /// Threads: main.
    void save() {
        std::uint32_t at = 0;
        const std::int32_t filled = spa_ringbuffer_get_read_index(&index_, &at);
        for (std::int32_t i = 0; i < filled; ++i) {
            const float sample = ring_[at++ & (capacity - 1)];
            out_.write(reinterpret_cast<const char*>(&sample), sizeof sample);
        }
        spa_ringbuffer_read_update(&index_, static_cast<std::int32_t>(at));
        out_.flush();
        if (lost_) {
            throw std::runtime_error("the file could not keep up");
        }
    }

private:
    static constexpr std::size_t capacity = 1U << 20U; // floats; a power of two

    std::ofstream out_;
    std::size_t channels_;
    std::vector<float> ring_;
    spa_ringbuffer index_{};
    std::atomic<bool> lost_ = false;
};

/// What the main thread does every hundredth of a second.
struct Rounds {
    const PortClient& client;
    Tape& tape;
    std::string clockFile;
    double clockSpeed = 0;

    void go() {
        tape.save();
        if (const double now = client.clockSpeed(); now != clockSpeed) {
            clockSpeed = now;
            std::ofstream(clockFile) << std::setprecision(9) << now;
        }
    }
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: velmora_port_recorder <node.names> <channels> <file>\n";
        return 2;
    }
    try {
        const auto targets = parseTargets(argv[1], argv[2]);
        Tape tape(argv[3], targets.size());
        pw_init(nullptr, nullptr);
        PortClient client(PortClient::Direction::record,
                          targets,
                          [&](std::uint32_t frames, std::span<float* const> blocks) {
                              tape.record(frames, blocks);
                          });
        Rounds rounds{.client = client, .tape = tape, .clockFile = std::string(argv[3]) + ".clock"};
        spa_source* timer = pw_loop_add_timer(
            client.loop(),
            [](void* data, std::uint64_t) { static_cast<Rounds*>(data)->go(); },
            &rounds);
        timespec period{.tv_sec = 0, .tv_nsec = 10'000'000};
        pw_loop_update_timer(client.loop(), timer, &period, &period, false);
        client.run();
        tape.save();
    } catch (const std::exception& error) {
        std::cerr << "velmora_port_recorder: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
