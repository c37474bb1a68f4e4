// Color.h: plain colour values, and colours that depend on light and dark.
#pragma once

#include <cstdint>

namespace velmora {

/// sRGB components and opacity, 0 … 1.
struct Color {
    double red{};
    double green{};
    double blue{};
    double alpha{1.0};

    bool operator==(const Color&) const = default;

    [[nodiscard]] constexpr Color withOpacity(double opacity) const {
        return {red, green, blue, opacity};
    }
};

/// Opaque colour from 0xRRGGBB; each component is its byte / 255.
[[nodiscard]] constexpr Color colorFromHex(std::uint32_t rgb) {
    return {static_cast<double>(rgb >> 16U) / 255.0,
            static_cast<double>((rgb >> 8U) & 0xFFU) / 255.0,
            static_cast<double>(rgb & 0xFFU) / 255.0,
            1.0};
}

enum class ColorScheme { light, dark };

/// A colour that is chosen each time something is drawn, by the scheme of what is being drawn: a
/// dark panel of a light application passes `dark`.
struct DynamicColor {
    Color light;
    Color dark;

    bool operator==(const DynamicColor&) const = default;

    [[nodiscard]] constexpr Color in(ColorScheme scheme) const {
        return scheme == ColorScheme::dark ? dark : light;
    }
    [[nodiscard]] constexpr DynamicColor withOpacity(double opacity) const {
        return {light.withOpacity(opacity), dark.withOpacity(opacity)};
    }
};

/// Horizontal, from the leading (left) edge to the trailing one.
struct LinearGradient {
    Color leading;
    Color trailing;

    bool operator==(const LinearGradient&) const = default;
};

} // namespace velmora
