// PortalShortcuts.h: the keys that one portal tells, from the question to its end.
#pragma once

#include "platform/GlobalShortcuts.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace velmora {

/// A session of org.freedesktop.portal.GlobalShortcuts. Has a connection of its own: a portal
/// takes a program's name only before anything else that is asked on a connection, and ends a
/// session whose connection has gone.
///
/// Threads: main; needs the event loop.
class PortalShortcuts : public QObject {
    Q_OBJECT

public:
    /// Each is called later, from the event loop; none once the object has been closed.
    struct Listener {
        /// They are bound, or their keys are others now.
        std::function<void(const std::map<std::string, std::string>& triggers)> bound;
        std::function<void(const std::string& id, bool isPressed)> key;
        std::function<void(bool isRefused)> ended; ///< by the user, or else by the portal; the last
    };

    /// @param busAddress  empty = the session's
    PortalShortcuts(const QString& busAddress,
                    std::vector<GlobalShortcut> shortcuts,
                    Listener listener);
    ~PortalShortcuts() override;

    /// Tells the portal that it is over, and nobody else anything from now on.
    void close();

private Q_SLOTS:
    void press(const QDBusMessage& signal);
    void release(const QDBusMessage& signal);
    void change(const QDBusMessage& signal);
    void fail();

private:
    void introduce();
    void create();
    void bind(const QString& session);
    void end(bool isRefused);
    void tellBound(const QVariant& shortcuts);
    void tellKey(const QDBusMessage& signal, bool isPressed);
    [[nodiscard]] bool isOurs(const QDBusMessage& signal) const;

    QString name_;
    QDBusConnection bus_;
    std::vector<GlobalShortcut> shortcuts_;
    Listener listener_;
    QString session_; // path; empty until the portal has made it
    bool hasEnded_ = false;
};

} // namespace velmora
