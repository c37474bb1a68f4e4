// SettingsModel.h: what the settings window shows and does.
#pragma once

#include "operations/DeviceOptions.h"
#include "platform/Platform.h"
#include "platform/Signal.h"
#include "settings/AppSettings.h"
#include "ui/settings/ShortcutsModel.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>
#include <optional>

namespace velmora {

class AudioEngine;
class DAWModeManager;
class ShortcutKeys;
class SourceManager;

/// The numbers by which a user reports which program he has.
struct ProgramVersion {
    std::optional<QString> release{}; ///< "1.2.0"
    std::optional<QString> build{};   ///< counts up from build to build
};

/// "release (build)", with an em dash for what is not known.
[[nodiscard]] QString versionText(const ProgramVersion& version);

/// Every choice is written straight to the object that keeps it. Options are lists of objects with
/// `tag` and `label`, in the user's language.
///
/// Threads: main.
class SettingsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool visible READ isVisible WRITE setVisible NOTIFY visibleChanged)
    Q_PROPERTY(QVariantList appearanceOptions READ appearanceOptions NOTIFY settingsChanged)
    Q_PROPERTY(QString appearance READ appearance WRITE setAppearance NOTIFY settingsChanged)
    Q_PROPERTY(QVariantList languageOptions READ languageOptions CONSTANT)
    Q_PROPERTY(QString language READ language WRITE setLanguage NOTIFY settingsChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY loginChanged)
    Q_PROPERTY(QString loginError READ loginError NOTIFY loginChanged)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QVariantList monitoringOptions READ monitoringOptions NOTIFY devicesChanged)
    Q_PROPERTY(QString monitoring READ monitoring WRITE setMonitoring NOTIFY monitoringChanged)
    Q_PROPERTY(bool dawEnabled READ dawEnabled WRITE setDawEnabled NOTIFY dawChanged)
    Q_PROPERTY(QVariantList dawInterfaceOptions READ dawInterfaceOptions NOTIFY devicesChanged)
    Q_PROPERTY(QString dawInterface READ dawInterface WRITE setDawInterface NOTIFY dawChanged)
    Q_PROPERTY(QString dawError READ dawError NOTIFY dawChanged)
    Q_PROPERTY(velmora::ShortcutsModel* shortcuts READ shortcuts CONSTANT)
    Q_PROPERTY(QString blocks READ blocks NOTIFY blocksChanged)

public:
    /// All of them outlive the model.
    struct Parts {
        Platform platform;
        AudioEngine& engine;
        SourceManager& sources;
        AppSettings& settings;
        DAWModeManager& dawMode;
        ShortcutKeys& keys;
        ProgramVersion version;
    };

    explicit SettingsModel(const Parts& parts, QObject* parent = nullptr);

    /// The window is seen: the device lists follow what is plugged in.
    [[nodiscard]] bool isVisible() const { return isVisible_; }
    void setVisible(bool visible);

    /// Reads anew what others may have changed: the devices, and the login item on disk. To be
    /// called whenever the window comes into view.
    Q_INVOKABLE void refresh();

    [[nodiscard]] QVariantList appearanceOptions() const;
    /// One of the options; a stored value that is none of them acts as "auto" and shows so.
    [[nodiscard]] QString appearance() const;
    void setAppearance(const QString& value);
    [[nodiscard]] static QVariantList languageOptions();
    [[nodiscard]] QString language() const;
    void setLanguage(const QString& value);

    /// What is on disk, never what was asked for.
    [[nodiscard]] bool launchAtLogin() const { return launchAtLogin_; }
    void setLaunchAtLogin(bool wanted);
    /// The platform's own words; empty after a success.
    [[nodiscard]] const QString& loginError() const { return loginError_; }

    [[nodiscard]] const QString& version() const { return version_; }

    [[nodiscard]] QVariantList monitoringOptions() const;
    /// The tag in use: a chosen output that is not there now gives the default output's, as the
    /// engine plays there.
    [[nodiscard]] QString monitoring() const;
    void setMonitoring(const QString& tag);

    [[nodiscard]] bool dawEnabled() const;
    void setDawEnabled(bool enabled);
    [[nodiscard]] QVariantList dawInterfaceOptions() const;
    /// Empty while none is chosen, or the chosen one is not there.
    [[nodiscard]] QString dawInterface() const;
    void setDawInterface(const QString& tag);
    /// Why DAW mode, switched on, has no device; otherwise empty.
    [[nodiscard]] QString dawError() const;

    [[nodiscard]] ShortcutsModel* shortcuts() { return &shortcuts_; }
    /// How sound comes, in one line; empty while the mix is stopped.
    [[nodiscard]] const QString& blocks() const { return blocks_; }

Q_SIGNALS:
    void visibleChanged();
    void settingsChanged();
    void loginChanged();
    void devicesChanged();
    void monitoringChanged();
    void dawChanged();
    void blocksChanged();

private:
    void followSettings();
    void followEngine();
    void followMonitoring();
    void followBlocks();
    void followPlugging();
    void readDevices();

    Parts parts_;
    QString version_;
    bool isVisible_ = false;
    bool launchAtLogin_ = false;
    QString loginError_;
    DeviceOptions monitoringOptions_;
    DeviceOptions dawOptions_;
    QString monitoring_; // as last shown
    ShortcutsModel shortcuts_;
    QString blocks_;
    Signal::Connection settingsConnection_;
    Signal::Connection engineConnection_;
    Signal::Connection sourcesConnection_;
    Signal::Connection pluggingConnection_;
    Signal::Connection dawConnection_;
};

} // namespace velmora
