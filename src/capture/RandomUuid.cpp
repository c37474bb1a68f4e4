#include "capture/RandomUuid.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <random>

namespace velmora {

std::string randomUuid() {
    std::random_device device;
    std::uniform_int_distribution<std::uint64_t> bits;
    constexpr std::uint64_t versionMask = 0xF000;
    constexpr std::uint64_t version4 = 0x4000;
    constexpr std::uint64_t variantMask = 0xC000'0000'0000'0000;
    constexpr std::uint64_t variant = 0x8000'0000'0000'0000;
    const std::uint64_t high = (bits(device) & ~versionMask) | version4;
    const std::uint64_t low = (bits(device) & ~variantMask) | variant;

    std::array<char, sizeof "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX"> text{};
    std::snprintf(text.data(),
                  text.size(),
                  "%08X-%04X-%04X-%04X-%012llX",
                  static_cast<unsigned>(high >> 32U),
                  static_cast<unsigned>((high >> 16U) & 0xFFFFU),
                  static_cast<unsigned>(high & 0xFFFFU),
                  static_cast<unsigned>(low >> 48U),
                  static_cast<unsigned long long>(low & 0xFFFF'FFFF'FFFFU));
    return text.data();
}

} // namespace velmora
