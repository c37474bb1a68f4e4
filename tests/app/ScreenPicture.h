// ScreenPicture.h: what is on a virtual display, as somebody before it would see it.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <string>

namespace velmora {

/// The whole screen of the X11 display of this name, without its pointer.
/// Errors: empty when the display does not answer.
[[nodiscard]] QImage screenPicture(const std::string& display);

/// The smallest area with every pixel of exactly this colour; empty when there is none.
[[nodiscard]] QRect areaOf(const QImage& picture, const QColor& color);

/// The smallest area outside which two pictures of one size are alike.
[[nodiscard]] QRect difference(const QImage& one, const QImage& other);

} // namespace velmora
