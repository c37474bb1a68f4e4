#include "operations/ChannelChoices.h"

#include "capture/InputDeviceInfo.h"
#include "capture/RangeName.h"
#include "settings/AppSettings.h"

#include <cstdint>

namespace velmora {

namespace {

struct UsersWords {
    explicit UsersWords(const AppSettings& settings)
        : one(settings.t(frenchRangeWords.one)), several(settings.t(frenchRangeWords.several)) {}
    [[nodiscard]] RangeWords words() const { return {.one = one, .several = several}; }

    std::string one;
    std::string several;
};

ChannelChoice choice(const InputDeviceInfo& device,
                     const AppSettings& settings,
                     std::int64_t first,
                     std::int64_t count) {
    const ChannelRange range{.first = first, .count = count};
    const UsersWords words(settings);
    return {DeviceChannelsSource{device.deviceID, first, count, rangeName(device.name, range)},
            rangeLabel(range, words.words())};
}

} // namespace

std::vector<ChannelChoice> channelChoices(const InputDeviceInfo& device,
                                          const AppSettings& settings) {
    std::vector<ChannelChoice> choices;
    for (std::int64_t first = 1; device.channels > 2 && first < device.channels; first += 2) {
        choices.push_back(choice(device, settings, first, 2));
    }
    for (std::int64_t channel = 1; device.channels > 1 && channel <= device.channels; ++channel) {
        choices.push_back(choice(device, settings, channel, 1));
    }
    return choices;
}

std::string shownName(const AudioSource& source, const AppSettings& settings) {
    return shownName(source, UsersWords(settings).words());
}

} // namespace velmora
