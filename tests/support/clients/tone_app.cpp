// velmora_tone_app: an application that plays what it is told on its standard input.
//
// velmora_tone_app [--child] [--name <application name>] [--play <left Hz> <right Hz> <dB>]
//   play <stream> <left Hz> <right Hz> <dB>   starts a stream, or replaces one
//   pin <stream> <left Hz> <right Hz> <dB>    the same, and it may not be moved
//   sing <device> <left Hz> <right Hz> <dB>   is an input device that plays by itself
//   hear <stream> <device>                    records from an input device
//   measure <stream> <device>                 the same, only to show how loud it is
//   mute <stream>                             keeps the stream and plays silence
//   stop <stream>                             ends the stream
//   reconnect                                 ends every stream and connects anew
//
// It is known to the sound server from its start on. With --child a child process does all of
// this, as in a browser. With --play it plays by itself, does not read its input, and ends with the
// sound server.

#include "support/clients/Sine.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <pipewire/pipewire.h>
#include <pipewire/stream.h>
#include <spa/param/audio/format-utils.h>
#include <sstream>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using velmora::support::Sine;

constexpr std::uint32_t channels = 2;

/// One stereo stream, to the default output or as an input device.
class ToneStream {
public:
    enum class Role { playback, pinned, inputDevice };

    /// @param application  by which the session manager remembers the stream, as real players'
    ///                     are; only older ones (WirePlumber below 0.5.15) do so by the role
    ToneStream(pw_core* core,
               Role role,
               const std::string& application,
               const std::string& name,
               double leftHz,
               double rightHz,
               double db)
        : sines_{Sine(leftHz, db), Sine(rightHz, db)},
          stream_(pw_stream_new(core,
                                name.c_str(),
                                pw_properties_new(PW_KEY_NODE_NAME,
                                                  name.c_str(),
                                                  PW_KEY_APP_NAME,
                                                  application.c_str(),
                                                  PW_KEY_MEDIA_TYPE,
                                                  "Audio",
                                                  PW_KEY_MEDIA_CATEGORY,
                                                  "Playback",
                                                  PW_KEY_MEDIA_ROLE,
                                                  "Music",
                                                  nullptr))) {
        auto flags = PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS;
        if (role != Role::inputDevice) {
            flags |= PW_STREAM_FLAG_AUTOCONNECT;
            flags |= role == Role::pinned ? PW_STREAM_FLAG_DONT_RECONNECT : 0;
        } else {
            const spa_dict_item device = {PW_KEY_MEDIA_CLASS, "Audio/Source"};
            const spa_dict change = {0, 1, &device};
            pw_stream_update_properties(stream_, &change);
        }
        pw_stream_add_listener(stream_, &hook_, &events, this);
        std::array<std::uint8_t, 1024> storage{};
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, storage.data(), storage.size());
        spa_audio_info_raw format{};
        format.format = SPA_AUDIO_FORMAT_F32;
        format.rate = 48000;
        format.channels = channels;
        format.position[0] = SPA_AUDIO_CHANNEL_FL;
        format.position[1] = SPA_AUDIO_CHANNEL_FR;
        const spa_pod* parameter =
            spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format);
        pw_stream_connect(stream_,
                          PW_DIRECTION_OUTPUT,
                          PW_ID_ANY,
                          static_cast<pw_stream_flags>(flags),
                          &parameter,
                          1);
    }
    ~ToneStream() { pw_stream_destroy(stream_); }
    ToneStream(const ToneStream&) = delete;
    ToneStream& operator=(const ToneStream&) = delete;

    void mute() { muted_ = true; }

