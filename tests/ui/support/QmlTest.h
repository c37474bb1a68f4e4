// QmlTest.h: real QML in a window without a screen, on a simulated machine.
#pragma once

#include "platform/simulated/SimulatedPlatform.h"
#include "settings/AppSettings.h"
#include "ui/support/AnimationClock.h"
#include "ui/support/Pointer.h"

#include <QImage>
#include <QPointingDevice>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QVariantMap>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <vector>

namespace velmora {

/// Shows one piece of QML and drives it as a person does.
///
/// Time stands still: timers of the machine and animations of QML move with `advance` only. Every
/// warning that QML prints fails the test.
///
/// Threads: main.
class QmlTest : public testing::Test {
protected:
    QmlTest();
    ~QmlTest() override;

    /// Shows the item that this QML text makes, at its own size, or at its implicit one, in a
    /// window of 480 x 640. The text may leave out its imports of QtQuick and Velmora.Kit.
    QQuickItem& show(const QByteArray& qml, const QVariantMap& initial = {});
    /// Shows the window that a QML file makes, such as "qrc:/qt/qml/Velmora/ControlWindow.qml".
    QQuickWindow& showWindow(const QUrl& file, const QVariantMap& initial = {});

    /// By objectName or by what a screen reader calls it. Missing, the test fails and gets an item
    /// that is part of nothing.
    QQuickItem& find(const QString& name);
    [[nodiscard]] bool isShown(const QString& name);
    [[nodiscard]] QQuickWindow& window() const { return *window_; }
    [[nodiscard]] Pointer& pointer() { return *pointer_; }

    /// Presses and releases a key in the window; `text` is what it types.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
    void type(const QString& text);
    /// A finger touches the middle of the item and lifts; the item may lie in a pop-up.
    void tap(QQuickItem& item);

    /// Lets pending work run: bindings, layout, focus. No time passes.
    void settle();
    /// Turns the machine's clock and the animations' together.
    void advance(std::chrono::milliseconds duration);

    [[nodiscard]] QImage grab();
    /// The colour in the picture of the window, at a position of the item.
    [[nodiscard]] QColor colorAt(const QQuickItem& item, QPointF at);

    SimulatedPlatform machine;
    AppSettings settings{machine.platform()};
    AnimationClock clock;
    std::unique_ptr<QQmlEngine> engine = std::make_unique<QQmlEngine>();

private:
    QObject* make(class QQmlComponent& component, const QVariantMap& initial);
    void open(std::unique_ptr<QQuickWindow> window);

    std::unique_ptr<QQuickWindow> window_;
    std::optional<Pointer> pointer_;
    QPointingDevice* touchScreen_ = nullptr; // Qt's, from the first touch on
    QQuickItem missing_;
};

} // namespace velmora
