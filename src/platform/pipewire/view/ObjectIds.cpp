#include "platform/pipewire/view/ObjectIds.h"

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
    AudioObjectID id = hash_(uid);
    while (id <= last_ || !taken_.insert(id).second) {
        ++id;
    }
    return devices_[uid] = id;
}

AudioObjectID ObjectIds::next() {
    do {
        ++last_;
    } while (taken_.contains(last_));
    return last_;
}

} // namespace velmora::pipewire
