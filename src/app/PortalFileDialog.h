// PortalFileDialog.h: one file dialog of the desktop portal, over D-Bus.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <functional>

namespace velmora {

/// Asks one question and deletes itself with the answer. Threads: main.
class PortalFileDialog : public QObject {
    Q_OBJECT

public:
    struct Question {
        bool isForSaving{};
        QString title{};
        QString suggestedName{};
        QString parentWindow{}; ///< as the portal names windows; empty = none
    };
    /// Each is called later, from the event loop, and one of them at most: none when the user
    /// cancels.
    struct Answers {
        std::function<void(const QString& path)> chosen;
        std::function<void()> unavailable; ///< no portal, or one that has no dialog to show
    };

    PortalFileDialog(const QDBusConnection& bus,
                     const Question& question,
                     Answers answers,
                     QObject* parent);

private Q_SLOTS:
    void respond(uint response, const QVariantMap& results);

private:
    void expectResponseAt(const QString& request);
    void end(const std::function<void()>& answer);

    QDBusConnection bus_;
    Answers answers_;
    QString request_; // path of the object that tells the answer
    bool ended_ = false;
};

} // namespace velmora