private:
    void process() {
        pw_buffer* buffer = pw_stream_dequeue_buffer(stream_);
        if (buffer == nullptr) {
            return;
        }
        spa_data& data = buffer->buffer->datas[0];
        constexpr auto stride = static_cast<std::uint32_t>(channels * sizeof(float));
        std::uint32_t frames = data.maxsize / stride;
        if (buffer->requested > 0) {
            frames = std::min(frames, static_cast<std::uint32_t>(buffer->requested));
        }
        if (auto* samples = static_cast<float*>(data.data)) {
            for (std::uint32_t channel = 0; channel < channels; ++channel) {
                sines_[channel].fill(samples + channel, frames, channels);
            }
            if (muted_) {
                std::memset(samples, 0, static_cast<std::size_t>(frames) * stride);
            }
        }
        data.chunk->offset = 0;
        data.chunk->stride = stride;
        data.chunk->size = frames * stride;
        pw_stream_queue_buffer(stream_, buffer);
    }

    static const pw_stream_events events;

    std::array<Sine, channels> sines_;
    std::atomic<bool> muted_ = false;
    pw_stream* stream_;
    spa_hook hook_{};
};

const pw_stream_events ToneStream::events = [] {
    pw_stream_events result{};
    result.version = PW_VERSION_STREAM_EVENTS;
    result.process = [](void* data) { static_cast<ToneStream*>(data)->process(); };
    return result;
}();

/// Records from one device and forgets what it hears.
class EarStream {
public:
    EarStream(pw_core* core, const std::string& name, const std::string& device, bool isMeter)
        : stream_(pw_stream_new(core,
                                name.c_str(),
                                pw_properties_new(PW_KEY_NODE_NAME,
                                                  name.c_str(),
                                                  PW_KEY_MEDIA_TYPE,
                                                  "Audio",
                                                  PW_KEY_MEDIA_CATEGORY,
                                                  "Capture",
                                                  PW_KEY_TARGET_OBJECT,
                                                  device.c_str(),
                                                  PW_KEY_STREAM_MONITOR,
                                                  isMeter ? "true" : "false",
                                                  nullptr))) {
        pw_stream_add_listener(stream_, &hook_, &events, this);
        std::array<std::uint8_t, 1024> storage{};
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, storage.data(), storage.size());
        spa_audio_info_raw format{};
        format.format = SPA_AUDIO_FORMAT_F32;
        format.rate = 48000;
        format.channels = channels;
        format.position[0] = SPA_AUDIO_CHANNEL_FL;
        format.position[1] = SPA_AUDIO_CHANNEL_FR;
        const spa_pod* parameter =
            spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format);
        constexpr auto flags = static_cast<pw_stream_flags>(
            PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS);
        pw_stream_connect(stream_, PW_DIRECTION_INPUT, PW_ID_ANY, flags, &parameter, 1);
    }
    ~EarStream() { pw_stream_destroy(stream_); }
    EarStream(const EarStream&) = delete;
    EarStream& operator=(const EarStream&) = delete;

private:
    static const pw_stream_events events;

    pw_stream* stream_;
    spa_hook hook_{};
};

const pw_stream_events EarStream::events = [] {
    pw_stream_events result{};
    result.version = PW_VERSION_STREAM_EVENTS;
    result.process = [](void* data) {
        pw_stream* const stream = static_cast<EarStream*>(data)->stream_;
        if (pw_buffer* const buffer = pw_stream_dequeue_buffer(stream)) {
            pw_stream_queue_buffer(stream, buffer);
        }
    };
    return result;
}();

class ToneApp {
public:
    explicit ToneApp(const std::string& name)
        : name_(name), loop_(pw_main_loop_new(nullptr)),
          context_(pw_context_new(pw_main_loop_get_loop(loop_),
                                  pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr),
                                  0)),
          core_(connect()) {}
    ~ToneApp() {
        disconnect();
        pw_context_destroy(context_);
        pw_main_loop_destroy(loop_);
    }
    ToneApp(const ToneApp&) = delete;
    ToneApp& operator=(const ToneApp&) = delete;

    /// @param order  what to play from the start on; empty: follows its input
    int run(const std::string& order) {
        if (core_ == nullptr) {
            std::cerr << "velmora_tone_app: no sound server answers\n";
            return 1;
        }
        pw_loop* loop = pw_main_loop_get_loop(loop_);
        const auto read = [](void* data, int, std::uint32_t) {
            static_cast<ToneApp*>(data)->readInput();
        };
        const auto quit = [](void* data, int) {
            pw_main_loop_quit(static_cast<ToneApp*>(data)->loop_);
        };
        if (order.empty()) {
            pw_loop_add_io(loop, STDIN_FILENO, SPA_IO_IN | SPA_IO_HUP, false, read, this);
        } else {
            pw_core_add_listener(core_, &coreHook_, &coreEvents, this);
            obey(order);
        }
        pw_loop_add_signal(loop, SIGTERM, quit, this);
        pw_loop_add_signal(loop, SIGINT, quit, this);
        pw_main_loop_run(loop_);
        return 0;
    }

