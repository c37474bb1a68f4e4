#include "ui/control/EffectTexts.h"

#include "effects/FXParams.h"
#include "ui/kit/controls/Scales.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {

constexpr float smallestTilt = 0.01F; // of ±1; below it the tilt stage is off
constexpr float smallestMix = 0.005F; // of 1; below it no room is heard

constexpr std::array<const char*, 3> cutOffs{"Off", "75 Hz", "150 Hz"};
constexpr std::array<const char*, 4> strengths{"Off", "●", "●●", "●●●"};
constexpr std::array<const char*, strengths.size()> strengthNames{
    "Off", "Légère", "Moyenne", "Forte"};
constexpr std::array<const char*, 3> characters{"Studio", "Plate", "Hall"};

int stepIn(std::size_t count, std::int64_t value) {
    return static_cast<int>(
        std::clamp<std::int64_t>(value, 0, static_cast<std::int64_t>(count) - 1));
}

template <std::size_t count>
QList<QString> listOf(const std::array<const char*, count>& names) {
    QList<QString> list;
    for (const char* name : names) {
        list.append(QString::fromUtf8(name));
    }
    return list;
}

template <std::size_t count>
QString nameOf(const std::array<const char*, count>& names, int step) {
    return QString::fromUtf8(names[static_cast<std::size_t>(step)]);
}

/// A half is rounded to the even neighbour, as printf does.
QString percent(float fraction) {
    return QString::number(std::lrint(fraction * 100)) + QStringLiteral(" %");
}

} // namespace

QList<QString> lowcutSteps() {
    return listOf(cutOffs);
}

QList<QString> compSteps() {
    return listOf(strengths);
}

QList<QString> reverbCharacters() {
    return listOf(characters);
}

QList<QString> compNames() {
    return listOf(strengthNames);
}

int lowcutStep(const FXParams& fx) {
    return stepIn(cutOffs.size(), fx.lowcut);
}

int compStep(const FXParams& fx) {
    return stepIn(strengths.size(), fx.comp);
}

int reverbStep(const FXParams& fx) {
    return stepIn(characters.size(), fx.reverbChar);
}

QString lowcutSummary(const FXParams& fx) {
    return nameOf(cutOffs, lowcutStep(fx));
}

QString tiltSummary(const FXParams& fx) {
    if (std::abs(fx.tilt) < smallestTilt) {
        return QStringLiteral("—");
    }
    const QString sign = fx.tilt > 0 ? QStringLiteral("+") : QStringLiteral("−");
    return sign + percent(std::abs(fx.tilt));
}

QString compSummary(const FXParams& fx) {
    return nameOf(strengths, compStep(fx));
}

QString reverbSummary(const FXParams& fx) {
    const QString text = reverbText(fx);
    return fx.reverbMix < smallestMix ? text : nameOf(characters, reverbStep(fx)) + " " + text;
}

QString reverbText(const FXParams& fx) {
    return fx.reverbMix < smallestMix ? QStringLiteral("Off") : percent(fx.reverbMix);
}

QString gainSummary(const FXParams& fx) {
    return fx.autoGain ? QStringLiteral("Auto") : dbLabel(fx.manualDB);
}

QString dbLabel(float db) {
    return Scales::decibelText(static_cast<double>(db));
}

} // namespace velmora
