// SceneWindow.h: one window of the program, made when it is first needed.
#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QString>
#include <QUrl>
#include <functional>
#include <memory>

class QQmlEngine;

namespace velmora {

/// Threads: main. Errors: a window that cannot be made ends the program, because its QML is part
/// of the program.
class SceneWindow : public QObject {
    Q_OBJECT

public:
    /// Asked before the window goes because the user closes it; false keeps it.
    using MayClose = std::function<bool()>;

    /// @param model  what the window's property `model` gets
    /// `engine` and `model` outlive this object.
    SceneWindow(QQmlEngine& engine, QUrl file, QObject& model, MayClose mayClose);
    ~SceneWindow() override;

    /// Makes the window without showing it.
    QQuickWindow& make();
    /// Brings it to the front, in the middle of the screen when it is new.
    /// @param token  the desktop's permission to come to the front (Wayland); may be empty
    void open(const QString& token = {});
    void minimize();

    [[nodiscard]] bool isVisible() const { return window_ && window_->isVisible(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// Its first picture is on the screen.
    void drawn();
    /// It can never be drawn: what draws it cannot be prepared.
    void drawingFailed(const QString& reason);

private:
    QQmlEngine& engine_;
    QUrl file_;
    QObject& model_;
    MayClose mayClose_;
    std::unique_ptr<QQuickWindow> window_;
};

} // namespace velmora
