#include "ui/control/PresetFilesModel.h"

#include "operations/ProblemText.h"
#include "presets/PresetFile.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "ui/control/FileChooser.h"
#include "ui/control/UndoModel.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <expected>
#include <string>
#include <utility>

namespace velmora {

namespace {

Problem problemOf(PresetFileFault fault, const QString& path) {
    const bool isNewer = fault == PresetFileFault::newer;
    return {.kind = isNewer ? Problem::Kind::presetFileNewer : Problem::Kind::presetFileUnknown,
            .subject = QFileInfo(path).fileName().toStdString()};
}

Problem problemOf(Problem::Kind kind, const QFileDevice& file) {
    return {.kind = kind,
            .subject = QFileInfo(file.fileName()).fileName().toStdString(),
            .detail = file.errorString().toStdString()};
}

std::expected<std::vector<Preset>, Problem> presetsOf(const QString& path) {
    // Only what has an end is read: not a pipe, not a device.
    const QFileInfo info(path);
    const bool hasEnd = !info.exists() || info.isFile();
    if (!hasEnd || info.size() > qint64{largestPresetFile}) {
        return std::unexpected(problemOf(PresetFileFault::unreadable, path));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::unexpected(problemOf(Problem::Kind::fileNotRead, file));
    }
    const QByteArray text = file.read(qint64{largestPresetFile} + 1);
    if (file.error() != QFileDevice::NoError) {
        return std::unexpected(problemOf(Problem::Kind::fileNotRead, file));
    }
    auto presets = decodePresetFile({text.constData(), static_cast<std::size_t>(text.size())});
    if (!presets) {
        return std::unexpected(problemOf(presets.error(), path));
    }
    return *std::move(presets);
}

/// A preset's name as that of a file: no folder, not hidden, not too long for any file system.
QString fileName(const QString& preset) {
    constexpr int longest = 60; // letters, of up to four bytes each
    QString name;
    for (const QChar letter : preset.left(longest)) {
        name += letter == u'/' || !letter.isPrint() ? QChar(u'-') : letter;
    }
    if (name.startsWith(u'.')) {
        name[0] = u'-';
    }
    return name + QStringLiteral(".json");
}

std::string listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

} // namespace

PresetFilesModel::PresetFilesModel(const Parts& parts, QObject* parent)
    : QObject(parent), parts_(parts),
      connection_(parts.presets.changed().connect([this] { Q_EMIT problemsChanged(); })) {
}

GumMenuModel* PresetFilesModel::openMenu() {
    std::vector<GumMenuItem> items{{.title = t("Importer des presets…"),
                                    .enabled = parts_.files != nullptr,
                                    .action = [this] { askForImport(); }},
                                   exportItem()};
    if (!parts_.presets.setAside().readable().empty()) {
        items.push_back({.kind = GumMenuItem::Kind::separator});
        items.push_back({.title = t("Reprendre les presets mis de côté"),
                         .action = [this] { parts_.presets.bringBackSetAside(); }});
    }
    menu_.setItems(std::move(items));
    return &menu_;
}

GumMenuItem PresetFilesModel::exportItem() {
    const auto& presets = parts_.presets.presets();
    GumMenuItem item{.title = t("Exporter"),
                     .enabled = parts_.files != nullptr && !presets.empty()};
    if (!item.enabled) {
        return item;
    }
    item.children.push_back({.title = t("Tous les presets…"), .action = [this] {
                                 askForExport(t("Presets Velmora"),
                                              [this] { return parts_.presets.presets(); });
                             }});
    for (const Preset& preset : presets) {
        const auto name = QString::fromStdString(preset.name);
        item.children.push_back({.title = name, .action = [this, name, preset] {
                                     askForExport(name, [preset] { return std::vector{preset}; });
                                 }});
    }
    return item;
}

void PresetFilesModel::askForImport() {
    parts_.files->askToOpen({.title = t("Importer des presets")},
                            [this](const QString& path) { importFrom(path); });
}

void PresetFilesModel::askForExport(const QString& name,
                                    std::function<std::vector<Preset>()> presets) {
    parts_.files->askToSave(
        {.title = t("Exporter"), .suggestedName = fileName(name)},
        [this, presets = std::move(presets)](const QString& path) { exportTo(path, presets()); });
}

void PresetFilesModel::importFrom(const QString& path) {
    auto presets = presetsOf(path);
    if (!presets) {
        tell({presets.error()});
        return;
    }
    tell({});
    const auto ids = parts_.presets.add(*std::move(presets));
    std::vector<std::string> names;
    for (const Preset& preset : parts_.presets.presets()) {
        if (std::ranges::find(ids, preset.id) != ids.end()) {
            names.push_back(preset.name);
        }
    }
    parts_.undo.offer({.kind = UndoOffer::Kind::presets,
                       .french = "Presets importés : {name}",
                       .name = listed(names),
                       .undo = [this, ids] { parts_.presets.removeAll(ids); }});
}

void PresetFilesModel::exportTo(const QString& path, const std::vector<Preset>& presets) {
    const auto text = encodePresetFile(presets);
    QSaveFile file(path);
    // In a folder that takes no other file, at least the file itself may be written.
    file.setDirectWriteFallback(true);
    if (text && file.open(QIODevice::WriteOnly)) {
        file.write(text->data(), static_cast<qint64>(text->size()));
    }
    if (text && file.commit()) {
        tell({});
    } else {
        tell({problemOf(Problem::Kind::fileNotWritten, file)});
    }
}

std::vector<Problem> PresetFilesModel::problems() const {
    std::vector<Problem> problems = fileProblems_;
    const auto setAside = presetProblems(parts_.presets);
    problems.insert(problems.end(), setAside.begin(), setAside.end());
    return problems;
}

void PresetFilesModel::dismissProblems() {
    if (!problems().empty()) {
        fileProblems_.clear();
        parts_.presets.markSetAsideTold();
    }
}

void PresetFilesModel::tell(std::vector<Problem> problems) {
    fileProblems_ = std::move(problems);
    Q_EMIT problemsChanged();
}

QString PresetFilesModel::t(std::string_view french) const {
    return QString::fromStdString(parts_.settings.t(french));
}

} // namespace velmora
