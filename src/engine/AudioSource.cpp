#include "engine/AudioSource.h"

namespace velmora {
namespace {

template <typename... Visitors>
struct Overloaded : Visitors... {
    using Visitors::operator()...;
};
template <typename... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>; // for compilers without P1816

class Hasher {
public:
    template <typename T>
    void feed(const T& field) noexcept {
        // The golden ratio in 64 bits spreads the bits of fields that are often small numbers.
        constexpr std::size_t goldenRatio = 0x9E3779B97F4A7C15U;
        state_ ^= std::hash<T>{}(field) + goldenRatio + (state_ << 6U) + (state_ >> 2U);
    }
    [[nodiscard]] std::size_t result() const noexcept { return state_; }

private:
    std::size_t state_ = 0;
};

} // namespace

std::string AudioSource::id() const {
    return std::visit(
        Overloaded{
            [](const AppSource& app) {
                return "app-" + app.bundleID + "-" + std::to_string(app.pid);
            },
            [](const DeviceSource& device) { return "dev-" + std::to_string(device.id); },
            [](const DeviceChannelsSource& channels) {
                return "dev-" + std::to_string(channels.id) + "-c" +
                       std::to_string(channels.first) + "x" + std::to_string(channels.count);
            },
        },
        case_);
}

const std::string& AudioSource::name() const {
    return std::visit([](const auto& source) -> const std::string& { return source.name; }, case_);
}

} // namespace velmora

std::size_t
std::hash<velmora::AudioSource>::operator()(const velmora::AudioSource& source) const noexcept {
    using namespace velmora;
    Hasher hasher;
    hasher.feed(source.value().index());
    std::visit(Overloaded{
                   [&](const AppSource& app) {
                       hasher.feed(app.pid);
                       hasher.feed(app.name);
                       hasher.feed(app.bundleID);
                   },
                   [&](const DeviceSource& device) {
                       hasher.feed(device.id);
                       hasher.feed(device.name);
                   },
                   [&](const DeviceChannelsSource& channels) {
                       hasher.feed(channels.id);
                       hasher.feed(channels.first);
                       hasher.feed(channels.count);
                       hasher.feed(channels.name);
                   },
               },
               source.value());
    return hasher.result();
}
