// PopupWindow.h: a window beside an item, which may leave the item's own window.
#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSizeF>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// Stands over everything while it is open, and follows its anchor when that moves. A press
/// anywhere else, another window that becomes active, and the end of the window it belongs to
/// dismiss it.
///
/// Some desktops give it the keyboard, and X11 leaves that with the window it belongs to: every key
/// comes to its items in either case.
///
/// Threads: main.
class PopupWindow : public QQuickWindow {
    Q_OBJECT
    QML_ELEMENT
    /// What it stands beside; in a window that is shown.
    Q_PROPERTY(QQuickItem* anchor READ anchor WRITE setAnchor NOTIFY anchorChanged)
    /// The size of its content, in points of the screen; it gets less where the screen has less.
    Q_PROPERTY(QSizeF wanted READ wanted WRITE setWanted NOTIFY wantedChanged)
    /// Points around its content, for a shadow; 0 on a desktop without translucent windows.
    Q_PROPERTY(double rim READ rim NOTIFY rimChanged)
    /// The same above it.
    Q_PROPERTY(double upperRim READ upperRim NOTIFY rimChanged)

public:
    explicit PopupWindow(QWindow* parent = nullptr);
    ~PopupWindow() override;

    [[nodiscard]] QQuickItem* anchor() const { return anchor_; }
    void setAnchor(QQuickItem* anchor);
    [[nodiscard]] QSizeF wanted() const { return wanted_; }
    void setWanted(const QSizeF& wanted);
    [[nodiscard]] double rim() const { return rim_; }
    [[nodiscard]] double upperRim() const { return upperRim_; }

    Q_INVOKABLE void open();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void anchorChanged();
    void wantedChanged();
    void rimChanged();
    /// It has gone, whoever wanted that.
    void dismissed();
    /// After that: the keyboard is back where it was.
    void left();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(QQuickWindow& owner);
    void place();
    void showAnew(const QRect& place);
    void giveKeyboardBack(QQuickWindow& owner);
    void tellThatItLeft();
    [[nodiscard]] QQuickItem& focused() const;
    void deliverKey(QEvent& event);
    void speak(QQuickItem& item);

    QPointer<QQuickItem> anchor_;
    QSizeF wanted_;
    double rim_ = 0;
    double upperRim_ = 0;
    bool isOpen_ = false;
    bool isMoving_ = false;        // hidden for a moment only
    bool isLeaving_ = false;       // the keyboard is still on its way back
    QPointer<QQuickItem> spoken_;  // what a screen reader heard of last
    QPointer<QQuickWindow> owner_; // the anchor's window, while open
};

} // namespace velmora
