// GlyphImages.h: the pictures in the menu bar.
#pragma once

#include "app/IdleGlyphData.h"

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>
#include <optional>
#include <string_view>

namespace velmora {

// Templates: black shapes on nothing, to be coloured for the panel that shows them.
// Threads: main.

/// The level as five bars, 22 x 15 points.
[[nodiscard]] QImage meterIcon(float level, double pixelsPerPoint);

/// The picture for a mixer at rest, 28 x 15 points. When `png` cannot be decoded, the symbol
/// `fallback` stands in; without that one the picture is empty.
[[nodiscard]] QImage idleIcon(double pixelsPerPoint,
                              std::string_view png = idleGlyphPng,
                              const QString& fallback = QStringLiteral("waveform"));

/// What the tray shows: a step of the meter, or none for a mixer at rest.
using TrayGlyph = std::optional<int>;

/// The name under which panels find the picture in an icon theme, to colour it themselves.
[[nodiscard]] QString glyphName(TrayGlyph glyph);

/// Square pictures in the sizes that panels take, filled with `ink`.
[[nodiscard]] QIcon paintedGlyph(TrayGlyph glyph, const QColor& ink);

} // namespace velmora
