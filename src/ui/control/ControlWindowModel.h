// ControlWindowModel.h: what the control window shows and does.
#pragma once

#include "operations/MixerParts.h"
#include "platform/Signal.h"
#include "ui/control/ApplicationChooserModel.h"
#include "ui/control/ApplicationOpener.h"
#include "ui/control/PresetFilesModel.h"
#include "ui/control/SourceStripsModel.h"
#include "ui/control/UndoModel.h"
#include "ui/control/VolumeModel.h"
#include "ui/kit/menu/GumMenuModel.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <string_view>
#include <vector>

namespace velmora {

class FileChooser;
struct DisplacedPresets;
struct Preset;
struct Uuid;

/// Holds no audio state of its own: everything is read from the engine and the presets, and every
/// edit goes there.
///
/// Threads: main.
class ControlWindowModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool running READ running NOTIFY runningChanged)
    Q_PROPERTY(bool hasEffects READ hasEffects NOTIFY effectsChanged)
    Q_PROPERTY(bool effectsOn READ effectsOn WRITE setEffectsOn NOTIFY effectsChanged)
    Q_PROPERTY(QString openingText READ openingText NOTIFY openingTextChanged)
    Q_PROPERTY(QString problemText READ problemText NOTIFY problemTextChanged)
    Q_PROPERTY(bool canDismissProblems READ canDismissProblems NOTIFY canDismissProblemsChanged)
    Q_PROPERTY(QString problemAction READ problemAction NOTIFY problemActionChanged)
    Q_PROPERTY(QString primaryCaption READ primaryCaption NOTIFY primaryCaptionChanged)
    Q_PROPERTY(QString activePresetName READ activePresetName NOTIFY activePresetNameChanged)
    Q_PROPERTY(velmora::SourceStripsModel* strips READ strips CONSTANT)
    Q_PROPERTY(velmora::VolumeModel* headphones READ headphones CONSTANT)
    Q_PROPERTY(velmora::VolumeModel* stream READ stream CONSTANT)
    Q_PROPERTY(velmora::GumMenuModel* primaryMenu READ primaryMenu CONSTANT)
    Q_PROPERTY(velmora::GumMenuModel* extraMenu READ extraMenu CONSTANT)
    Q_PROPERTY(velmora::GumMenuModel* presetsMenu READ presetsMenu CONSTANT)
    Q_PROPERTY(velmora::ApplicationChooserModel* chooser READ chooser CONSTANT)
    Q_PROPERTY(velmora::PresetFilesModel* presetFiles READ presetFiles CONSTANT)
    Q_PROPERTY(velmora::UndoModel* undo READ undo CONSTANT)
    Q_PROPERTY(bool visible READ visible WRITE setVisible NOTIFY visibleChanged)

