// RemoteMixer.h: the mixer on the session's D-Bus.
#pragma once

#include "app/BusTypes.h"
#include "operations/ChangeTeller.h"
#include "operations/Commands.h"
#include "operations/MixerControl.h"
#include "operations/MixerParts.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace velmora {

/// What packaging/dbus/app.velmora.Mixer1.xml describes; the class between D-Bus and this one is
/// made from that file. The object is there before the program has its bus name, because whoever
/// sees the name may call at once; such a call waits for the event loop.
///
/// Threads: main; needs a QCoreApplication.
class RemoteMixer : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_PROPERTY(bool Running READ running)
    Q_PROPERTY(bool Bypassed READ bypassed)
    Q_PROPERTY(uint BlockFrames READ blockFrames)
    Q_PROPERTY(uint MissedBlocks READ missedBlocks)
    Q_PROPERTY(double MicrophoneDb READ microphoneDb)
    Q_PROPERTY(bool MicrophoneClosed READ microphoneClosed)
    Q_PROPERTY(double HeadphonesDb READ headphonesDb)
    Q_PROPERTY(QString Monitor READ monitor)
    Q_PROPERTY(QString Preset READ preset)
    Q_PROPERTY(QStringList Presets READ presets)
    Q_PROPERTY(velmora::MapList Sources READ sources)
    Q_PROPERTY(QStringList Problems READ problems)

public:
    explicit RemoteMixer(QObject* parent = nullptr);
    ~RemoteMixer() override;
    RemoteMixer(const RemoteMixer&) = delete;
    RemoteMixer& operator=(const RemoteMixer&) = delete;

    /// From now on calls are answered. @param quit  ends the program's event loop
    void attach(const MixerParts& parts, const std::function<void()>& quit);
    /// To be called before the parts go.
    void detach();

    /// One of the desktop entry's actions: "on", "off", "next-preset". What is refused is shown by
    /// the mixer's own problems.
    void act(const QString& action);

    // -- the interface; named by it --

    int Run(const QStringList& words, QString& output, QString& error); // NOLINT
    void Start();                                                       // NOLINT
    void Stop();                                                        // NOLINT
    void Toggle();                                                      // NOLINT
    void SetBypassed(bool bypassed);                                    // NOLINT
    void Add(const QString& source);                                    // NOLINT
    void Remove(const QString& source);                                 // NOLINT
    void SetLevel(const QString& source, double db);                    // NOLINT
    void SetMuted(const QString& source, bool muted);                   // NOLINT
    void SetSilenced(const QString& source, bool silenced);             // NOLINT
    void SetEffects(const QString& source, const TextMap& changes);     // NOLINT
    void ResetEffects(const QString& source);                           // NOLINT
    void SetVolume(const QString& volume, double db);                   // NOLINT
    void SetVolumeMuted(const QString& volume, bool muted);             // NOLINT
    void SetPushToTalk(bool on);                                        // NOLINT
    void SetMonitor(const QString& device);                             // NOLINT
    void ApplyPreset(const QString& preset);                            // NOLINT
    void ApplyNextPreset();                                             // NOLINT
    void SavePreset(const QString& name);                               // NOLINT
    void RemovePreset(const QString& preset);                           // NOLINT
    void ExportPresets(const QString& file);                            // NOLINT
    void ImportPresets(const QString& file);                            // NOLINT
    NumberMapByText Levels();                                           // NOLINT
    void Quit();                                                        // NOLINT

    [[nodiscard]] bool running() const { return state_.isRunning; }
    [[nodiscard]] bool bypassed() const { return state_.isBypassed; }
    [[nodiscard]] uint blockFrames() const { return state_.blocks.frames; }
    [[nodiscard]] uint missedBlocks() const { return state_.blocks.missedLastMinute; }
    [[nodiscard]] double microphoneDb() const;
    [[nodiscard]] bool microphoneClosed() const { return state_.isMicrophoneClosed; }
    [[nodiscard]] double headphonesDb() const;
    [[nodiscard]] QString monitor() const { return QString::fromStdString(state_.monitor); }
    [[nodiscard]] QString preset() const;
    [[nodiscard]] QStringList presets() const;
    [[nodiscard]] MapList sources() const;
    [[nodiscard]] QStringList problems() const;

Q_SIGNALS:
    void Changed(const QStringList& lines, const QString& state); // NOLINT: the same

private:
    struct Attached {
        Attached(RemoteMixer& owner,
                 const MixerParts& mixerParts,
                 const std::function<void()>& quitProgram);

        MixerParts parts;
        MixerControl control;
        Commands commands;
        std::function<void()> quit;
        ChangeTeller teller;
    };

    [[nodiscard]] bool isReady();
    void refresh();
    void answer(const Answer<>& outcome);
    void perform(const std::function<Answer<>(MixerControl&)>& operation);
    [[nodiscard]] QVariantMap properties() const;
    void tell(const MixerState& before, const MixerState& after);

    QDBusConnection bus_;
    std::optional<Attached> attached_;
    MixerState state_; ///< what the properties are read from
};

} // namespace velmora
