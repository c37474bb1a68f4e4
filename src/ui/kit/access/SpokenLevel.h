// SpokenLevel.h: a level bar, as a screen reader finds it.
#pragma once

#include "ui/kit/access/SpokenItem.h"

#include <QAccessible>

namespace velmora {

class LevelBar;

/// A level in whole decibels, −60 … 0, for whoever asks. No change is told: there are thirty a
/// second.
///
/// Threads: main.
class SpokenLevel final : public SpokenItem, public QAccessibleValueInterface {
public:
    explicit SpokenLevel(LevelBar& bar);

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ProgressBar; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QVariant currentValue() const override;
    void setCurrentValue(const QVariant&) override {}
    [[nodiscard]] QVariant minimumValue() const override;
    [[nodiscard]] QVariant maximumValue() const override { return 0; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }
};

} // namespace velmora
