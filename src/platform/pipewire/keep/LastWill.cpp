#include "platform/pipewire/keep/LastWill.h"

#include "platform/InstalledFile.h"
#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Loop.h"
#include "platform/pipewire/keep/GivenBackStreams.h"
#include "platform/pipewire/keep/RouteMemory.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <iomanip>
#include <istream>
#include <sstream>
#include <utility>

#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

using Clock = RouteMemory::Clock;

constexpr const char* programPath = "libexec/velmora/velmora-give-back";

constexpr const char* addWord = "add";
constexpr const char* removeWord = "remove";
constexpr const char* addRouteWord = "route";
constexpr const char* removeRouteWord = "done";

/// How long the sound server may take to list what there is, and to take what we tell it.
constexpr auto answerExpectedWithin = 2s;

} // namespace

LastWill::~LastWill() {
    if (process_ != 0) {
        ::close(channel_);
        const bool isNothingLeft = streams_.empty() && routes_.empty();
        ::waitpid(process_, nullptr, isNothingLeft ? 0 : WNOHANG);
    }
}

void LastWill::add(const MutedStream& muted) {
    std::ostringstream line;
    line << addWord << ' ' << muted << '\n';
    tell(line.str());
    streams_.insert(muted.stream);
}

void LastWill::remove(Serial stream) {
    if (streams_.erase(stream) > 0) {
        tell(std::string(removeWord) + ' ' + std::to_string(stream) + '\n');
    }
}

void LastWill::add(const RouteKey& key, const std::string& device) {
    std::ostringstream line;
    line << addRouteWord << ' ' << key << ' ' << std::quoted(device) << '\n';
    tell(line.str());
    routes_.insert(key);
}

void LastWill::remove(const RouteKey& key) {
    if (routes_.erase(key) > 0) {
        std::ostringstream line;
        line << removeRouteWord << ' ' << key << '\n';
        tell(line.str());
    }
}

void LastWill::start() {
    const fs::path program = installedFile(programPath);
    std::array<int, 2> ends{};
    if (program.empty() || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return;
    }
    posix_spawn_file_actions_t files{};
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, ends[1], STDIN_FILENO);
    posix_spawnattr_t attributes{};
    posix_spawnattr_init(&attributes);
    // What a terminal sends to us is not meant for it.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    std::string name = program.filename();
    std::array<char*, 2> arguments{name.data(), nullptr};
    pid_t process = 0;
    const int error =
        ::posix_spawn(&process, program.c_str(), &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    ::close(ends[1]);
    if (error != 0) {
        ::close(ends[0]);
        return;
    }
    process_ = process;
    channel_ = ends[0];
}

void LastWill::tell(const std::string& line) {
    if (!std::exchange(isTried_, true)) {
        start();
    }
    if (process_ != 0) {
        // It may have been ended by somebody; then there is nobody to tell.
        static_cast<void>(::send(channel_, line.data(), line.size(), MSG_NOSIGNAL));
    }
}

Bequest readLastWill(std::istream& input) {
    Bequest list;
    for (std::string word; input >> word;) {
        Serial stream{};
        RouteKey key;
        std::string device;
        if (MutedStream muted; word == addWord && input >> muted) {
            list.streams[muted.stream] = muted;
        } else if (word == removeWord && input >> stream) {
            list.streams.erase(stream);
        } else if (word == addRouteWord && input >> key >> std::quoted(device)) {
            list.routes[key] = device;
        } else if (word == removeRouteWord && input >> key) {
            list.routes.erase(key);
        }
    }
    return list;
}

bool executeLastWill(const Bequest& list) {
    Loop loop("velmora-give-back");
    Graph graph;
    const auto look = [&loop] { loop.notify(); };
    GivenBackStreams givenBack(graph);
    Connection connection(loop.get(),
                          graph,
                          {.changed = look,
                           .clientCame = [] {},
                           .metadataTold =
                               [&](GlobalId stream, const std::string& key) {
                                   const auto again = givenBack.hear(stream, key, Clock::now());
                                   if (again) {
                                       connection.setSessionMetadata(
                                           stream, again->key, again->value);
                                   }
                               },
                           .managerLost = look,
                           .lost = look});
    const RouteMemory memory(graph);
    int names = 0;
    RouteWriter writer(
        connection,
        graph,
        memory,
        [&names] {
            return "velmora.route." + std::to_string(::getpid()) + "." + std::to_string(++names);
        },
        [](const RouteKey&) {});
    bool isDone = false;
    if (connection.open() == statusOk && loop.start()) {
        Loop::Lock lock(loop);
        isDone = lock.wait(answerExpectedWithin, [&] { return connection.isListed(); });
        StoredRoutes routes = list.routes;
        for (const auto& [stream, muted] : list.streams) {
            const Node* const node = graph.node(stream);
            const std::string stored = node == nullptr ? "" : memory.device(*node, Clock::now());
            GivenBack given = giveBack(connection, graph, muted, stored, /*isOrderUnderWay=*/false);
            if (!given.isRemembered) {
                routes.insert({node->routeKey, stored}); // an entry of the list is newer
            }
            givenBack.add(stream, std::move(given.orders), Clock::now());
        }
        for (const auto& [key, device] : routes) {
            writer.write(key, device);
        }
        connection.startRoundTrip();
        isDone = isDone && lock.wait(answerExpectedWithin, [&] { return connection.isListed(); });
        static_cast<void>(
            lock.wait(answerExpectedWithin, [&] { return givenBack.isSettled(Clock::now()); }));
        for (auto now = Clock::now(); const auto due = writer.follow(now); now = Clock::now()) {
            const auto pause = std::chrono::ceil<std::chrono::milliseconds>(*due - now);
            static_cast<void>(lock.wait(pause, [] { return false; }));
        }
        writer.clear();
    }
    loop.stop();
    connection.close();
    return isDone;
}

} // namespace velmora::pipewire
