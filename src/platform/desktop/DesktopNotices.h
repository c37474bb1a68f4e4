// DesktopNotices.h: messages that the desktop shows, over D-Bus.
#pragma once

#include "platform/Notices.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <cstdint>
#include <optional>
#include <string>

namespace velmora {

/// Source: freedesktop.org, Desktop Notifications 1.2.
/// Threads: main; needs a QCoreApplication and its running event loop.
class DesktopNotices final : public Notices {
public:
    /// @param busAddress  the bus that the desktop is on; empty = the session's
    explicit DesktopNotices(const std::string& busAddress = {});
    ~DesktopNotices() override;
    DesktopNotices(const DesktopNotices&) = delete;
    DesktopNotices& operator=(const DesktopNotices&) = delete;

    void show(const std::string& sentence) override;

private:
    void send(const QString& sentence);

    QString ownBusName_; // empty when the session bus is used, which others share
    QDBusConnection bus_;
    std::uint32_t shown_ = 0;     // the desktop's number of what is replaced; 0 = nothing yet
    bool isSending_ = false;      // its number is not known yet
    std::optional<QString> next_; // the latest that came meanwhile
    QObject answers_;             // parent of what is waited for
};

} // namespace velmora
