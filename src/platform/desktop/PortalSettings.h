// PortalSettings.h: the desktop portal's settings, over D-Bus.
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

namespace velmora {

/// Reads each of some settings once, and again whenever it changes or a portal appears.
/// Threads: main.
class PortalSettings : public QObject {
    Q_OBJECT

public:
    struct Setting {
        QString group;
        QString key;
        std::function<void(const QVariant& value)> receive; ///< later, from the event loop
    };

    /// @param busAddress  empty = the session bus
    PortalSettings(const QString& busAddress, std::vector<Setting> settings);
    ~PortalSettings() override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAll();
    void read(const Setting& setting);

    QDBusConnection bus_;
    QString ownBusName_; // empty when the session bus is used, which others share
    std::vector<Setting> settings_;
};

} // namespace velmora