public:
    /// @param files  outlives the model; none = presets are not carried in files
    explicit ControlWindowModel(const MixerParts& parts,
                                FileChooser* files = nullptr,
                                QObject* parent = nullptr);

    [[nodiscard]] bool running() const { return running_; }
    /// Starts a stopped mix and stops a running one.
    Q_INVOKABLE void toggleRunning();

    /// Some source has effects, or they are bypassed: there is something to switch.
    [[nodiscard]] bool hasEffects() const { return hasEffects_; }
    /// Those of all sources are heard as they are set.
    [[nodiscard]] bool effectsOn() const { return effectsOn_; }
    void setEffectsOn(bool on);

    /// Which applications are coming up; empty when there are none.
    [[nodiscard]] const QString& openingText() const { return openingText_; }

    /// One line for each thing that is wrong; empty when all is well.
    [[nodiscard]] const QString& problemText() const { return problemText_; }
    /// Some of it the user may put away: what a recall or a launch left, why a start failed, and
    /// what there is to say about presets.
    [[nodiscard]] bool canDismissProblems() const { return canDismissProblems_; }
    Q_INVOKABLE void dismissProblems();
    /// What the user may do about it, as a button says it; empty when there is nothing.
    [[nodiscard]] const QString& problemAction() const { return problemAction_; }
    Q_INVOKABLE void actOnProblem();

    /// Name of the primary source, or the invitation to choose one.
    [[nodiscard]] const QString& primaryCaption() const { return primaryCaption_; }
    /// Empty while no preset is active.
    [[nodiscard]] const QString& activePresetName() const { return activePresetName_; }

    [[nodiscard]] SourceStripsModel* strips() { return &strips_; }
    [[nodiscard]] VolumeModel* headphones() { return &headphones_; }
    [[nodiscard]] VolumeModel* stream() { return &stream_; }
    [[nodiscard]] GumMenuModel* primaryMenu() { return &primaryMenu_; }
    [[nodiscard]] GumMenuModel* extraMenu() { return &extraMenu_; }
    [[nodiscard]] GumMenuModel* presetsMenu() { return &presetsMenu_; }
    [[nodiscard]] ApplicationChooserModel* chooser() { return &chooser_; }
    [[nodiscard]] PresetFilesModel* presetFiles() { return &presetFiles_; }
    [[nodiscard]] UndoModel* undo() { return &undo_; }

    // Each fills its menu with what there is now.
    Q_INVOKABLE velmora::GumMenuModel* openPrimaryMenu();
    Q_INVOKABLE velmora::GumMenuModel* openExtraMenu();
    Q_INVOKABLE velmora::GumMenuModel* openPresetsMenu();

    /// What the name field begins with.
    Q_INVOKABLE QString beginSavePreset() const { return activePresetName_; }
    /// Keeps the present setup; spaces and tabs around the name go, an empty name does nothing.
    Q_INVOKABLE void savePreset(const QString& name);

    Q_INVOKABLE void openSettings() { Q_EMIT settingsRequested(); }
    Q_INVOKABLE void quit() { Q_EMIT quitRequested(); }

    /// Whether somebody can see the window: meters move only while they can.
    [[nodiscard]] bool visible() const { return visible_; }
    void setVisible(bool visible);

Q_SIGNALS:
    void runningChanged();
    void effectsChanged();
    void openingTextChanged();
    void problemTextChanged();
    void canDismissProblemsChanged();
    void problemActionChanged();
    void primaryCaptionChanged();
    void activePresetNameChanged();
    void visibleChanged();
    /// Show the chooser; its choice is added, or becomes the primary source.
    void chooserRequested(bool asExtra);
    /// Ask for a preset's name.
    void savePromptRequested();
    void settingsRequested();
    void quitRequested();

private:
    void follow();
    void followEffects();
    void followOpening();
    void followPresets();
    [[nodiscard]] QString primaryName() const;
    [[nodiscard]] std::vector<GumMenuItem> sourceItems(bool asExtra);
    /// The mix's first source, or, for the menu that adds to it, any of them.
    [[nodiscard]] bool isChosen(const AudioSource& source, bool asExtra) const;
    [[nodiscard]] std::vector<GumMenuItem> presetItems();
    void take(const AudioSource& source, bool asExtra);
    void browseForApp(bool asExtra);
    void takeBack(const AudioSource& source);
    void apply(const Preset& preset);
    void remove(const Uuid& preset);
    void offerUndo(const RemovedSource& removed);
    void offerUndo(std::string_view french, const DisplacedPresets& displaced);

    MixerParts parts_;
    ApplicationOpener opener_;
    // This object is the parent of what QML sees: QML would own, and delete, what has none.
    SourceStripsModel strips_;
    VolumeModel headphones_;
    VolumeModel stream_;
    GumMenuModel primaryMenu_{this};
    GumMenuModel extraMenu_{this};
    GumMenuModel presetsMenu_{this};
    ApplicationChooserModel chooser_;
    UndoModel undo_;
    PresetFilesModel presetFiles_;
    // As last shown.
    bool running_ = false;
    bool hasEffects_ = false;
    bool effectsOn_ = true;
    QString openingText_;
    QString problemText_;
    bool canDismissProblems_ = false;
    QString problemAction_;
    QString primaryCaption_;
    QString activePresetName_;
    bool visible_ = false;
    Signal::Connection engineConnection_;
    Signal::Connection presetsConnection_;
    Signal::Connection settingsConnection_;
    Signal::Connection storeConnection_;
    Signal::Connection openerConnection_;
    Signal::Connection recallConnection_;
};

} // namespace velmora
