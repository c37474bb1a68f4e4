// MovingItem.h: a drawn item that changes with each tick of its window's clock.
#pragma once

#include "ui/kit/controls/DrawnItem.h"

#include <QMetaObject>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// Its base is named in full because Qt's tools take the name as it is written.
///
/// Threads: main.
class MovingItem : public velmora::DrawnItem {
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit MovingItem(QQuickItem* parent = nullptr);

protected:
    /// Asks for ticks; they come only while this item is shown.
    void setMoving(bool moving);
    [[nodiscard]] bool isMoving() const { return moving_; }
    /// `FrameClock::period` has passed.
    virtual void tick() = 0;

    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void follow(bool shown);

    bool moving_ = false;
    QMetaObject::Connection ticks_;
};

} // namespace velmora
