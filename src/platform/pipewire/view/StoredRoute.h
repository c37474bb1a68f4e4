// StoredRoute.h: what the session manager keeps of where a kind of stream plays.
#pragma once

#include "platform/pipewire/view/Properties.h"

#include <compare>
#include <iosfwd>
#include <optional>
#include <string>

namespace velmora::pipewire {

/// One property of a playing stream, under which the session manager remembers the device that the
/// user chose: the next stream with the same one is sent there. A role that counts comes before
/// the application, so that programs of one role share an entry.
struct RouteKey {
    std::string property;
    std::string value;

    [[nodiscard]] bool isEmpty() const { return property.empty(); }
    auto operator<=>(const RouteKey&) const = default;
};

/// Two quoted words, for another process of ours.
std::ostream& operator<<(std::ostream& out, const RouteKey& key);
std::istream& operator>>(std::istream& in, RouteKey& key);

/// Which roles are keys: from WirePlumber 0.5.15 on notifications only.
enum class RoleKeys { every, notification };

/// @param properties  of the session manager's client, which tells its version from 0.5 on
[[nodiscard]] RoleKeys roleKeysOf(const Properties& properties);

/// Empty when there is nothing to remember the stream by.
/// Source: WirePlumber 0.4.13 and 0.5, scripts "restore-stream" and "state-stream".
[[nodiscard]] RouteKey routeKey(const Properties& stream, RoleKeys roles);

/// The `node.name` of the device that is kept for `key` in the session manager's file; none when
/// there is none. Reads the files of WirePlumber 0.4 ("restore-stream", one line for each value)
/// and 0.5 ("stream-properties", one JSON object for each key).
[[nodiscard]] std::optional<std::string> storedDevice(std::istream& file, const RouteKey& key);

} // namespace velmora::pipewire
