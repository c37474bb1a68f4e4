// WaveformView.h: the moving accent line under the header.
#pragma once

#include "ui/kit/meters/MovingItem.h"
#include "ui/kit/meters/WaveformShape.h"

#include <QtQml/qqmlregistration.h>

namespace velmora {

/// Two drifting lines in the accent colours, for decoration only: a screen reader does not see it.
///
/// Its base is named in full because Qt's tools take the name as it is written.
///
/// Threads: main.
class WaveformView : public velmora::MovingItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit WaveformView(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

protected:
    void tick() override;

private:
    WaveformShape shape_;
    double seconds_ = 0.0;
};

} // namespace velmora
