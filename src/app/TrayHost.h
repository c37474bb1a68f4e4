// TrayHost.h: whether some panel takes tray items.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <optional>

class QDBusMessage;

namespace velmora {

/// Watches for a panel without asking Qt: Qt's own tray asks once in the life of a program whether
/// there is a host on D-Bus, and one that appears later is never used (6.4). So nothing of Qt's
/// tray may be touched before a host is found here, which after a login can take a while.
///
/// A host on D-Bus is preferred. While the desktop starts together with us, one that only embeds
/// windows (X11) is taken after a short wait, or a longer one while D-Bus knows of a watcher whose
/// panel is still starting; on a desktop that stands, as soon as D-Bus knows of no host.
///
/// Threads: main; needs a QGuiApplication and its event loop.
class TrayHost : public QObject {
    Q_OBJECT

public:
    enum class Desktop {
        stands,     ///< whoever starts us sees a panel, if there is one
        isStarting, ///< its panel may be late
    };

    explicit TrayHost(Desktop desktop, QObject* parent = nullptr);

    /// A panel takes items now.
    [[nodiscard]] bool isAvailable() const { return hasStatusNotifier_ || hasEmbedder_; }
    /// It is one on D-Bus, which may know icons by their names.
    [[nodiscard]] bool isStatusNotifier() const { return hasStatusNotifier_; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void askStatusNotifier();

private:
    void setStatusNotifier(bool isThere);
    void lookForEmbedder();
    [[nodiscard]] bool isTimeForEmbedder() const;

    Desktop desktop_;
    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    QElapsedTimer sinceStart_;
    QTimer embedderTimer_;
    bool isAnswered_ = false; // D-Bus has said whether there is a host
    bool hasWatcher_ = false;
    bool hasStatusNotifier_ = false;
    bool hasEmbedder_ = false;
};

} // namespace velmora
