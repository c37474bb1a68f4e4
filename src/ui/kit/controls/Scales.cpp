#include "ui/kit/controls/Scales.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr double faintestPosition = 0.001; // of the fader's length; silence at and below it
constexpr double detent = 0.04;            // of the range, on each side of the middle
constexpr double readableDb = 0.5;         // less rounds to nothing
constexpr double meterFloor = 0.001;       // linear, −60 dBFS
constexpr double meterRangeDb = 60.0;

double decibels(double gain) {
    return 20.0 * std::log10(gain);
}

} // namespace

double Scales::trackPosition(double x, double width, double thumbSize) {
    const double travel = width - thumbSize;
    return travel > 0 ? std::clamp((x - thumbSize / 2) / travel, 0.0, 1.0) : 0.0;
}

double Scales::faderPosition(double gain, double minDB, double maxDB) {
    if (!(gain > 0)) {
        return 0.0;
    }
    return std::clamp((decibels(gain) - minDB) / (maxDB - minDB), faintestPosition, 1.0);
}

double Scales::gainAtPosition(double position, double minDB, double maxDB) {
    if (position <= faintestPosition) {
        return 0.0;
    }
    return std::pow(10.0, (minDB + position * (maxDB - minDB)) / 20.0);
}

QString Scales::gainText(double gain) {
    return gain > 0 ? decibelText(decibels(gain)) : QStringLiteral("−∞");
}

QString Scales::decibelText(double db) {
    if (std::abs(db) < readableDb) {
        return QStringLiteral("0 dB");
    }
    // A half is rounded to the even neighbour, as printf does.
    return (db > 0 ? QStringLiteral("+") : QStringLiteral("−")) +
           QString::number(std::nearbyint(std::abs(db)), 'f', 0) + QStringLiteral(" dB");
}

double Scales::bipolarPosition(double value, double range) {
    return std::clamp((value + range) / (2 * range), 0.0, 1.0);
}

double Scales::bipolarValue(double position, double range) {
    const double value = range * 2 * position - range;
    return std::abs(value) < detent * range ? 0.0 : value;
}

double Scales::stepped(double value, double step, double lowest, double highest) {
    const double next = std::clamp(value + step, lowest, highest);
    const bool passesZero = value * next < 0;
    // Repeated steps of 0.1 add up to a little more or less than nothing.
    const bool meansZero = std::abs(next) < std::abs(step) / 2;
    return passesZero || meansZero ? 0.0 : next;
}

double Scales::fontSize(double points) {
    constexpr double fontPointsPerInch = 72.0;
    return points * fontPointsPerInch / QGuiApplication::primaryScreen()->logicalDotsPerInchY();
}

double Scales::meterFill(double level) {
    if (!(level > meterFloor)) {
        return 0.0;
    }
    return meterLength * std::clamp((decibels(level) + meterRangeDb) / meterRangeDb, 0.0, 1.0);
}

} // namespace velmora
