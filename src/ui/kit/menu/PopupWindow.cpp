#include "ui/kit/menu/PopupWindow.h"

#include "ui/kit/WindowSystem.h"
#include "ui/kit/X11Selection.h"
#include "ui/kit/menu/PopupPlace.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

namespace {

constexpr double shadowReach = 12; // points

/// On X11 only while a compositing manager runs, which may come and go: otherwise what is not drawn
/// is black. Source: Extended Window Manager Hints 1.5: the manager owns this selection.
bool mayBeTranslucent() {
    return isX11SelectionOwned("_NET_WM_CM_S0").value_or(true);
}

/// Where a pop-up may stand. A Wayland client does not know where its windows are: there it is
/// below the anchor, as high as the screen allows, and the compositor moves it onto the screen.
QRectF roomAround(const QRectF& anchor, const QWindow& owner) {
    if (isOnWayland()) {
        const QSizeF screen = owner.screen()->size();
        QRectF room = anchor.adjusted(-screen.width(), 0, screen.width(), 0);
        room.setHeight(anchor.height() + PopupPlace::gap + screen.height() - PopupPlace::margin);
        return room;
    }
    const QScreen* const screen = QGuiApplication::screenAt(anchor.center().toPoint());
    return screen != nullptr ? screen->availableGeometry() : owner.screen()->availableGeometry();
}

/// Where nothing fits below, a compositor turns a pop-up over its upper edge, and its lower edge is
/// there then: it begins above its anchor, so that nothing of it covers that in either place.
double upperRimFor(const QRectF& anchor, double rim) {
    const bool mayBeTurned = isOnWayland() && rim > 0;
    return mayBeTurned ? std::max(rim, anchor.height() + 2 * PopupPlace::gap - rim) : rim;
}

} // namespace

PopupWindow::PopupWindow(QWindow* parent) : QQuickWindow(parent) {
    setFlags(Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    connect(this, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible && !isMoving_) {
            dismiss();
        }
    });
}

PopupWindow::~PopupWindow() {
    disconnect(this, nullptr, this, nullptr); // it is hidden once more on the way out
}

void PopupWindow::setAnchor(QQuickItem* anchor) {
    if (anchor_ != anchor) {
        anchor_ = anchor;
        Q_EMIT anchorChanged();
    }
}

void PopupWindow::setWanted(const QSizeF& wanted) {
    if (wanted_ != wanted) {
        wanted_ = wanted;
        Q_EMIT wantedChanged();
        place();
    }
}

void PopupWindow::open() {
    if (isOpen_ || anchor_ == nullptr || anchor_->window() == nullptr) {
        return;
    }
    tellThatItLeft();
    isOpen_ = true;
    spoken_ = nullptr;
    owner_ = anchor_->window();
    setTransientParent(owner_);
    const bool isTranslucent = mayBeTranslucent();
    setColor(isTranslucent ? Qt::transparent : Qt::black);
    if (const double rim = isTranslucent ? shadowReach : 0; std::exchange(rim_, rim) != rim) {
        Q_EMIT rimChanged();
    }
    follow(*owner_);
    place();
    show();
    if (isOnX11()) {
        setMouseGrabEnabled(true); // presses beside it are ours, whosever window is there
    }
    const auto begin = [this] {
        if (isOpen_) {
            speak(focused());
        }
    };
    QMetaObject::invokeMethod(this, begin, Qt::QueuedConnection); // once the focus is set
}

void PopupWindow::follow(QQuickWindow& owner) {
    owner.installEventFilter(this);
    for (const auto changed : {&QWindow::xChanged,
                               &QWindow::yChanged,
                               &QWindow::widthChanged,
                               &QWindow::heightChanged}) {
        connect(&owner, changed, this, &PopupWindow::place);
    }
    // An anchor moves with the items around it, which show that at the next frame.
    connect(&owner, &QQuickWindow::afterAnimating, this, &PopupWindow::place);
    connect(&owner, &QWindow::visibleChanged, this, &PopupWindow::dismiss);
    // What follows a change of focus may be told in two steps, with none in between.
    connect(
        qGuiApp,
        &QGuiApplication::focusWindowChanged,
        this,
        [this] {
            const QWindow* const now = QGuiApplication::focusWindow();
            if (isOpen_ && now != this && now != owner_) {
                dismiss();
            }
        },
        Qt::QueuedConnection);
}

