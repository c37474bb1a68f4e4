#include "app/TrayHost.h"

#include "app/EmbeddingTray.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <chrono>
#include <utility>

namespace velmora {
namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

constexpr std::chrono::milliseconds embedderPeriod{1000};
/// After the desktop has started; each look wakes the machine up.
constexpr std::chrono::milliseconds quietPeriod{5000};
/// From our start until an embedding tray is taken, while the desktop starts.
constexpr std::chrono::milliseconds patienceAlone{1000};
constexpr std::chrono::milliseconds patienceWithWatcher{10000};

} // namespace

TrayHost::TrayHost(Desktop desktop, QObject* parent)
    : QObject(parent), desktop_(desktop), bus_(QDBusConnection::sessionBus()),
      watcher_(watcherService, bus_, QDBusServiceWatcher::WatchForOwnerChange) {
    sinceStart_.start();
    connect(&watcher_,
            &QDBusServiceWatcher::serviceOwnerChanged,
            this,
            [this](const QString&, const QString&, const QString& owner) {
                hasWatcher_ = !owner.isEmpty();
                setStatusNotifier(false);
                askStatusNotifier();
            });
    for (const char* const signal :
         {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus_.connect(
            watcherService, watcherPath, watcherService, signal, this, SLOT(askStatusNotifier()));
    }
    askStatusNotifier();

    connect(&embedderTimer_, &QTimer::timeout, this, &TrayHost::lookForEmbedder);
    embedderTimer_.start(embedderPeriod);
}

void TrayHost::askStatusNotifier() {
    auto question =
        QDBusMessage::createMethodCall(watcherService,
                                       watcherPath,
                                       QStringLiteral("org.freedesktop.DBus.Properties"),
                                       QStringLiteral("Get"));
    question << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        // Whoever answers at all is a watcher.
        hasWatcher_ = hasWatcher_ || reply.isValid();
        setStatusNotifier(reply.isValid() && reply.value().variant().toBool());
        isAnswered_ = true;
        if (!hasStatusNotifier_) {
            lookForEmbedder();
        }
    });
}

void TrayHost::setStatusNotifier(bool isThere) {
    if (std::exchange(hasStatusNotifier_, isThere) == isThere) {
        return;
    }
    if (isThere) {
        embedderTimer_.stop();
        hasEmbedder_ = false;
    } else {
        embedderTimer_.start(embedderPeriod);
    }
    Q_EMIT changed();
}

void TrayHost::lookForEmbedder() {
    if (sinceStart_.hasExpired(patienceWithWatcher.count())) {
        embedderTimer_.setInterval(quietPeriod);
    }
    const bool isTaken = isTimeForEmbedder() && isEmbeddingTrayThere();
    if (std::exchange(hasEmbedder_, isTaken) != isTaken) {
        Q_EMIT changed();
    }
}

bool TrayHost::isTimeForEmbedder() const {
    if (desktop_ == Desktop::stands) {
        return isAnswered_;
    }
    const auto patience = hasWatcher_ ? patienceWithWatcher : patienceAlone;
    return sinceStart_.hasExpired(patience.count());
}

} // namespace velmora
