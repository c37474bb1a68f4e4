#include "platform/pipewire/ObjectIds.h"

namespace velmora::pipewire {

AudioObjectID hashName(std::string_view name) noexcept {
    constexpr AudioObjectID offsetBasis = 2166136261U;
    constexpr AudioObjectID prime = 16777619U;
    AudioObjectID hash = offsetBasis;
    for (const char byte : name) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * prime;
    }
    return hash;
}

AudioObjectID ObjectIds::ofDevice(const std::string& uid) {
    if (const auto known = devices_.find(uid); known != devices_.end()) {
        return known->second;
    }
    return devices_[uid] = takeFrom(hash_(uid));
}

AudioObjectID ObjectIds::next() {
    return last_ = takeFrom(last_ + 1);
}

AudioObjectID ObjectIds::takeFrom(AudioObjectID first) {
    while (!taken_.insert(first).second) {
        ++first;
    }
    return first;
}

} // namespace velmora::pipewire
