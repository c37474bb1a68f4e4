// VolumeModel.h: the volume of one output.
#pragma once

#include "engine/Binding.h"
#include "platform/Signal.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <functional>
#include <string>
#include <string_view>

namespace velmora {

class AppSettings;
class AudioEngine;
class DefaultsStore;
class PushToTalk;

/// Threads: main.
class VolumeModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the control window")
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(bool muted READ muted NOTIFY valueChanged)
    Q_PROPERTY(bool limited READ limited NOTIFY limitedChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(QString remedy READ remedy NOTIFY noticeChanged)
    Q_PROPERTY(bool closed READ closed NOTIFY noticeChanged)

public:
    /// Which of the engine's outputs, and how it is shown.
    struct Output {
        const char* symbol;
        const char* frenchName;
        const char* premuteKey; ///< of the gain before muting
        Binding<float> volume;
        std::function<bool()> isLimited;
        PushToTalk* talk = nullptr; ///< of the virtual microphone, which others hear
    };
    [[nodiscard]] static Output headphones(AudioEngine& engine);
    [[nodiscard]] static Output stream(AudioEngine& engine, PushToTalk& talk);

    /// All of them outlive this object.
    VolumeModel(Output output,
                AudioEngine& engine,
                AppSettings& settings,
                DefaultsStore& defaults,
                QObject* parent = nullptr);

    [[nodiscard]] QString symbol() const { return QString::fromUtf8(output_.symbol); }
    [[nodiscard]] const QString& name() const { return name_; }
    /// Linear, 1 = unity, 0 = silence. What is no number or negative is not taken.
    [[nodiscard]] double value() const { return static_cast<double>(value_); }
    void setValue(double value);
    [[nodiscard]] bool muted() const;
    Q_INVOKABLE void toggleMute();
    /// Silent, whatever its volume is.
    [[nodiscard]] bool closed() const { return closed_; }
    /// The limiter takes something from it.
    [[nodiscard]] bool limited() const { return limited_; }

    /// What others do not hear of it, and why; empty when all is well. In the user's language.
    [[nodiscard]] const QString& notice() const { return notice_; }
    /// What can be done about it; empty when there is nothing.
    [[nodiscard]] const QString& remedy() const { return remedy_; }
    Q_INVOKABLE void applyRemedy();

Q_SIGNALS:
    void nameChanged();
    void valueChanged();
    void limitedChanged();
    void noticeChanged();

private:
    void followEngine();
    void followNotice();
    void followLanguage();
    [[nodiscard]] QString text(std::string_view french) const;
    [[nodiscard]] QString noticeNow() const;

    Output output_;
    AudioEngine& engine_;
    AppSettings& settings_;
    DefaultsStore& defaults_;
    QString name_; // as last shown, like the value
    float value_;
    bool closed_ = false;
    bool limited_ = false;
    QString notice_;
    QString remedy_;
    Signal::Connection engineConnection_;
    Signal::Connection talkConnection_;
    Signal::Connection settingsConnection_;
};

} // namespace velmora