void PopupWindow::dismiss() {
    if (!std::exchange(isOpen_, false)) {
        return;
    }
    QQuickWindow* const owner = std::exchange(owner_, nullptr);
    const bool hasKeyboard = QGuiApplication::focusWindow() == this;
    disconnect(qGuiApp, nullptr, this, nullptr);
    if (owner != nullptr) {
        owner->removeEventFilter(this);
        disconnect(owner, nullptr, this, nullptr);
    }
    if (isOnX11()) {
        setMouseGrabEnabled(false);
    }
    hide();
    Q_EMIT dismissed();
    isLeaving_ = true;
    if (hasKeyboard && owner != nullptr && owner->isVisible()) {
        giveKeyboardBack(*owner);
    } else {
        tellThatItLeft();
    }
}

void PopupWindow::giveKeyboardBack(QQuickWindow& owner) {
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* now) {
        if (now != nullptr && now != this) {
            tellThatItLeft();
        }
    });
    if (!isOnWayland()) { // whose compositors do so themselves
        owner.requestActivate();
    }
}

void PopupWindow::tellThatItLeft() {
    if (std::exchange(isLeaving_, false)) {
        disconnect(qGuiApp, nullptr, this, nullptr);
        Q_EMIT left();
    }
}

void PopupWindow::place() {
    if (!isOpen_ || owner_ == nullptr || anchor_ == nullptr) {
        return;
    }
    const QSizeF size = anchor_->mapRectToScene({QPointF(), anchor_->size()}).size();
    const QRectF anchor(anchor_->mapToGlobal(QPointF()), size);
    const int rim = static_cast<int>(rim_);
    const double upper = std::round(upperRimFor(anchor, rim));
    if (std::exchange(upperRim_, upper) != upper) {
        Q_EMIT rimChanged();
    }
    const QRect content =
        PopupPlace::beside(anchor, wanted_, roomAround(anchor, *owner_), owner_->geometry())
            .toRect();
    const QRect now = content.adjusted(-rim, -static_cast<int>(upper), rim, rim);
    if (now == geometry()) {
        return;
    }
    const bool grows = now.width() > width() || now.height() > height();
    if (isVisible() && isOnWayland() && grows && !owner_->geometry().contains(now)) {
        showAnew(now);
    } else {
        setGeometry(now);
    }
}

/// A compositor moves a pop-up onto the screen when it is shown, and never again.
void PopupWindow::showAnew(const QRect& place) {
    isMoving_ = true;
    hide();
    setGeometry(place);
    show();
    isMoving_ = false;
}

void PopupWindow::mousePressEvent(QMouseEvent* event) {
    if (QRectF(QPointF(), QSizeF(size())).contains(event->position())) {
        QQuickWindow::mousePressEvent(event);
    } else {
        dismiss();
    }
}

bool PopupWindow::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (!isOpen_ || watched != owner_ || !isKey) {
        return QQuickWindow::eventFilter(watched, event);
    }
    deliverKey(*event);
    return true;
}

/// Where the keyboard would act if this window had it.
QQuickItem& PopupWindow::focused() const {
    QQuickItem* item = contentItem();
    while (item->isFocusScope() && item->scopedFocusItem() != nullptr) {
        item = item->scopedFocusItem();
    }
    return *item;
}

void PopupWindow::deliverKey(QEvent& event) {
    const QPointer<PopupWindow> self(this);
    for (QPointer<QQuickItem> item = &focused(); item != nullptr; item = item->parentItem()) {
        event.accept();
        QCoreApplication::sendEvent(item, &event);
        if (item == nullptr || event.isAccepted()) {
            break;
        }
    }
    if (self != nullptr && isOpen_) {
        speak(focused());
    }
}

/// A window without the keyboard has no focus that a screen reader hears of.
void PopupWindow::speak(QQuickItem& item) {
    if (activeFocusItem() == nullptr && std::exchange(spoken_, &item) != &item) {
        QAccessibleEvent event(&item, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace velmora
