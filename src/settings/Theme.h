// Theme.h: the palette that every view draws with.
#pragma once

#include "settings/Color.h"

namespace velmora {

/// Only a home for names. `AppSettings::colorScheme` says which side of a dynamic colour the
/// application shows now.
struct Theme {
    Theme() = delete;

    static constexpr DynamicColor ink{colorFromHex(0x14333F), colorFromHex(0xF2E7CF)};
    static constexpr DynamicColor paper{colorFromHex(0xFFFBF0), colorFromHex(0x17323C)};
    static constexpr DynamicColor sand{colorFromHex(0xF6ECD6), colorFromHex(0x0F2530)};
    static constexpr DynamicColor shore{colorFromHex(0xF3E2B8), colorFromHex(0x234C5C)};

    static constexpr Color ocean = colorFromHex(0x0E7F8C);
    static constexpr Color lagoon = colorFromHex(0x15A0AC);
    static constexpr Color coral = colorFromHex(0xFF6A55);
    static constexpr Color sun = colorFromHex(0xFFC94D);
    static constexpr Color palm = colorFromHex(0x2E9E6B);

    static constexpr DynamicColor ink60 = ink.withOpacity(0.6);
    static constexpr DynamicColor ink40 = ink.withOpacity(0.4);
    static constexpr DynamicColor ink15 = ink.withOpacity(0.15);
};

/// Fill of whatever carries the accent.
inline constexpr LinearGradient accentGradient{Theme::ocean, Theme::lagoon};

} // namespace velmora
