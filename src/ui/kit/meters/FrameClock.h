// FrameClock.h: one slow frame rate for everything in a window that moves by itself.
#pragma once

#include <QObject>
#include <QPauseAnimation>
#include <chrono>

class QQuickWindow;

namespace velmora {

/// Ticks 25 times a second while something is connected to it and the window is really on the
/// screen, so that all level bars and the waveform share each frame, and a hidden, minimised or
/// covered window draws none.
///
/// It is an animation and not a timer, so that a test that turns the animations' time turns it too.
///
/// Threads: main.
class FrameClock : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds period{40};

    /// The clock of this window, which owns it.
    [[nodiscard]] static FrameClock& of(QQuickWindow& window);

    [[nodiscard]] bool isTicking() const;

Q_SIGNALS:
    void ticked();

protected:
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit FrameClock(QQuickWindow& window);

    void update();

    QQuickWindow& window_;
    QPauseAnimation pause_;
    int followers_ = 0;
};

} // namespace velmora
