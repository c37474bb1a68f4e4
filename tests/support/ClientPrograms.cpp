#include "support/ClientPrograms.h"

#include "support/Wait.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace velmora::support {
namespace {

constexpr double playerSeconds = 120;

template <typename Number>
std::string joined(const std::vector<Number>& numbers) {
    std::ostringstream text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        text << (i == 0 ? "" : ",") << numbers[i];
    }
    return text.str();
}

/// A file of the session that no other client uses.
std::filesystem::path freshFile(const PrivateSession& session, const std::string& suffix) {
    static int count = 0;
    return session.folder() / ("sound-" + std::to_string(++count) + suffix);
}

std::string soundFile(const PrivateSession& session, const Sound& sound) {
    const auto file = freshFile(session, ".wav");
    writeWav(file, sound);
    return file;
}

std::string toneFile(const PrivateSession& session, const Tone& tone) {
    return soundFile(session, makeTone(tone, playerSeconds));
}

/// The machine's files, but nothing of its processes. A root of its own can hold a further file.
std::vector<std::string> sandboxArguments(const PrivateSession& session,
                                          const std::string& flatpakInfo) {
    namespace fs = std::filesystem;
    std::vector<std::string> list{"bwrap", "--die-with-parent", "--unshare-pid"};
    const auto add = [&](std::initializer_list<std::string> words) {
        list.insert(list.end(), words);
    };
    if (flatpakInfo.empty()) {
        add({"--dev-bind", "/", "/"});
    } else {
        for (const auto& entry : fs::directory_iterator("/")) {
            const std::string path = entry.path();
            if (entry.is_symlink()) {
                add({"--symlink", fs::read_symlink(path), path});
            } else if (entry.is_directory() && path != "/proc") {
                add({"--dev-bind", path, path});
            }
        }
        const auto file = freshFile(session, ".info");
        std::ofstream(file) << flatpakInfo;
        add({"--ro-bind", file, "/.flatpak-info"});
    }
    add({"--proc", "/proc"});
    return list;
}

std::vector<std::string>
arguments(const PrivateSession& session, const Tone& tone, const SandboxedPlayer::Look& look) {
    auto list = sandboxArguments(session, look.flatpakInfo);
    list.push_back(look.program);
    list.insert(list.end(), look.arguments.begin(), look.arguments.end());
    list.push_back(toneFile(session, tone));
    return list;
}

std::vector<std::string> arguments(const ToneApp::Look& look) {
    std::vector<std::string> list{look.program};
    if (look.playsFromChildProcess) {
        list.emplace_back("--child");
    }
    return list;
}

} // namespace

std::string clientProgram(std::string_view name) {
    return std::string(VELMORA_CLIENTS_FOLDER "/") + std::string(name);
}

ToneApp::ToneApp(const PrivateSession& session) : ToneApp(session, Look{}) {
}

ToneApp::ToneApp(const PrivateSession& session, const Look& look)
    : process_(session.start(arguments(look), "tone-app", /*takesLines=*/true)) {
}

void ToneApp::play(std::string_view stream, double leftHz, double rightHz, double db) const {
    order("play", stream, leftHz, rightHz, db);
}

void ToneApp::pin(std::string_view stream, double leftHz, double rightHz, double db) const {
    order("pin", stream, leftHz, rightHz, db);
}

void ToneApp::sing(std::string_view device, double leftHz, double rightHz, double db) const {
    order("sing", device, leftHz, rightHz, db);
}

void ToneApp::order(std::string_view verb,
                    std::string_view stream,
                    double leftHz,
                    double rightHz,
                    double db) const {
    std::ostringstream line;
    line << verb << ' ' << stream << ' ' << leftHz << ' ' << rightHz << ' ' << db;
    process_.send(line.str());
}

void ToneApp::hear(std::string_view stream, std::string_view device) const {
    process_.send("hear " + std::string(stream) + " " + std::string(device));
}

void ToneApp::measure(std::string_view stream, std::string_view device) const {
    process_.send("measure " + std::string(stream) + " " + std::string(device));
}

void ToneApp::mute(std::string_view stream) const {
    process_.send("mute " + std::string(stream));
}

void ToneApp::stop(std::string_view stream) const {
    process_.send("stop " + std::string(stream));
}

void ToneApp::reconnect() const {
    process_.send("reconnect");
}

NativePlayer::NativePlayer(const PrivateSession& session, const Tone& tone)
    : process_(session.start({"pw-play", toneFile(session, tone)}, "pw-play")) {
}

TargetedPlayer::TargetedPlayer(const PrivateSession& session,
                               const std::string& device,
                               const Sound& sound)
    : process_(session.start({"pw-play", "--target", device, soundFile(session, sound)},
                             "targeted-player")) {
}

PulsePlayer::PulsePlayer(const PrivateSession& session, const Tone& tone)
    : process_(session.start({"paplay", toneFile(session, tone)}, "paplay")) {
}

SandboxedPlayer::SandboxedPlayer(const PrivateSession& session, const Tone& tone, const Look& look)
    : process_(session.start(arguments(session, tone, look), "sandboxed-player")) {
}

Feeder::Feeder(const PrivateSession& session,
               const std::string& device,
               const std::vector<int>& channels,
               const Tone& tone)
    : process_(session.start({clientProgram("velmora_port_feeder"),
                              device,
                              joined(channels),
                              joined(tone.hz),
                              std::to_string(tone.db)},
                             "feeder")) {
}

Recorder::Recorder(const PrivateSession& session,
                   const std::string& node,
                   const std::vector<int>& channels)
    : Recorder(session, node, channels, freshFile(session, ".raw")) {
}

Recorder::Recorder(const PrivateSession& session,
                   const std::string& node,
                   const std::vector<int>& channels,
                   const std::filesystem::path& file)
    : Recording(file, static_cast<std::uint32_t>(channels.size())),
      clockFile_(file.string() + ".clock"),
      process_(session.start({clientProgram("velmora_port_recorder"), node, joined(channels), file},
                             "recorder")) {
}

bool Recorder::hasClock(int ppm) const {
    return waitUntil([&] {
        double speed = 0;
        return std::ifstream(clockFile_) >> speed && std::lround((speed - 1) * 1e6) == ppm;
    });
}

PulseRecorder::PulseRecorder(const PrivateSession& session, const std::string& source)
    : PulseRecorder(session, source, freshFile(session, ".raw")) {
}

PulseRecorder::PulseRecorder(const PrivateSession& session,
                             const std::string& source,
                             const std::filesystem::path& file)
    : Recording(file, 2), process_(session.start({"parec",
                                                  "--raw",
                                                  "--device=" + source,
                                                  "--format=float32le",
                                                  "--channels=2",
                                                  "--rate=48000",
                                                  "--latency-msec=20",
                                                  file},
                                                 "parec")) {
}

} // namespace velmora::support
