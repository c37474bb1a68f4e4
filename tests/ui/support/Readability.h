// Readability.h: whether what a window shows can be read and hit.
#pragma once

#include <QColor>
#include <QQuickItem>
#include <QString>
#include <set>

namespace velmora {

constexpr double forTexts = 4.5; // to 1 (WCAG 2.1, 1.4.3)
constexpr double forSymbols = 3; // to 1 (WCAG 2.1, 1.4.11)

/// How many to one an opaque colour stands out from another (WCAG 2.1).
[[nodiscard]] double contrast(const QColor& one, const QColor& other);
/// What is seen of a translucent colour on an opaque one.
[[nodiscard]] QColor over(const QColor& front, const QColor& back);

/// Enabled and not empty.
[[nodiscard]] bool isEnabledText(QQuickItem& item);
[[nodiscard]] bool isSymbol(QQuickItem& item);

/// Each visible item of this kind in `root` stands out from what is beside it, and there is one.
/// @param fixed  names of items in which it may stand out less
void expectContrast(QQuickItem& root,
                    bool (*kind)(QQuickItem&),
                    double least,
                    const std::set<QString>& fixed = {});

/// Whatever can be pressed in `root` is 24 points wide and high at least, and there is something.
void expectTargets(QQuickItem& root);

} // namespace velmora
