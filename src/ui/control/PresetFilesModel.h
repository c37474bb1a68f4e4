// PresetFilesModel.h: presets that come from files and go to them.
#pragma once

#include "engine/Problem.h"
#include "platform/Signal.h"
#include "ui/kit/menu/GumMenuModel.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <functional>
#include <vector>

namespace velmora {

class AppSettings;
class FileChooser;
class PresetStore;
class UndoModel;
struct Preset;

/// The menu beside the preset: importing, exporting one or all, and bringing back what could not be
/// read at a start.
///
/// Threads: main.
class PresetFilesModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the control window")

public:
    /// All of them outlive the model.
    struct Parts {
        PresetStore& presets;
        AppSettings& settings;
        UndoModel& undo;
        FileChooser* files; ///< none = nothing is imported or exported
    };

    explicit PresetFilesModel(const Parts& parts, QObject* parent = nullptr);

    /// Filled with what there is now.
    Q_INVOKABLE velmora::GumMenuModel* openMenu();

    /// Takes all presets of a file, or none and tells why.
    void importFrom(const QString& path);
    /// Writes the file whole, or leaves what lay there and tells why.
    void exportTo(const QString& path, const std::vector<Preset>& presets);

    /// Why the last file was not read or written, and what could not be read at a start.
    [[nodiscard]] std::vector<Problem> problems() const;
    /// The user has read them.
    void dismissProblems();

Q_SIGNALS:
    void problemsChanged();

private:
    void askForImport();
    void askForExport(const QString& name, std::function<std::vector<Preset>()> presets);
    [[nodiscard]] GumMenuItem exportItem();
    [[nodiscard]] QString t(std::string_view french) const;
    void tell(std::vector<Problem> problems);

    Parts parts_;
    GumMenuModel menu_{this};
    std::vector<Problem> fileProblems_; ///< of the last file
    Signal::Connection connection_;
};

} // namespace velmora
