// LastWill.h: gives muted streams back even when this program is killed.
#pragma once

#include "platform/pipewire/keep/MutedStream.h"
#include "platform/pipewire/keep/RouteWriter.h"

#include <iosfwd>
#include <map>
#include <set>
#include <string>

#include <sys/types.h>

namespace velmora::pipewire {

/// A sink of ours goes with our connection, but the entry that sent a stream there stays until the
/// stream ends, and nobody removes it for a program that was killed. So a small process of ours
/// keeps the list of such streams; when we end without having taken them back, it does.
///
/// The same for what the session manager is to remember: it takes a second to tell it, and by then
/// we may have ended.
///
/// The process starts with the first entry and ends with this object. Where its program is missing
/// or cannot be started, nothing is kept.
///
/// Threads: any, with the control loop's lock. Blocks shortly: the list is a few hundred bytes, and
/// the end of a process that has nothing to do is waited for.
class LastWill {
public:
    LastWill() = default;
    ~LastWill();
    LastWill(const LastWill&) = delete;
    LastWill& operator=(const LastWill&) = delete;

    void add(const MutedStream& muted);
    void remove(Serial stream);
    void add(const RouteKey& key, const std::string& device);
    void remove(const RouteKey& key);

private:
    void start();
    void tell(const std::string& line);

    std::set<Serial> streams_;
    std::set<RouteKey> routes_;
    bool isTried_ = false;
    int channel_ = -1; // our end of a socket pair
    pid_t process_ = 0;
};

struct Bequest {
    std::map<Serial, MutedStream> streams;
    StoredRoutes routes;

    bool operator==(const Bequest&) const = default;
};

/// What is still on the list when its writer has gone. For the other process.
[[nodiscard]] Bequest readLastWill(std::istream& input);
/// Does all of it. Returns whether the sound server has taken it; blocks for some seconds when it
/// does not answer. Threads: any, after `pw_init`.
bool executeLastWill(const Bequest& list);

} // namespace velmora::pipewire
