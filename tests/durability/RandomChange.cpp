#include "durability/Change.h"

#include <array>
#include <random>

namespace velmora {
namespace {

class Dice {
public:
    explicit Dice(std::uint64_t number) : random_(static_cast<std::uint32_t>(number)) {}

    template <typename T>
    T between(T lowest, T highest) {
        return std::uniform_int_distribution<T>(lowest, highest)(random_);
    }
    float real(float lowest, float highest) {
        return std::uniform_real_distribution<float>(lowest, highest)(random_);
    }
    bool coin() { return between(0, 1) == 1; }

    std::size_t source() { return between<std::size_t>(0, 3); }

    FXParams fx() {
        if (between(0, 3) == 0) {
            return {}; // takes the entry away
        }
        return {.lowcut = between<std::int64_t>(0, 2),
                .tilt = real(-1, 1),
                .comp = between<std::int64_t>(0, 3),
                .autoGain = coin(),
                .manualDB = real(-12, 12),
                .reverbChar = between<std::int64_t>(0, 2),
                .reverbMix = real(0, 1),
                .plosive = coin(),
                .denoise = coin()};
    }

    std::optional<std::string> monitoring() {
        constexpr std::array devices{"speakers", "interface", "interface#3", "unplugged#2"};
        const auto choice = between<std::size_t>(0, devices.size());
        return choice < devices.size() ? std::optional<std::string>(devices[choice]) : std::nullopt;
    }

    /// Few enough that most are saved again, applied and removed, too.
    std::string name() {
        constexpr std::array names{
            "Podcast", "podcast", "Émission du soir", "\"", "Chant 🎙", ""};
        return names[between<std::size_t>(0, names.size() - 1)];
    }

    SavePreset setup() {
        SavePreset save{.id = {}, .name = name(), .sources = {source()}};
        for (auto& byte : save.id.bytes) {
            byte = static_cast<std::uint8_t>(between(0, 255));
        }
        for (std::size_t next = 0; next < 4; ++next) {
            if (next != save.sources.front() && coin()) {
                save.sources.push_back(next);
            }
        }
        return save;
    }

private:
    std::mt19937 random_; // unlike simpler ones, spreads neighbouring seeds
};

} // namespace

Change randomChange(std::uint64_t number) {
    Dice dice(number);
    switch (dice.between(0, 15)) {
    case 0:
    case 1:
    case 2:
        return SetGain{.source = dice.source(), .gain = dice.real(0, 2)};
    case 3:
    case 4:
    case 5:
        return SetFX{.source = dice.source(), .fx = dice.fx()};
    case 6:
        return SetDirectMuted{.source = dice.source(), .muted = dice.coin()};
    case 7:
    case 8:
        return SetHeadphoneVolume{.volume = dice.real(0, 2)};
    case 9:
    case 10:
        return SetStreamVolume{.volume = dice.real(0, 2)};
    case 11:
        return SetMonitoring{.selection = dice.monitoring()};
    case 12:
    case 13:
        return dice.setup();
    case 14:
        return RemovePreset{.name = dice.name()};
    default:
        return ApplyPreset{.name = dice.name()};
    }
}

} // namespace velmora
