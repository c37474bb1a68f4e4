#include "ui/support/Readability.h"

#include "ui/support/ItemSearch.h"
#include "ui/support/Spoken.h"

#include <QImage>
#include <QQuickWindow>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace velmora {

namespace {

/// Relative luminance of an opaque colour (WCAG 2.1).
double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

QImage grabOf(QQuickItem& item) {
    QImage picture = item.window()->grabWindow();
    picture.setDevicePixelRatio(item.window()->effectiveDevicePixelRatio());
    return picture;
}

/// Itself, or in something of this name.
bool isIn(const QQuickItem* item, const QString& name) {
    while (item != nullptr && item->objectName() != name) {
        item = item->parentItem();
    }
    return item != nullptr;
}

} // namespace

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor over(const QColor& front, const QColor& back) {
    const auto mix = [&](double f, double b) {
        return float(f * double(front.alphaF()) + b * (1 - double(front.alphaF())));
    };
    return QColor::fromRgbF(mix(front.redF(), back.redF()),
                            mix(front.greenF(), back.greenF()),
                            mix(front.blueF(), back.blueF()));
}

bool isEnabledText(QQuickItem& item) {
    return isText(item) && item.isEnabled();
}

bool isSymbol(QQuickItem& item) {
    return item.property("source").toString().startsWith("image://glyph/") && item.isEnabled();
}

void expectContrast(QQuickItem& root,
                    bool (*kind)(QQuickItem&),
                    double least,
                    const std::set<QString>& fixed) {
    const QImage picture = grabOf(root);
    const double scale = picture.devicePixelRatio();
    const auto items = visibleItems(root, kind);
    EXPECT_FALSE(items.empty());
    for (QQuickItem* item : items) {
        const QPointF beside = item->mapToScene({-2, item->height() / 2}) * scale;
        if (!picture.rect().contains(beside.toPoint()) ||
            std::ranges::any_of(fixed, [&](const QString& name) { return isIn(item, name); })) {
            continue;
        }
        const QColor back = picture.pixelColor(beside.toPoint());
        const auto color = item->property("color").value<QColor>();
        EXPECT_GE(contrast(over(color, back), back), least)
            << item->property("text").toString().toStdString()
            << item->property("name").toString().toStdString() << ", "
            << color.name(QColor::HexArgb).toStdString() << " on " << back.name().toStdString();
    }
}

void expectTargets(QQuickItem& root) {
    const auto targets = visibleItems(root, [](QQuickItem& item) {
        return item.property("tipWanted").isValid() || item.activeFocusOnTab();
    });
    EXPECT_FALSE(targets.empty());
    for (QQuickItem* target : targets) {
        EXPECT_GE(target->width(), 24) << spokenName(*target).toStdString();
        EXPECT_GE(target->height(), 24) << spokenName(*target).toStdString();
    }
}

} // namespace velmora
