// PortalRequest.h: one question to the desktop portal that is answered later, by a signal.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <functional>

namespace velmora {

inline const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
/// A portal may have to be started first.
inline constexpr int portalAnswerMilliseconds = 10000;

/// Asks, tells the answer and deletes itself; deleted earlier, it tells nothing.
///
/// Threads: main; needs the event loop.
class PortalRequest : public QObject {
    Q_OBJECT

public:
    enum Response : uint {
        done = 0,
        cancelled = 1, ///< by the user
        failed = 2,    ///< no portal, or not this one, or it has gone meanwhile
    };
    /// Called once, later, from the event loop.
    using Answered = std::function<void(uint response, const QVariantMap& results)>;

    struct Question {
        QString interface {};
        QString method{};
        QVariantList arguments{}; ///< what comes before the options
        QVariantMap options{};
    };

    PortalRequest(const QDBusConnection& bus,
                  const Question& question,
                  Answered answered,
                  QObject* parent);

private Q_SLOTS:
    void respond(uint response, const QVariantMap& results);

private:
    void expectResponseAt(const QString& request);

    QDBusConnection bus_;
    Answered answered_;
    QDBusServiceWatcher portal_;
    QString request_; // path of the object that tells the answer
    bool ended_ = false;
};

/// A word that no other object of this program has in its path.
[[nodiscard]] QString portalToken();

/// The path of an object that a portal makes for the caller of this name and token.
/// @param kind  "request" or "session"
[[nodiscard]] QString
portalObjectPath(const QString& kind, const QString& caller, const QString& token);

} // namespace velmora
