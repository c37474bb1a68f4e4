// MovingItem.h: a painted item that changes with each tick of its window's clock.
#pragma once

#include <QMetaObject>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// Threads: main; `paint` on the thread that renders, while the main thread waits.
class MovingItem : public QQuickPaintedItem {
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
