// SingleInstance.h: one mixer per session; a second launch calls the first.
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace velmora {

/// The program's name on the session's D-Bus, with the interface by which desktops activate
/// programs. Whoever wants to see windows of a mixer without any is told so.
///
/// Source: freedesktop.org, Desktop Entry 1.5, "D-Bus Activation".
/// Threads: main.
class SingleInstance : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Claim {
        first,   ///< this program has the name from now on
        second,  ///< another one has it
        unknown, ///< no bus to ask
    };

    explicit SingleInstance(QObject* parent = nullptr);
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    /// Gives the name back.
    ~SingleInstance() override;

    [[nodiscard]] Claim claim();

    /// Asks the first program to show itself, and waits for its answer. False when it gives none.
    [[nodiscard]] bool raiseFirst();

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData); // NOLINT: named by the interface
    Q_SCRIPTABLE void Open(const QStringList& uris,              // NOLINT: the same
                           const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& action, // NOLINT: the same
                                     const QVariantList& parameters,
                                     const QVariantMap& platformData);

Q_SIGNALS:
    /// Somebody launched the program again. @param token  allows a window to come to the front
    /// (Wayland); may be empty
    void activated(const QString& token);
    /// One of the desktop entry's actions was chosen.
    void actionRequested(const QString& action);

private:
    QDBusConnection bus_;
    bool isClaimed_ = false;
};

} // namespace velmora
