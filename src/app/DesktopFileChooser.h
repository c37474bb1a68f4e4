// DesktopFileChooser.h: file dialogs as the desktop has them.
#pragma once

#include "ui/control/FileChooser.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QString>

class QFileDialog;
class QPalette;

namespace velmora {

class AppSettings;

/// Asks through the desktop's portal; where there is none, with Qt's dialog, which is the desktop's
/// own or Qt's.
///
/// Threads: main; needs a QApplication.
class DesktopFileChooser : public FileChooser {
public:
    /// `settings` outlives this object. @param bus  on which the portal is looked for
    explicit DesktopFileChooser(AppSettings& settings,
                                const QDBusConnection& bus = QDBusConnection::sessionBus());
    ~DesktopFileChooser() override;

    void askToOpen(const FileQuestion& question, Chosen chosen) override;
    void askToSave(const FileQuestion& question, Chosen chosen) override;

private:
    void ask(const FileQuestion& question, bool isForSaving, const Chosen& chosen);
    void askHere(const FileQuestion& question, bool isForSaving, const Chosen& chosen);
    [[nodiscard]] QPalette colors() const;
    [[nodiscard]] QString t(const char* french) const;

    AppSettings& settings_;
    QDBusConnection bus_;
    QObject questions_;            // parent of what is asked through the portal
    QPointer<QFileDialog> dialog_; // the last one here
    QString folder_;               // of the last choice here
};

} // namespace velmora
