#include "app/PortalFileDialog.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUrl>
#include <QUuid>
#include <utility>

namespace velmora {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString fileChooser = QStringLiteral("org.freedesktop.portal.FileChooser");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

// The portal answers at once that it asks; the user's own answer comes by signal.
constexpr int answerMilliseconds = 10000;

enum Response : uint { chosen = 0, cancelled = 1 };

} // namespace

PortalFileDialog::PortalFileDialog(const QDBusConnection& bus,
                                   const Question& question,
                                   Answers answers,
                                   QObject* parent)
    : QObject(parent), bus_(bus), answers_(std::move(answers)) {
    const QString token = "velmora" + QUuid::createUuid().toString(QUuid::Id128);
    // The portal derives the path of the request from these two, so that its signal is not missed
    // however fast it comes.
    const QString caller = bus_.baseService().remove(u':').replace(u'.', u'_');
    expectResponseAt(path + "/request/" + caller + "/" + token);

    QVariantMap options{{"handle_token", token}, {"modal", true}};
    if (question.isForSaving) {
        options.insert("current_name", question.suggestedName);
    }
    auto call = QDBusMessage::createMethodCall(
        service, path, fileChooser, question.isForSaving ? "SaveFile" : "OpenFile");
    call << question.parentWindow << question.title << options;
    auto* const answer =
        new QDBusPendingCallWatcher(bus_.asyncCall(call, answerMilliseconds), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *answer;
        if (reply.isError()) {
            end(answers_.unavailable);
        } else if (reply.value().path() != request_) { // portals before 0.9 name it themselves
            expectResponseAt(reply.value().path());
        }
    });
}

void PortalFileDialog::expectResponseAt(const QString& request) {
    request_ = request;
    bus_.connect(service,
                 request,
                 requestInterface,
                 QStringLiteral("Response"),
                 this,
                 SLOT(respond(uint, QVariantMap)));
}

void PortalFileDialog::respond(uint response, const QVariantMap& results) {
    if (response == chosen) {
        const QString file = QUrl(results.value("uris").toStringList().value(0)).toLocalFile();
        end([this, file] {
            if (!file.isEmpty()) {
                answers_.chosen(file);
            }
        });
    } else {
        // What ended in another way has perhaps never been shown.
        end(response == cancelled ? std::function<void()>([] {}) : answers_.unavailable);
    }
}

void PortalFileDialog::end(const std::function<void()>& answer) {
    if (!std::exchange(ended_, true)) {
        deleteLater();
        answer();
    }
}

} // namespace velmora
