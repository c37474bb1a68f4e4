#include "ui/kit/access/SpokenLevel.h"

#include "ui/kit/controls/Scales.h"
#include "ui/kit/meters/LevelBar.h"

#include <cmath>

namespace velmora {

namespace {

constexpr int floorDb = -60; // where the bar begins

} // namespace

SpokenLevel::SpokenLevel(LevelBar& bar) : SpokenItem(bar) {
}

QString SpokenLevel::text(QAccessible::Text kind) const {
    return kind == QAccessible::Value ? Scales::decibelText(currentValue().toDouble())
                                      : SpokenItem::text(kind);
}

void* SpokenLevel::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                               : SpokenItem::interface_cast(type);
}

QVariant SpokenLevel::currentValue() const {
    const auto& bar = static_cast<const LevelBar&>(item());
    const double filled = bar.isActive() ? Scales::meterFill(bar.level()) : 0.0;
    return int(std::lround(floorDb * (1 - filled / Scales::meterLength)));
}

QVariant SpokenLevel::minimumValue() const {
    return floorDb;
}

} // namespace velmora
