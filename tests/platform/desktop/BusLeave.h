// BusLeave.h: how an object of a test leaves its D-Bus.
#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace velmora {

/// To be called by the object's destructor. Calls that have come and were not delivered yet are
/// refused while there still is a connection to refuse them on.
inline void leaveBus(QDBusConnection& bus, QObject& object, const QString& path) {
    bus.unregisterObject(path, QDBusConnection::UnregisterTree);
    QCoreApplication::removePostedEvents(&object);
    QDBusConnection::disconnectFromBus(bus.name());
}

} // namespace velmora
