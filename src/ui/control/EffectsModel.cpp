#include "ui/control/EffectsModel.h"

#include "engine/AudioEngine.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

EffectsModel::EffectsModel(AudioEngine& engine, const AudioSource& source, QObject* parent)
    : QObject(parent), engine_(engine), source_(source), fx_(engine.fx(source)),
      connection_(engine.changed().connect([this] { follow(); })) {
}

int EffectsModel::lowcut() const {
    return lowcutStep(fx_);
}

void EffectsModel::setLowcut(int step) {
    edit([step](FXParams& fx) { fx.lowcut = step; });
}

int EffectsModel::comp() const {
    return compStep(fx_);
}

void EffectsModel::setComp(int step) {
    edit([step](FXParams& fx) { fx.comp = step; });
}

int EffectsModel::reverbChar() const {
    return reverbStep(fx_);
}

void EffectsModel::setReverbChar(int step) {
    edit([step](FXParams& fx) { fx.reverbChar = step; });
}

void EffectsModel::setTilt(double amount) {
    editAmount(&FXParams::tilt, amount, -tiltRange(), tiltRange());
}

void EffectsModel::setReverbMix(double amount) {
    editAmount(&FXParams::reverbMix, amount, 0.0, 1.0);
}

void EffectsModel::setManualDB(double db) {
    editAmount(&FXParams::manualDB, db, -manualRange(), manualRange());
}

void EffectsModel::setPlosive(bool on) {
    edit([on](FXParams& fx) { fx.plosive = on; });
}

void EffectsModel::setDenoise(bool on) {
    edit([on](FXParams& fx) { fx.denoise = on; });
}

void EffectsModel::setAutoGain(bool on) {
    edit([on](FXParams& fx) { fx.autoGain = on; });
}

QString EffectsModel::lowcutSummary() const {
    return velmora::lowcutSummary(fx_);
}

QString EffectsModel::tiltSummary() const {
    return velmora::tiltSummary(fx_);
}

QString EffectsModel::compSummary() const {
    return velmora::compSummary(fx_);
}

QString EffectsModel::reverbSummary() const {
    return velmora::reverbSummary(fx_);
}

QString EffectsModel::reverbText() const {
    return velmora::reverbText(fx_);
}

QString EffectsModel::gainSummary() const {
    return velmora::gainSummary(fx_);
}

QString EffectsModel::manualText() const {
    return dbLabel(fx_.manualDB);
}

void EffectsModel::reset() {
    edit([](FXParams& fx) { fx = {}; });
}

void EffectsModel::toggle(const QString& row) {
    expanded_ = row == expanded_ ? QString() : row;
    Q_EMIT expandedChanged();
}

void EffectsModel::edit(const std::function<void(FXParams&)>& change) {
    FXParams edited = engine_.fx(source_);
    change(edited);
    if (edited != engine_.fx(source_)) {
        engine_.setFX(edited, source_);
    }
}

void EffectsModel::editAmount(float FXParams::*field,
                              double amount,
                              double lowest,
                              double highest) {
    if (std::isfinite(amount)) {
        edit([&](FXParams& fx) {
            fx.*field = static_cast<float>(std::clamp(amount, lowest, highest));
        });
    }
}

void EffectsModel::follow() {
    const FXParams before = std::exchange(fx_, engine_.fx(source_));
    if (fx_ == before) {
        return;
    }
    Q_EMIT changed();
    if (fx_.isNeutral() != before.isNeutral()) {
        Q_EMIT neutralChanged();
    }
}

} // namespace velmora
