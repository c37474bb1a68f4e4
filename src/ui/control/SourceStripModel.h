// SourceStripModel.h: one source of the mix with its fader and switches.
#pragma once

#include "engine/AudioSource.h"
#include "engine/SourceCondition.h"
#include "platform/ApplicationTaps.h"
#include "platform/GrowingPause.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/Signal.h"
#include "ui/control/EffectsModel.h"
#include "ui/control/RemovedSource.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace velmora {

class AudioEngine;

/// Threads: main.
class SourceStripModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made for each source of the mix")
    Q_PROPERTY(QString sourceId READ sourceId CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(bool isApplication READ isApplication CONSTANT)
    Q_PROPERTY(QString icon READ icon CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(double gain READ gain WRITE setGain NOTIFY gainChanged)
    Q_PROPERTY(bool muted READ muted NOTIFY gainChanged)
    Q_PROPERTY(bool directMuted READ directMuted WRITE setDirectMuted NOTIFY directMutedChanged)
    Q_PROPERTY(bool canMuteDirect READ canMuteDirect NOTIFY soundChanged)
    Q_PROPERTY(bool silenced READ silenced NOTIFY soundChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY soundChanged)
    Q_PROPERTY(QString remedy READ remedy NOTIFY soundChanged)
    Q_PROPERTY(bool idle READ idle NOTIFY soundChanged)
    Q_PROPERTY(bool fxActive READ fxActive NOTIFY fxActiveChanged)
    Q_PROPERTY(bool fxBypassed READ fxBypassed NOTIFY fxBypassedChanged)
    Q_PROPERTY(bool fxOpen READ fxOpen WRITE setFxOpen NOTIFY fxOpenChanged)
    Q_PROPERTY(int twin READ twin NOTIFY twinChanged)
    Q_PROPERTY(velmora::EffectsModel* effects READ effects CONSTANT)
    Q_PROPERTY(double level READ level NOTIFY levelChanged)

public:
    /// `engine` outlives this object.
    SourceStripModel(const Platform& platform,
                     AudioEngine& engine,
                     const AudioSource& source,
                     QObject* parent = nullptr);

    [[nodiscard]] const AudioSource& source() const { return source_; }
    [[nodiscard]] QString sourceId() const { return QString::fromStdString(source_.id()); }
    [[nodiscard]] QString name() const { return QString::fromStdString(source_.name()); }
    /// The name with the user's words for one channel and for several.
    Q_INVOKABLE [[nodiscard]] QString nameIn(const QString& one, const QString& several) const;
    [[nodiscard]] bool isApplication() const { return source_.app() != nullptr; }
    /// URL of an application's picture; empty when it has none.
    [[nodiscard]] const QString& icon() const { return icon_; }
    /// Name of the symbol that stands where there is no picture.
    [[nodiscard]] const QString& symbol() const { return symbol_; }

    /// Linear, 1 = unity, 0 = silence. What is no number or negative is not taken.
    [[nodiscard]] double gain() const { return static_cast<double>(gain_); }
    void setGain(double gain);
    [[nodiscard]] bool muted() const;
    Q_INVOKABLE void toggleMute();

    /// The application is silenced on its own output while it is captured.
    [[nodiscard]] bool directMuted() const { return directMuted_; }
    void setDirectMuted(bool muted);

    /// There is something to switch: the application can be silenced, or is wanted so.
    [[nodiscard]] bool canMuteDirect() const;
    /// It is wanted silent on its own output, and is so as far as is known.
    [[nodiscard]] bool silenced() const { return directMuted_ && !sound_.isStillHeard; }
    /// In French: what the user does not get of this source, and why; empty when all is well.
    [[nodiscard]] QString notice() const;
    /// In French: what can be done about it; empty when there is nothing.
    [[nodiscard]] QString remedy() const;
    Q_INVOKABLE void applyRemedy();
    /// It is wanted, and nothing of it is in the mix.
    [[nodiscard]] bool idle() const { return condition_ != SourceCondition::fine; }
    /// Its application is being opened once more.
    void setOpening(bool opening);

    [[nodiscard]] bool fxActive() const { return !effects_.neutral(); }
    /// They are set and not heard.
    [[nodiscard]] bool fxBypassed() const { return fxBypassed_; }
    /// Whether the effects are unfolded under the strip.
    [[nodiscard]] bool fxOpen() const { return fxOpen_; }
    void setFxOpen(bool open);
    [[nodiscard]] EffectsModel* effects() { return &effects_; }

    /// Which one it is of the strips of this name, from 1.
    [[nodiscard]] int twin() const { return twin_; }
    void setTwin(int twin);

    /// 0 ... 1, as last followed.
    [[nodiscard]] double level() const { return static_cast<double>(level_); }
    /// While off, no level is told: a window that nobody sees draws nothing.
    void setFollowsLevel(bool follows);

    /// The source leaves the mix, and this object goes with the turn of the event loop.
    Q_INVOKABLE void remove();

Q_SIGNALS:
    void gainChanged();
    void directMutedChanged();
    void soundChanged();
    void fxActiveChanged();
    void fxBypassedChanged();
    void fxOpenChanged();
    void twinChanged();
    void levelChanged();
    void removed(const velmora::RemovedSource& source);
    /// The source's application has ended and is wanted back.
    void wantedBack(const velmora::AudioSource& source);

private:
    void follow();
    void followSound();
    void followEcho();
    void followCondition();
    [[nodiscard]] SourceCondition conditionNow();
    [[nodiscard]] QString remedyForTheGone() const;
    void followLevel();

    Platform platform_;
    AudioEngine& engine_;
    AudioSource source_;
    QString icon_;
    QString symbol_;
    EffectsModel effects_;
    // As last shown.
    float gain_;
    bool directMuted_;
    ApplicationSound sound_;
    bool isHeadset_;         ///< a Bluetooth microphone
    bool recordsMicrophone_; ///< the virtual one
    bool hearsItself_ = false;
    SourceCondition condition_ = SourceCondition::fine;
    QString remedyForTheGone_;
    bool opening_ = false;
    bool fxBypassed_;
    /// Of what the condition depends on, what the engine tells.
    struct Stage {
        bool isOn{};
        bool isCaptured{};
        bool isServiceAway{};

        bool operator==(const Stage&) const = default;
    };
    [[nodiscard]] Stage stage() const;
    Stage stage_;
    /// That an application without sound has ended is told by nobody.
    GrowingPause pause_;
    std::unique_ptr<MainQueue::Timer> look_;
    float level_ = 0.0F;
    bool followsLevel_ = false;
    bool fxOpen_ = false;
    int twin_ = 1;
    Signal::Connection connection_;
    Signal::Connection soundConnection_;
};

} // namespace velmora
