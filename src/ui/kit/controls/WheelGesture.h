// WheelGesture.h: to whom a turning wheel belongs.
#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>

namespace velmora {

/// Turning the wheel once more goes to what took the turn before, until the wheel has paused: what
/// a scrolling list brings under the pointer never takes it over, and a list whose end is reached
/// does not scroll the page around it. Sees to it for every item of the program.
///
/// Threads: main.
class WheelGesture : public QObject {
    Q_OBJECT

public:
    static constexpr quint64 pause = 400; // ms without a turn, after which the next begins anew

    explicit WheelGesture(QObject* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QQuickItem> owner_; // none while nothing has taken a turn
    quint64 lastTurn_ = 0;       // ms, by the event's own time
};

} // namespace velmora
