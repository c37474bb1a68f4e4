// WaveformView.h: the moving accent line under the header.
#pragma once

#include "ui/kit/meters/MovingItem.h"
#include "ui/kit/meters/WaveformShape.h"

#include <QtQml/qqmlregistration.h>

namespace velmora {

/// Two drifting lines in the accent colours, for decoration only: a screen reader does not see it.
/// They drift while something runs and for a few seconds more; what moves for longer beside a text
/// keeps some people from reading it.
///
/// Its base is named in full because Qt's tools take the name as it is written.
///
/// Threads: main.
class WaveformView : public velmora::MovingItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool running READ isRunning WRITE setRunning NOTIFY runningChanged)
    Q_PROPERTY(bool still READ isStill WRITE setStill NOTIFY stillChanged)

public:
    explicit WaveformView(QQuickItem* parent = nullptr);

    [[nodiscard]] bool isRunning() const { return running_; }
    void setRunning(bool running);
    /// Nothing moves, whatever runs.
    [[nodiscard]] bool isStill() const { return still_; }
    void setStill(bool still);

Q_SIGNALS:
    void runningChanged();
    void stillChanged();

protected:
    void draw(QPainter& painter, const QRectF& place, double scale) override;
    void tick() override;

private:
    void decide();

    bool running_ = true;
    bool still_ = false;
    double restless_ = 0.0; // seconds that it has drifted since what ran has stopped
    WaveformShape shape_;
    double seconds_ = 0.0;
};

} // namespace velmora
