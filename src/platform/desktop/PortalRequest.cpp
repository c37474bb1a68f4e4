#include "platform/desktop/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>
#include <utility>

namespace velmora {

namespace {

// The portal answers at once that it asks; the user's own answer comes by signal.
} // namespace

QString portalToken() {
    return "velmora" + QUuid::createUuid().toString(QUuid::Id128);
}

QString portalObjectPath(const QString& kind, const QString& caller, const QString& token) {
    const QString name = QString(caller).remove(u':').replace(u'.', u'_');
    return portalPath + "/" + kind + "/" + name + "/" + token;
}

PortalRequest::PortalRequest(const QDBusConnection& bus,
                             const Question& question,
                             Answered answered,
                             QObject* parent)
    : QObject(parent), bus_(bus), answered_(std::move(answered)),
      portal_(portalService, bus, QDBusServiceWatcher::WatchForUnregistration) {
    connect(
        &portal_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { respond(failed, {}); });
    const QString token = portalToken();
    // The portal derives the path of the request from these two, so that its signal is not missed
    // however fast it comes.
    expectResponseAt(portalObjectPath("request", bus_.baseService(), token));

    QVariantMap options = question.options;
    options.insert("handle_token", token);
    auto call = QDBusMessage::createMethodCall(
        portalService, portalPath, question.interface, question.method);
    call.setArguments(question.arguments + QVariantList{options});
    auto* const answer =
        new QDBusPendingCallWatcher(bus_.asyncCall(call, portalAnswerMilliseconds), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *answer;
        if (reply.isError()) {
            respond(failed, {});
        } else if (reply.value().path() != request_) { // portals before 0.9 name it themselves
            expectResponseAt(reply.value().path());
        }
    });
}

void PortalRequest::expectResponseAt(const QString& request) {
    request_ = request;
    bus_.connect(portalService,
                 request,
                 QStringLiteral("org.freedesktop.portal.Request"),
                 QStringLiteral("Response"),
                 this,
                 SLOT(respond(uint, QVariantMap)));
}

void PortalRequest::respond(uint response, const QVariantMap& results) {
    if (!std::exchange(ended_, true)) {
        deleteLater();
        answered_(response, results);
    }
}

} // namespace velmora
