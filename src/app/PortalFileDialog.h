// PortalFileDialog.h: one file dialog of the desktop portal, over D-Bus.
#pragma once

#include <QString>
#include <functional>

class QDBusConnection;
class QObject;

namespace velmora {

struct PortalFileQuestion {
    bool isForSaving{};
    QString title{};
    QString suggestedName{};
    QString parentWindow{}; ///< as the portal names windows; empty = none
};

/// Each is called later, from the event loop, and one of them at most: none when the user cancels.
struct PortalFileAnswers {
    std::function<void(const QString& path)> chosen;
    std::function<void()> unavailable; ///< no portal, or one that has no dialog to show
};

/// Asks; nothing is answered once `parent` has gone. Threads: main.
void showPortalFileDialog(const QDBusConnection& bus,
                          const PortalFileQuestion& question,
                          const PortalFileAnswers& answers,
                          QObject* parent);

} // namespace velmora
