#include "engine/MonitoringChoice.h"

#include "capture/DeviceQueries.h"

#include <charconv>
#include <string>
#include <string_view>

namespace velmora {
namespace {

constexpr std::int64_t defaultChannel = 1;

struct Selection {
    std::string_view uid; ///< empty = none
    std::int64_t firstChannel{defaultChannel};
};

std::int64_t channelIn(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t channel = defaultChannel;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, channel);
    return error == std::errc{} && rest == end ? channel : defaultChannel;
}

/// Splits at the first "#"; of two pieces an empty one is dropped, so that "#3" names device "3".
Selection parse(std::string_view selection) {
    const auto mark = selection.find('#');
    if (mark == std::string_view::npos) {
        return {.uid = selection};
    }
    const auto before = selection.substr(0, mark);
    const auto after = selection.substr(mark + 1);
    if (before.empty()) {
        return {.uid = after};
    }
    return {.uid = before, .firstChannel = channelIn(after)};
}

} // namespace

std::optional<OutputTarget> resolveMonitoringDevice(const AudioDevices& devices,
                                                    const std::optional<std::string>& selection) {
    return monitorable(
        devices,
        chosenMonitor(devices, selection)
            .value_or(OutputTarget{devices.defaultOutputDevice().value_or(0), defaultChannel}));
}

bool namesMonitor(const std::optional<std::string>& selection) {
    return selection && !parse(*selection).uid.empty();
}

std::optional<OutputTarget> chosenMonitor(const AudioDevices& devices,
                                          const std::optional<std::string>& selection) {
    if (!namesMonitor(selection)) {
        return std::nullopt;
    }
    const Selection wanted = parse(*selection);
    return findDevice(devices, wanted.uid).transform([&](AudioObjectID device) {
        return OutputTarget{.device = device, .firstChannel = wanted.firstChannel};
    });
}

std::optional<OutputTarget> monitorable(const AudioDevices& devices, const OutputTarget& target) {
    const auto name = target.device == 0 ? std::nullopt : deviceName(devices, target.device);
    return name && !isVirtualMicName(*name) ? std::optional(target) : std::nullopt;
}

} // namespace velmora
