// Comfort.h: what the desktop asks for the sake of whoever sits before it, for QML.
#pragma once

#include "platform/Signal.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace velmora {

class AppSettings;

/// Threads: main.
class Comfort : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Points of the desktop for each point of a window: everything grows with the texts.
    Q_PROPERTY(double scale READ scale NOTIFY changed)
    /// Nothing moves for the sake of moving.
    Q_PROPERTY(bool still READ still NOTIFY changed)

public:
    /// `settings` outlives this object.
    explicit Comfort(AppSettings& settings, QObject* parent = nullptr);
    /// The object that `installKit` gave to this engine.
    static Comfort* create(QQmlEngine* engine, QJSEngine* scripts);

    [[nodiscard]] double scale() const { return scale_; }
    [[nodiscard]] bool still() const { return still_; }

    static constexpr double largest = 1.5;
    /// How much larger a window is drawn, 1 … `largest`, where texts shall be `textScale` times as
    /// large. On X11 desktops tell every program a finer resolution instead, which is in
    /// `pixelsPerPoint` already. Threads: any.
    [[nodiscard]] static double
    windowScale(double textScale, const QString& platform, double pixelsPerPoint);

Q_SIGNALS:
    void changed();

private:
    void follow();

    AppSettings& settings_;
    double scale_ = 1.0;
    bool still_ = false;
    Signal::Connection connection_;
};

} // namespace velmora
