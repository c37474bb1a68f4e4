#include "ui/support/QmlTest.h"

#include "ui/kit/Kit.h"
#include "ui/support/ItemSearch.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QQmlComponent>
#include <QTest>

namespace velmora {

namespace {

constexpr QSize windowSize(480, 640);

/// Lays out what waits for the next frame, such as the rows of a list.
void polish(QQuickItem& item) {
    item.ensurePolished();
    for (QQuickItem* child : item.childItems()) {
        polish(*child);
    }
}

std::string describe(const QList<QQmlError>& errors) {
    std::string text;
    for (const QQmlError& error : errors) {
        text += error.toString().toStdString() + "\n";
    }
    return text;
}

} // namespace

QmlTest::QmlTest() {
    installKit(*engine, settings);
    engine->setOutputWarningsToStandardError(false);
    QObject::connect(engine.get(), &QQmlEngine::warnings, engine.get(), [](const auto& warnings) {
        ADD_FAILURE() << describe(warnings);
    });
    machine.mainQueue.advance({});
}

QmlTest::~QmlTest() {
    pointer_.reset();
    window_.reset();
    engine.reset();
}

QQuickItem& QmlTest::show(const QByteArray& qml, const QVariantMap& initial) {
    QQmlComponent component(engine.get());
    component.setData("import QtQuick; import Velmora.Kit; " + qml, QUrl("qrc:/test.qml"));
    auto* item = qobject_cast<QQuickItem*>(make(component, initial));
    if (item == nullptr) {
        return missing_;
    }
    auto window = std::make_unique<QQuickWindow>();
    window->resize(windowSize);
    item->setParent(window->contentItem());
    item->setParentItem(window->contentItem());
    open(std::move(window));
    return *item;
}

QQuickWindow& QmlTest::showWindow(const QUrl& file, const QVariantMap& initial) {
    QQmlComponent component(engine.get(), file);
    auto* window = qobject_cast<QQuickWindow*>(make(component, initial));
    open(window == nullptr ? std::make_unique<QQuickWindow>()
                           : std::unique_ptr<QQuickWindow>(window));
    return *window_;
}

QQuickItem& QmlTest::find(const QString& name) {
    settle();
    QQuickItem* item = findItem(*window_, name);
    if (item == nullptr) {
        ADD_FAILURE() << "nothing visible is called \"" << name.toStdString() << '"';
        return missing_;
    }
    return *item;
}

bool QmlTest::isShown(const QString& name) {
    settle();
    return findItem(*window_, name) != nullptr;
}

void QmlTest::key(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QCoreApplication::sendEvent(window_.get(), &event);
    }
    settle();
}

void QmlTest::type(const QString& text) {
    for (const QChar letter : text) {
        key(Qt::Key(letter.toUpper().unicode()), {}, letter);
    }
}

void QmlTest::tap(QQuickItem& item) {
    if (touchScreen_ == nullptr) {
        touchScreen_ = QTest::createTouchDevice();
    }
    QQuickWindow* const where = item.window();
    const QPoint at = item.mapToScene({item.width() / 2, item.height() / 2}).toPoint();
    QTest::touchEvent(where, touchScreen_).press(0, at, where);
    settle();
    QTest::touchEvent(where, touchScreen_).release(0, at, where);
    settle();
}

void QmlTest::settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (QQuickItem* const content : contentsOf(*window_)) {
        polish(*content);
    }
    QCoreApplication::processEvents();
}

void QmlTest::advance(std::chrono::milliseconds duration) {
    machine.advance(duration);
    clock.advanceBy(duration);
    settle();
}

QImage QmlTest::grab() {
    settle();
    QImage picture = window_->grabWindow();
    picture.setDevicePixelRatio(window_->effectiveDevicePixelRatio()); // not told by this backend
    return picture;
}

QColor QmlTest::colorAt(const QQuickItem& item, QPointF at) {
    settle();
    QImage picture = item.window()->grabWindow();
    picture.setDevicePixelRatio(item.window()->effectiveDevicePixelRatio());
    const QPointF pixel = item.mapToScene(at) * picture.devicePixelRatio();
    return picture.pixelColor(int(pixel.x()), int(pixel.y()));
}

QObject* QmlTest::make(QQmlComponent& component, const QVariantMap& initial) {
    QObject* object = nullptr;
    if (component.isReady()) { // Qt 6.4 crashes when it is not
        object = component.createWithInitialProperties(initial);
    }
    if (object == nullptr) {
        ADD_FAILURE() << describe(component.errors());
    }
    return object;
}

void QmlTest::open(std::unique_ptr<QQuickWindow> window) {
    pointer_.reset();
    window_ = std::move(window);
    pointer_.emplace(*window_);
    window_->show();
    window_->requestActivate();
    settle();
    ASSERT_TRUE(window_->isExposed());
}

} // namespace velmora
