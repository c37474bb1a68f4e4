// Scales.h: what a fader's place, a meter's length and a read-out mean.
#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// The mappings behind every control. Pure functions; QML calls them as `Scales.gainText(gain)`.
///
/// Units: a position is 0 (left) … 1 (right); a gain is linear, 0 = silence; lengths are points.
/// Threads: any.
class Scales : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// Where a thumb's middle stands on a track, when it follows the pointer at `x`.
    Q_INVOKABLE [[nodiscard]] static double trackPosition(double x, double width, double thumbSize);

    /// Where a gain fader stands. Deliberate: a gain above 0 never draws at the very left, however
    /// faint it is, because that place means silence.
    Q_INVOKABLE [[nodiscard]] static double faderPosition(double gain, double minDB, double maxDB);
    /// The gain at a position; the leftmost thousandth is silence, not minDB.
    Q_INVOKABLE [[nodiscard]] static double
    gainAtPosition(double position, double minDB, double maxDB);
    /// Whole decibels: "+3 dB", "0 dB", "−6 dB" (U+2212), "−∞" for silence.
    Q_INVOKABLE [[nodiscard]] static QString gainText(double gain);
    /// The same for a number of decibels; less than half a decibel reads "0 dB".
    Q_INVOKABLE [[nodiscard]] static QString decibelText(double db);

    /// Where a slider from −range to +range stands.
    Q_INVOKABLE [[nodiscard]] static double bipolarPosition(double value, double range);
    /// The value at a position. Deliberate: within 4 % of the range around the middle it is exactly
    /// 0, so that the neutral setting is easy to hit.
    Q_INVOKABLE [[nodiscard]] static double bipolarValue(double position, double range);

    /// A value moved by wheel or keys. It stops at 0 on its way through, and within the bounds.
    Q_INVOKABLE [[nodiscard]] static double
    stepped(double value, double step, double lowest, double highest);

    /// The font size, for `font.pointSize`, that stands `points` of the window high. Those points
    /// are a desktop's logical pixels, a font's are 1/72 inch of its text resolution.
    Q_INVOKABLE [[nodiscard]] static double fontSize(double points);

    static constexpr double meterLength = 54.0; // points, from −60 dBFS to 0 dBFS
    /// How much of a level bar a peak fills, in points.
    Q_INVOKABLE [[nodiscard]] static double meterFill(double level);
};

} // namespace velmora
