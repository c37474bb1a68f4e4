// AudioSource.h: the identity of one source of the mix.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>

namespace velmora {

/// What one running application plays.
struct AppSource {
    std::int32_t pid{};
    std::string name;     ///< display name
    std::string bundleID; ///< desktop-entry id, or "pid." and the process id

    bool operator==(const AppSource&) const = default;
};

/// A whole input device.
struct DeviceSource {
    std::uint32_t id{};
    std::string name;

    bool operator==(const DeviceSource&) const = default;
};

/// Some channels of an input device.
struct DeviceChannelsSource {
    std::uint32_t id{};
    std::int64_t first{}; ///< 1-based
    std::int64_t count{};
    std::string name;

    bool operator==(const DeviceChannelsSource&) const = default;
};

/// One source. A plain value.
///
/// Two notions of sameness, deliberately apart: `id()` keys every per-source setting and ignores
/// the name; equality, used for membership in lists, compares every field.
class AudioSource {
public:
    using Case = std::variant<AppSource, DeviceSource, DeviceChannelsSource>;

    AudioSource(AppSource app) : case_(std::move(app)) {}
    AudioSource(DeviceSource device) : case_(std::move(device)) {}
    AudioSource(DeviceChannelsSource channels) : case_(std::move(channels)) {}

    /// "app-<bundleID>-<pid>", "dev-<id>" or "dev-<id>-c<first>x<count>".
    [[nodiscard]] std::string id() const;
    [[nodiscard]] const std::string& name() const;

    [[nodiscard]] const Case& value() const { return case_; }
    [[nodiscard]] const AppSource* app() const { return std::get_if<AppSource>(&case_); }
    [[nodiscard]] const DeviceSource* device() const { return std::get_if<DeviceSource>(&case_); }
    [[nodiscard]] const DeviceChannelsSource* deviceChannels() const {
        return std::get_if<DeviceChannelsSource>(&case_);
    }

    bool operator==(const AudioSource&) const = default;

private:
    Case case_;
};

} // namespace velmora

/// Feeds the case's number, then every field in declaration order.
template <>
struct std::hash<velmora::AudioSource> {
    std::size_t operator()(const velmora::AudioSource& source) const noexcept;
};
