// FakePanel.h: a desktop panel that shows tray items, as far as D-Bus goes.
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <string>
#include <vector>

namespace velmora {

/// Where items register. Its properties are declared, because programs introspect it.
class StatusNotifierWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    [[nodiscard]] bool hasHost() const { return hasHost_; }
    void setHost(bool isThere) {
        hasHost_ = isThere;
        Q_EMIT StatusNotifierHostRegistered();
    }
    [[nodiscard]] static int protocolVersion() { return 0; }
    [[nodiscard]] const QStringList& items() const { return items_; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) {
        items_.push_back(service);
        Q_EMIT StatusNotifierItemRegistered(service);
    }
    void RegisterStatusNotifierHost(const QString&) {}
    void countIcon() { ++newIcons; }

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierHostRegistered();

public:
    int newIcons = 0;

private:
    bool hasHost_ = true;
    QStringList items_;
};

/// One entry of the item's menu.
struct PanelMenuEntry {
    int id{};
    std::string label; ///< "-" = a separator
    std::string shortcut;

    bool operator==(const PanelMenuEntry&) const = default;
};

/// Takes the first item that registers, asks it and clicks on it. Threads: main; its event loop
/// must turn while a program registers.
class FakePanel {
public:
    /// @param hasHost  somebody shows what is registered, from the start on
    explicit FakePanel(const std::string& busAddress, bool hasHost = true);
    ~FakePanel();
    FakePanel(const FakePanel&) = delete;
    FakePanel& operator=(const FakePanel&) = delete;

    [[nodiscard]] StatusNotifierWatcher& watcher() { return watcher_; }
    [[nodiscard]] bool hasItem() const { return !watcher_.items().isEmpty(); }

    [[nodiscard]] std::string iconName() const;
    [[nodiscard]] std::string toolTip() const;
    /// Width and height of each picture, and whether it is not wholly transparent.
    struct Picture {
        int width{};
        int height{};
        QByteArray pixels;
    };
    [[nodiscard]] std::vector<Picture> pictures() const;
    [[nodiscard]] std::vector<PanelMenuEntry> menu() const;
    /// As a click on the entry.
    void choose(const std::string& label) const;
    /// As a click on the icon.
    void click() const;
    /// Counts pictures from now on.
    void watchIcon();

private:
    [[nodiscard]] QString item() const { return watcher_.items().value(0); }
    [[nodiscard]] QVariant property(const QString& name) const;
    [[nodiscard]] QString menuPath() const;

    QDBusConnection bus_;
    StatusNotifierWatcher watcher_;
};

} // namespace velmora
