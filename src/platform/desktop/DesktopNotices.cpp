#include "platform/desktop/DesktopNotices.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QUuid>
#include <QVariantMap>
#include <utility>

namespace velmora {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");

constexpr int noticeMilliseconds = 2000;
constexpr int shownMilliseconds = 2500;
constexpr uchar lowUrgency = 0; // 1 = normal, 2 = critical

} // namespace

DesktopNotices::DesktopNotices(const std::string& busAddress)
    : ownBusName_(busAddress.empty() ? QString() : QUuid::createUuid().toString()),
      bus_(busAddress.empty()
               ? QDBusConnection::sessionBus()
               : QDBusConnection::connectToBus(QString::fromStdString(busAddress), ownBusName_)) {
}

DesktopNotices::~DesktopNotices() {
    if (!ownBusName_.isEmpty()) {
        QDBusConnection::disconnectFromBus(ownBusName_);
    }
}

void DesktopNotices::show(const std::string& sentence) {
    if (!bus_.isConnected()) {
        return;
    }
    if (isSending_) {
        next_ = QString::fromStdString(sentence);
    } else {
        send(QString::fromStdString(sentence));
    }
}

void DesktopNotices::send(const QString& sentence) {
    auto call = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/Notifications"), service, "Notify");
    call << "Velmora" << shown_ << "app.velmora.Velmora" << sentence << QString() << QStringList()
         << QVariantMap{{"transient", true},
                        {"urgency", QVariant::fromValue(lowUrgency)},
                        {"desktop-entry", "app.velmora.Velmora"}}
         << shownMilliseconds;
    isSending_ = true;
    auto* const answer =
        new QDBusPendingCallWatcher(bus_.asyncCall(call, noticeMilliseconds), &answers_);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<uint> reply = *answer;
        shown_ = reply.isError() ? 0 : reply.value();
        isSending_ = false;
        if (const auto latest = std::exchange(next_, std::nullopt)) {
            send(*latest);
        }
    });
}

} // namespace velmora