private:
    [[nodiscard]] pw_core* connect() const {
        return pw_context_connect(
            context_, pw_properties_new(PW_KEY_APP_NAME, name_.c_str(), nullptr), 0);
    }

    void disconnect() {
        streams_.clear();
        ears_.clear();
        if (core_ != nullptr) {
            pw_core_disconnect(core_);
        }
    }

    void readInput() {
        std::array<char, 512> bytes{};
        const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) {
            pw_main_loop_quit(loop_);
            return;
        }
        pending_.append(bytes.data(), static_cast<std::size_t>(count));
        for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
            obey(pending_.substr(0, end));
            pending_.erase(0, end + 1);
        }
    }

    void obey(const std::string& line) {
        std::istringstream words(line);
        std::string verb;
        std::string name;
        words >> verb >> name;
        if ((verb == "play" || verb == "pin" || verb == "sing") && core_ != nullptr) {
            double leftHz = 0;
            double rightHz = 0;
            double db = 0;
            words >> leftHz >> rightHz >> db;
            const auto role = verb == "play"  ? ToneStream::Role::playback
                              : verb == "pin" ? ToneStream::Role::pinned
                                              : ToneStream::Role::inputDevice;
            streams_[name] =
                std::make_unique<ToneStream>(core_, role, name_, name, leftHz, rightHz, db);
        } else if ((verb == "hear" || verb == "measure") && core_ != nullptr) {
            std::string device;
            words >> device;
            ears_[name] = std::make_unique<EarStream>(core_, name, device, verb == "measure");
        } else if (verb == "mute" && streams_.contains(name)) {
            streams_[name]->mute();
        } else if (verb == "stop") {
            streams_.erase(name);
            ears_.erase(name);
        } else if (verb == "reconnect") {
            disconnect();
            core_ = connect();
        } else {
            std::cerr << "velmora_tone_app: cannot obey: " << line << '\n';
        }
    }

    static const pw_core_events coreEvents;

    std::string name_;
    pw_main_loop* loop_;
    pw_context* context_;
    pw_core* core_; // null when no sound server answers
    spa_hook coreHook_{};
    std::map<std::string, std::unique_ptr<ToneStream>> streams_;
    std::map<std::string, std::unique_ptr<EarStream>> ears_;
    std::string pending_; // an unfinished line
};

const pw_core_events ToneApp::coreEvents = [] {
    pw_core_events result{};
    result.version = PW_VERSION_CORE_EVENTS;
    result.error = [](void* data, std::uint32_t id, int, int error, const char*) {
        if (id == PW_ID_CORE && error == -EPIPE) {
            pw_main_loop_quit(static_cast<ToneApp*>(data)->loop_);
        }
    };
    return result;
}();

/// Lets a child process go on; this one waits for its end.
void continueInChild() {
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        return;
    }
    int status = 0;
    waitpid(child, &status, 0);
    _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 1);
}

} // namespace

int main(int argc, char** argv) {
    std::string name = "velmora_tone_app";
    std::string order;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--child") {
            continueInChild();
        } else if (argument == "--name" && i + 1 < argc) {
            name = argv[++i];
        } else if (argument == "--play" && i + 3 < argc) {
            order = "play tone";
            for (const int last = i + 3; i < last;) {
                order += std::string(" ") + argv[++i];
            }
        } else {
            std::cerr << "usage: velmora_tone_app [--child] [--name <application name>] "
                         "[--play <left Hz> <right Hz> <dB>]\n";
            return 2;
        }
    }
    pw_init(&argc, &argv);
    return ToneApp(name).run(order);
}
