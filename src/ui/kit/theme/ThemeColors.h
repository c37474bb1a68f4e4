// ThemeColors.h: the palette for QML.
#pragma once

#include "platform/Signal.h"
#include "settings/Color.h"

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace velmora {

class AppSettings;

/// The colours of `Theme` as they are shown now; all follow one signal, so that a change of
/// appearance recolours everything in one frame.
///
/// On paper and sand, texts stand out by 4.5 to 1 at least in `ink`, `soft`, `active` and `alarm`,
/// symbols by 3 to 1 in these, `ink60` and `ring`. On a desktop that asks for high contrast the
/// others do as well: whatever is translucent otherwise comes to the fore.
///
/// Threads: main.
class ThemeColors : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Theme)
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed)
    Q_PROPERTY(QColor ink READ ink NOTIFY changed)
    Q_PROPERTY(QColor ink60 READ ink60 NOTIFY changed)
    Q_PROPERTY(QColor ink40 READ ink40 NOTIFY changed)
    Q_PROPERTY(QColor ink15 READ ink15 NOTIFY changed)
    Q_PROPERTY(QColor paper READ paper NOTIFY changed)
    Q_PROPERTY(QColor sand READ sand NOTIFY changed)
    Q_PROPERTY(QColor shore READ shore NOTIFY changed)
    Q_PROPERTY(QColor soft READ soft NOTIFY changed)
    Q_PROPERTY(QColor faintest READ faintest NOTIFY changed)
    Q_PROPERTY(QColor groove READ groove NOTIFY changed)
    Q_PROPERTY(QColor meterGroove READ meterGroove NOTIFY changed)
    Q_PROPERTY(QColor active READ active NOTIFY changed)
    Q_PROPERTY(QColor silenced READ silenced NOTIFY changed)
    Q_PROPERTY(QColor alarm READ alarm NOTIFY changed)
    Q_PROPERTY(QColor ring READ ring NOTIFY changed)
    Q_PROPERTY(QColor shadow READ shadow NOTIFY changed)
    Q_PROPERTY(QColor veil READ veil NOTIFY changed)
    Q_PROPERTY(QColor onOcean READ onOcean CONSTANT)
    Q_PROPERTY(QColor accentLeading READ accentLeading CONSTANT)
    Q_PROPERTY(QColor accentTrailing READ accentTrailing CONSTANT)
    Q_PROPERTY(QColor ocean READ ocean CONSTANT)
    Q_PROPERTY(QColor lagoon READ lagoon CONSTANT)
    Q_PROPERTY(QColor coral READ coral CONSTANT)
    Q_PROPERTY(QColor sun READ sun CONSTANT)
    Q_PROPERTY(QColor palm READ palm NOTIFY changed)

public:
    /// `settings` outlives this object.
    explicit ThemeColors(AppSettings& settings, QObject* parent = nullptr);
    /// The object that `installKit` gave to this engine.
    static ThemeColors* create(QQmlEngine* engine, QJSEngine* scripts);

    [[nodiscard]] bool dark() const { return scheme_ == ColorScheme::dark; }
    [[nodiscard]] bool highContrast() const { return isHighContrast_; }
    [[nodiscard]] QColor ink() const;
    [[nodiscard]] QColor ink60() const;
    [[nodiscard]] QColor ink40() const;
    [[nodiscard]] QColor ink15() const;
    [[nodiscard]] QColor paper() const;
    [[nodiscard]] QColor sand() const;
    [[nodiscard]] QColor shore() const;
    /// Texts that stand back.
    [[nodiscard]] QColor soft() const;
    /// A symbol of what is off.
    [[nodiscard]] QColor faintest() const;
    /// What a thumb runs along, and what a level fills.
    [[nodiscard]] QColor groove() const;
    [[nodiscard]] QColor meterGroove() const;
    /// What is in use, or asks to be pressed, drawn on paper.
    [[nodiscard]] QColor active() const;
    /// The loudspeaker of a silenced application.
    [[nodiscard]] QColor silenced() const;
    /// Words and symbols of what went wrong.
    [[nodiscard]] QColor alarm() const;
    /// What the keyboard acts on.
    [[nodiscard]] QColor ring() const;
    /// A soft shadow's where it begins.
    [[nodiscard]] QColor shadow() const;
    /// Lies over what has to wait.
    [[nodiscard]] QColor veil() const;
    /// What is written on ocean.
    [[nodiscard]] QColor onOcean() const;
    /// The two ends of the accent's gradient, from left to right.
    [[nodiscard]] QColor accentLeading() const;
    [[nodiscard]] QColor accentTrailing() const;
    [[nodiscard]] QColor ocean() const;
    [[nodiscard]] QColor lagoon() const;
    [[nodiscard]] QColor coral() const;
    [[nodiscard]] QColor sun() const;
    [[nodiscard]] QColor palm() const;

Q_SIGNALS:
    void changed();

private:
    void follow();
    /// `ink`, this opaque where the desktop asks for high contrast.
    [[nodiscard]] QColor inkAt(double opacity, double inHighContrast) const;

    AppSettings& settings_;
    ColorScheme scheme_;
    bool isHighContrast_;
    Signal::Connection connection_;
};

} // namespace velmora
