// EffectsModel.h: one source's effects, to be shown and edited.
#pragma once

#include "effects/FXParams.h"
#include "engine/AudioSource.h"
#include "platform/Signal.h"
#include "ui/control/EffectTexts.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <functional>

namespace velmora {

class AudioEngine;

/// Every edit writes the whole setting back to the engine, where it is heard and kept.
///
/// Threads: main.
class EffectsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a source strip")
    Q_PROPERTY(QList<QString> lowcutSteps READ lowcutSteps CONSTANT)
    Q_PROPERTY(QList<QString> compSteps READ compSteps CONSTANT)
    Q_PROPERTY(QList<QString> compNames READ compNames CONSTANT)
    Q_PROPERTY(QList<QString> reverbCharacters READ reverbCharacters CONSTANT)
    Q_PROPERTY(double tiltRange READ tiltRange CONSTANT)
    Q_PROPERTY(double manualRange READ manualRange CONSTANT)
    Q_PROPERTY(int lowcut READ lowcut WRITE setLowcut NOTIFY changed)
    Q_PROPERTY(double tilt READ tilt WRITE setTilt NOTIFY changed)
    Q_PROPERTY(int comp READ comp WRITE setComp NOTIFY changed)
    Q_PROPERTY(int reverbChar READ reverbChar WRITE setReverbChar NOTIFY changed)
    Q_PROPERTY(double reverbMix READ reverbMix WRITE setReverbMix NOTIFY changed)
    Q_PROPERTY(bool plosive READ plosive WRITE setPlosive NOTIFY changed)
    Q_PROPERTY(bool denoise READ denoise WRITE setDenoise NOTIFY changed)
    Q_PROPERTY(bool autoGain READ autoGain WRITE setAutoGain NOTIFY changed)
    Q_PROPERTY(double manualDB READ manualDB WRITE setManualDB NOTIFY changed)
    Q_PROPERTY(QString lowcutSummary READ lowcutSummary NOTIFY changed)
    Q_PROPERTY(QString tiltSummary READ tiltSummary NOTIFY changed)
    Q_PROPERTY(QString compSummary READ compSummary NOTIFY changed)
    Q_PROPERTY(int compDots READ comp NOTIFY changed)
    Q_PROPERTY(QString reverbSummary READ reverbSummary NOTIFY changed)
    Q_PROPERTY(QString reverbText READ reverbText NOTIFY changed)
    Q_PROPERTY(QString gainSummary READ gainSummary NOTIFY changed)
    Q_PROPERTY(QString manualText READ manualText NOTIFY changed)
    Q_PROPERTY(bool neutral READ neutral NOTIFY neutralChanged)
    Q_PROPERTY(QString expanded READ expanded NOTIFY expandedChanged)

public:
    /// `engine` outlives this object.
    EffectsModel(AudioEngine& engine, const AudioSource& source, QObject* parent = nullptr);

    // What there is to choose from, as it is shown, and the strengths of compression as they are
    // spoken.
    [[nodiscard]] static QList<QString> lowcutSteps() { return velmora::lowcutSteps(); }
    [[nodiscard]] static QList<QString> compSteps() { return velmora::compSteps(); }
    [[nodiscard]] static QList<QString> compNames() { return velmora::compNames(); }
    [[nodiscard]] static QList<QString> reverbCharacters() { return velmora::reverbCharacters(); }

    // Steps, as they are heard: the place in their list.
    [[nodiscard]] int lowcut() const;
    void setLowcut(int step);
    [[nodiscard]] int comp() const;
    void setComp(int step);
    [[nodiscard]] int reverbChar() const;
    void setReverbChar(int step);

    // Amounts: −tiltRange ... tiltRange, 0 ... 1, −manualRange ... manualRange. Writing bounds them
    // and ignores what is no number.
    [[nodiscard]] static double tiltRange() { return 1.0; }
    [[nodiscard]] static double manualRange() { return 12.0; } ///< dB
    [[nodiscard]] double tilt() const { return static_cast<double>(fx_.tilt); }
    void setTilt(double amount);
    [[nodiscard]] double reverbMix() const { return static_cast<double>(fx_.reverbMix); }
    void setReverbMix(double amount);
    [[nodiscard]] double manualDB() const { return static_cast<double>(fx_.manualDB); }
    void setManualDB(double db);

    [[nodiscard]] bool plosive() const { return fx_.plosive; }
    void setPlosive(bool on);
    [[nodiscard]] bool denoise() const { return fx_.denoise; }
    void setDenoise(bool on);
    [[nodiscard]] bool autoGain() const { return fx_.autoGain; }
    void setAutoGain(bool on);

    [[nodiscard]] QString lowcutSummary() const;
    [[nodiscard]] QString tiltSummary() const;
    /// Dots as text, for those who do not see the drawn ones.
    [[nodiscard]] QString compSummary() const;
    [[nodiscard]] QString reverbSummary() const;
    [[nodiscard]] QString reverbText() const;
    [[nodiscard]] QString gainSummary() const;
    [[nodiscard]] QString manualText() const;

    /// No field differs from its default: there is nothing to reset.
    [[nodiscard]] bool neutral() const { return fx_.isNeutral(); }
    Q_INVOKABLE void reset();

    /// The one row that is open, by its id; empty when none is.
    [[nodiscard]] const QString& expanded() const { return expanded_; }
    /// Opens the row and closes any other, or closes it when it is the open one.
    Q_INVOKABLE void toggle(const QString& row);

Q_SIGNALS:
    void changed();
    void neutralChanged();
    void expandedChanged();

private:
    void edit(const std::function<void(FXParams&)>& change);
    void editAmount(float FXParams::*field, double amount, double lowest, double highest);
    void follow();

    AudioEngine& engine_;
    AudioSource source_;
    FXParams fx_; // as last shown
    QString expanded_;
    Signal::Connection connection_;
};

} // namespace velmora
