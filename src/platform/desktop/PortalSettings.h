// PortalSettings.h: the desktop portal's colour-scheme setting, over D-Bus.
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <functional>

namespace velmora {

/// Reads the setting once, and again whenever it changes or a portal appears. Threads: main.
class PortalSettings : public QObject {
    Q_OBJECT

public:
    using Receiver = std::function<void(bool isDark)>;

    /// @param busAddress  empty = the session bus
    /// @param receiver    called later, from the event loop, for every value that is read
    PortalSettings(const QString& busAddress, Receiver receiver);
    ~PortalSettings() override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void read();
    void receive(const QVariant& value);

    QDBusConnection bus_;
    QString ownBusName_; // empty when the session bus is used, which others share
    Receiver receiver_;
};

} // namespace velmora
