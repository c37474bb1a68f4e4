#include "ui/kit/meters/MovingItem.h"

#include "ui/kit/meters/FrameClock.h"

#include <QQuickWindow>

namespace velmora {

MovingItem::MovingItem(QQuickItem* parent) : DrawnItem(parent) {
}

void MovingItem::setMoving(bool moving) {
    if (moving_ == moving) {
        return;
    }
    moving_ = moving;
    follow(isVisible());
}

void MovingItem::itemChange(ItemChange change, const ItemChangeData& data) {
    DrawnItem::itemChange(change, data);
    if (change == ItemSceneChange) {
        disconnect(ticks_);
        follow(isVisible() && data.window != nullptr);
    }
    if (change == ItemVisibleHasChanged) {
        follow(data.boolValue);
    }
}

void MovingItem::follow(bool shown) {
    const bool wanted = moving_ && shown && window() != nullptr;
    if (wanted == bool(ticks_)) {
        return;
    }
    if (wanted) {
        ticks_ = connect(&FrameClock::of(*window()), &FrameClock::ticked, this, [this] { tick(); });
    } else {
        disconnect(ticks_);
    }
}

} // namespace velmora
