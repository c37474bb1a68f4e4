#include "platform/desktop/DesktopShortcuts.h"

#include "platform/desktop/PortalRequest.h"
#include "platform/desktop/PortalShortcuts.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <utility>

namespace velmora {

namespace {

QDBusConnection connection(const QString& address, const QString& name) {
    return address.isEmpty() ? QDBusConnection::sessionBus()
                             : QDBusConnection::connectToBus(address, name);
}

} // namespace

/// Finds out whether the portal that is there has shortcuts.
class DesktopShortcuts::Portal {
public:
    Portal(const QString& busAddress, std::function<void(bool hasShortcuts)> found)
        : ownBusName_(busAddress.isEmpty() ? QString() : portalToken()),
          bus_(connection(busAddress, ownBusName_)), found_(std::move(found)) {
        if (!bus_.isConnected()) {
            return;
        }
        watcher_.setConnection(bus_);
        watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
        watcher_.addWatchedService(portalService);
        QObject::connect(&watcher_,
                         &QDBusServiceWatcher::serviceOwnerChanged,
                         &watcher_,
                         [this](const QString&, const QString& before, const QString& after) {
                             if (!before.isEmpty()) {
                                 found_(false);
                             }
                             if (!after.isEmpty()) {
                                 look();
                             }
                         });
        look();
    }
    ~Portal() {
        if (!ownBusName_.isEmpty()) {
            QDBusConnection::disconnectFromBus(ownBusName_);
        }
    }
    Portal(const Portal&) = delete;
    Portal& operator=(const Portal&) = delete;

private:
    void look() {
        auto question = QDBusMessage::createMethodCall(
            portalService, portalPath, "org.freedesktop.DBus.Properties", "Get");
        question << "org.freedesktop.portal.GlobalShortcuts"
                 << "version";
        answer_ = std::make_unique<QDBusPendingCallWatcher>(
            bus_.asyncCall(question, portalAnswerMilliseconds));
        QObject::connect(answer_.get(), &QDBusPendingCallWatcher::finished, answer_.get(), [this] {
            const QDBusPendingReply<QDBusVariant> reply = *answer_;
            answer_.release()->deleteLater();
            if (!reply.isError()) {
                found_(true);
            }
        });
    }

    QString ownBusName_; // empty when the session bus is used, which others share
    QDBusConnection bus_;
    std::function<void(bool)> found_;
    QDBusServiceWatcher watcher_;
    std::unique_ptr<QDBusPendingCallWatcher> answer_; // the latest one that is waited for
};

DesktopShortcuts::DesktopShortcuts(const std::string& busAddress)
    : busAddress_(busAddress),
      portal_(std::make_unique<Portal>(QString::fromStdString(busAddress),
                                       [this](bool hasShortcuts) { follow(hasShortcuts); })) {
}

DesktopShortcuts::~DesktopShortcuts() = default;

void DesktopShortcuts::follow(bool hasShortcuts) {
    if (!hasShortcuts) {
        releaseHeld();
        become(State::unavailable);
    } else if (state_ == State::unavailable && wanted_) {
        ask();
    } else if (state_ == State::unavailable) {
        become(State::unused);
    }
}

void DesktopShortcuts::bind(std::vector<GlobalShortcut> shortcuts, Listener listener) {
    unbind();
    wanted_ = {std::move(shortcuts), std::move(listener)};
    if (state_ != State::unavailable) {
        ask();
    }
}

void DesktopShortcuts::unbind() {
    releaseHeld();
    wanted_.reset();
    become(state_ == State::unavailable ? State::unavailable : State::unused);
}

void DesktopShortcuts::ask() {
    dropSession();
    session_ = std::make_unique<PortalShortcuts>(
        QString::fromStdString(busAddress_),
        wanted_->shortcuts,
        PortalShortcuts::Listener{
            .bound = [this](const auto& triggers) { become(State::bound, triggers); },
            .key = [this](const std::string& id, bool isPressed) { tell(id, isPressed); },
            .ended = [this](bool isRefused) { giveUp(isRefused); }});
    become(State::asked);
}

void DesktopShortcuts::giveUp(bool isRefused) {
    releaseHeld();
    if (isRefused) {
        wanted_.reset();
    }
    become(isRefused ? State::refused : State::failed);
}

void DesktopShortcuts::tell(const std::string& id, bool isPressed) {
    if (state_ != State::bound) {
        return;
    }
    // A key that repeats itself is pressed once.
    const bool isNews = isPressed ? held_.insert(id).second : held_.erase(id) > 0;
    if (isNews) {
        const Listener listener = wanted_->listener; // it may unbind
        listener(id, isPressed);
    }
}

/// Before the state says that no more is told; those who are told may bind others.
void DesktopShortcuts::releaseHeld() {
    for (const std::string& id : std::exchange(held_, {})) {
        if (wanted_) {
            const Listener listener = wanted_->listener;
            listener(id, false);
        }
    }
}

void DesktopShortcuts::become(State state, std::map<std::string, std::string> triggers) {
    if (state != State::asked && state != State::bound) {
        dropSession();
    }
    const bool differs = std::exchange(state_, state) != state || triggers != triggers_;
    triggers_ = std::move(triggers);
    if (differs) {
        changed_.emit();
    }
}

/// It may be one of its own calls that has led here.
void DesktopShortcuts::dropSession() {
    if (session_) {
        session_->close();
        session_.release()->deleteLater();
    }
}

} // namespace velmora
