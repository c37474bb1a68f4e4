#include "app/DesktopFileChooser.h"

#include "app/PortalFileDialog.h"
#include "settings/AppSettings.h"
#include "settings/Theme.h"
#include "ui/kit/WindowSystem.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QStandardPaths>
#include <QWindow>

namespace velmora {

namespace {

/// Where the user looks first.
QString documents() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

/// The window that asks, as the portal names it. On Wayland it would have to be exported first:
/// without a name the dialog is a window like any other.
QString portalName(const QWindow* window) {
    const bool hasNumber = window != nullptr && isOnX11();
    return hasNumber ? "x11:" + QString::number(window->winId(), 16) : QString();
}

QColor shown(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red),
                            static_cast<float>(color.green),
                            static_cast<float>(color.blue),
                            static_cast<float>(color.alpha));
}

} // namespace

DesktopFileChooser::DesktopFileChooser(AppSettings& settings, const QDBusConnection& bus)
    : settings_(settings), bus_(bus), folder_(documents()) {
}

DesktopFileChooser::~DesktopFileChooser() {
    delete dialog_;
}

void DesktopFileChooser::askToOpen(const FileQuestion& question, Chosen chosen) {
    ask(question, false, chosen);
}

void DesktopFileChooser::askToSave(const FileQuestion& question, Chosen chosen) {
    ask(question, true, chosen);
}

void DesktopFileChooser::ask(const FileQuestion& question, bool isForSaving, const Chosen& chosen) {
    if (!bus_.isConnected()) {
        askHere(question, isForSaving, chosen);
        return;
    }
    showPortalFileDialog(
        bus_,
        {.isForSaving = isForSaving,
         .title = question.title,
         .suggestedName = question.suggestedName,
         .parentWindow = portalName(QGuiApplication::focusWindow())},
        {.chosen = chosen, .unavailable = [=, this] { askHere(question, isForSaving, chosen); }},
        &questions_);
}

void DesktopFileChooser::askHere(const FileQuestion& question,
                                 bool isForSaving,
                                 const Chosen& chosen) {
    const QPointer<QWindow> asking = QGuiApplication::focusWindow();
    delete dialog_; // one that is still open belongs to an older question, and may be `asking`
    dialog_ = new QFileDialog(nullptr, question.title, folder_);
    dialog_->setAttribute(Qt::WA_DeleteOnClose);
    dialog_->setAcceptMode(isForSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog_->setFileMode(isForSaving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (isForSaving) {
        dialog_->setDefaultSuffix("json");
        dialog_->selectFile(question.suggestedName);
    }
    dialog_->setNameFilters({t("Presets Velmora") + " (*.json)", t("Tous les fichiers") + " (*)"});
    dialog_->setLabelText(QFileDialog::LookIn, t("Dossier"));
    dialog_->setLabelText(QFileDialog::FileName, t("Nom du fichier"));
    dialog_->setLabelText(QFileDialog::FileType, t("Type de fichier"));
    dialog_->setLabelText(QFileDialog::Accept, isForSaving ? t("Enregistrer") : t("Ouvrir"));
    dialog_->setLabelText(QFileDialog::Reject, t("Annuler"));
    dialog_->setPalette(colors());
    QObject::connect(dialog_, &QFileDialog::fileSelected, dialog_, [this, chosen](QString path) {
        folder_ = QFileInfo(path).absolutePath();
        chosen(path);
    });
    dialog_->setWindowModality(Qt::WindowModal);
    dialog_->winId(); // makes the window, which can have the asking one for its parent
    dialog_->windowHandle()->setTransientParent(asking);
    dialog_->show();
}

QPalette DesktopFileChooser::colors() const {
    const ColorScheme scheme = settings_.colorScheme();
    const QColor ink = shown(Theme::ink.in(scheme));
    const QColor faint = shown(Theme::ink40.in(scheme));
    const QColor paper = shown(Theme::paper.in(scheme));
    const QColor sand = shown(Theme::sand.in(scheme));
    QPalette palette(ink, paper, paper, sand, faint, ink, Qt::white, paper, sand);
    palette.setColor(QPalette::AlternateBase, sand);
    palette.setColor(QPalette::PlaceholderText, shown(Theme::ink60.in(scheme)));
    palette.setColor(QPalette::Highlight, shown(Theme::ocean));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, paper);
    palette.setColor(QPalette::ToolTipText, ink);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, faint);
    }
    return palette;
}

QString DesktopFileChooser::t(const char* french) const {
    return QString::fromStdString(settings_.t(french));
}

} // namespace velmora
