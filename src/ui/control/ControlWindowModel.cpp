#include "ui/control/ControlWindowModel.h"

#include "capture/RangeName.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "engine/Sentence.h"
#include "engine/SourceCondition.h"
#include "operations/ProblemText.h"
#include "platform/DefaultsStore.h"
#include "presets/PresetRecall.h"
#include "presets/PresetSnapshot.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "ui/control/PresetMenu.h"
#include "ui/control/RemovedSource.h"
#include "ui/control/SourceMenu.h"
#include "ui/control/TakeOver.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace velmora {

namespace {

std::string withoutBlanksAround(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const auto first = text.find_first_not_of(blanks);
    if (first == text.npos) {
        return {};
    }
    return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

} // namespace

ControlWindowModel::ControlWindowModel(const MixerParts& parts, FileChooser* files, QObject* parent)
    : QObject(parent), parts_(parts), opener_(parts.platform, parts.engine, parts.sources),
      strips_(parts.platform, parts.engine, this),
      headphones_(VolumeModel::headphones(parts.engine),
                  parts.engine,
                  parts.settings,
                  parts.platform.defaults,
                  this),
      stream_(VolumeModel::stream(parts.engine, parts.talk),
              parts.engine,
              parts.settings,
              parts.platform.defaults,
              this),
      chooser_(parts.platform.applications, this),
      undo_(parts.platform.mainQueue, parts.settings, this),
      presetFiles_(
          {.presets = parts.presets, .settings = parts.settings, .undo = undo_, .files = files},
          this),
      engineConnection_(parts.engine.changedBesidesLevels().connect([this] { follow(); })),
      presetsConnection_(parts.presets.changed().connect([this] { followPresets(); })),
      settingsConnection_(parts.settings.changed().connect([this] { follow(); })),
      storeConnection_(parts.platform.defaults.problemsChanged().connect([this] { follow(); })),
      openerConnection_(opener_.changed().connect([this] { followOpening(); })),
      recallConnection_(parts.recall.openingChanged().connect([this] { followOpening(); })) {
    connect(&strips_, &SourceStripsModel::sourceRemoved, this, [this](const RemovedSource& source) {
        offerUndo(source);
    });
    connect(&strips_,
            &SourceStripsModel::sourceWantedBack,
            this,
            [this](const AudioSource& source) { takeBack(source); });
    connect(&presetFiles_, &PresetFilesModel::problemsChanged, this, [this] { follow(); });
    follow();
    followPresets();
}

void ControlWindowModel::toggleRunning() {
    if (parts_.engine.isRunning()) {
        parts_.engine.stop();
    } else {
        parts_.engine.start();
    }
}

void ControlWindowModel::dismissProblems() {
    parts_.engine.dismissProblems();
    presetFiles_.dismissProblems();
}

void ControlWindowModel::actOnProblem() {
    parts_.platform.defaults.takeOfferedCopy();
}

GumMenuModel* ControlWindowModel::openPrimaryMenu() {
    primaryMenu_.setItems(sourceItems(false));
    return &primaryMenu_;
}

GumMenuModel* ControlWindowModel::openExtraMenu() {
    extraMenu_.setItems(sourceItems(true));
    return &extraMenu_;
}

GumMenuModel* ControlWindowModel::openPresetsMenu() {
    presetsMenu_.setItems(presetItems());
    return &presetsMenu_;
}

void ControlWindowModel::savePreset(const QString& name) {
    const auto trimmed = withoutBlanksAround(name.toStdString());
    if (!trimmed.empty()) {
        offerUndo(
            "Preset « {name} » remplacé",
            parts_.presets.save(snapshotPreset(parts_.engine, parts_.platform.devices, trimmed)));
    }
}

void ControlWindowModel::setVisible(bool visible) {
    if (takeOver(visible_, visible)) {
        strips_.setFollowsLevels(visible);
        Q_EMIT visibleChanged();
    }
}

void ControlWindowModel::follow() {
    undo_.withdrawMoot();
    if (takeOver(running_, parts_.engine.isRunning())) {
        Q_EMIT runningChanged();
    }
    followEffects();
    followOpening();
    if (takeOver(primaryCaption_, primaryName())) {
        Q_EMIT primaryCaptionChanged();
    }
    const auto presetProblems = presetFiles_.problems();
    const std::string problems = velmora::problemText(
        parts_.engine, parts_.platform.defaults.problems(), parts_.settings, presetProblems);
    if (takeOver(problemText_, QString::fromStdString(problems))) {
        Q_EMIT problemTextChanged();
    }
    if (takeOver(canDismissProblems_,
                 parts_.engine.canDismissProblems() || !presetProblems.empty())) {
        Q_EMIT canDismissProblemsChanged();
    }
    const bool isCopyOffered =
        std::ranges::any_of(parts_.platform.defaults.problems(), [](const StoreProblem& problem) {
            return problem.kind == StoreProblem::Kind::copyOffered;
        });
    if (takeOver(problemAction_,
                 isCopyOffered ? QString::fromStdString(parts_.settings.t("Reprendre la copie"))
                               : QString())) {
        Q_EMIT problemActionChanged();
    }
}

void ControlWindowModel::followEffects() {
    const bool isOther = takeOver(effectsOn_, !parts_.engine.fxBypassed());
    if (takeOver(hasEffects_, !effectsOn_ || parts_.engine.anyFXActive()) || isOther) {
        Q_EMIT effectsChanged();
    }
}

void ControlWindowModel::setEffectsOn(bool on) {
    parts_.engine.setFxBypassed(!on);
}

void ControlWindowModel::followOpening() {
    std::string names;
    for (const auto* const opening : {&opener_.opening(), &parts_.recall.opening()}) {
        for (const std::string& name : *opening) {
            names += (names.empty() ? "" : ", ") + name;
        }
    }
    const std::string text =
        names.empty() ? "" : filled(parts_.settings.t("Ouverture de {name}…"), {{"{name}", names}});
    if (takeOver(openingText_, QString::fromStdString(text))) {
        Q_EMIT openingTextChanged();
    }
}

void ControlWindowModel::followPresets() {
    // A deleted preset leaves the open menu at once.
    presetsMenu_.setItems(presetItems());
    const auto* const active = parts_.presets.active();
    if (takeOver(activePresetName_,
                 active != nullptr ? QString::fromStdString(active->name) : QString())) {
        Q_EMIT activePresetNameChanged();
    }
}

QString ControlWindowModel::primaryName() const {
    const auto& sources = parts_.engine.sources();
    if (sources.empty()) {
        return QString::fromStdString(parts_.settings.t("Choisir une source"));
    }
    const std::string one = parts_.settings.t(frenchRangeWords.one);
    const std::string several = parts_.settings.t(frenchRangeWords.several);
    return QString::fromStdString(shownName(sources.front(), {.one = one, .several = several}));
}

std::vector<GumMenuItem> ControlWindowModel::sourceItems(bool asExtra) {
    parts_.sources.refresh();
    return sourceMenuItems(
        parts_.sources,
        parts_.platform,
        parts_.settings,
        {.browse = [this, asExtra] { browseForApp(asExtra); },
         .choose = [this, asExtra](const AudioSource& source) { take(source, asExtra); },
         .isChosen = [this,
                      asExtra](const AudioSource& source) { return isChosen(source, asExtra); }});
}

bool ControlWindowModel::isChosen(const AudioSource& source, bool asExtra) const {
    const auto& mixed = parts_.engine.sources();
    const auto end = asExtra || mixed.empty() ? mixed.end() : mixed.begin() + 1;
    return std::ranges::find(mixed.begin(), end, source.id(), &AudioSource::id) != end;
}

std::vector<GumMenuItem> ControlWindowModel::presetItems() {
    return presetMenuItems(parts_.presets,
                           parts_.settings,
                           {.save = [this] { Q_EMIT savePromptRequested(); },
                            .apply = [this](const Preset& preset) { apply(preset); },
                            .remove = [this](const Uuid& id) { remove(id); }});
}

void ControlWindowModel::take(const AudioSource& source, bool asExtra) {
    if (asExtra) {
        parts_.engine.add(source);
    } else {
        parts_.engine.setPrimary(source);
    }
}

void ControlWindowModel::browseForApp(bool asExtra) {
    chooser_.open([this, asExtra](const InstalledApplication& application) {
        opener_.open(application,
                     [this, asExtra](const AudioSource& source) { take(source, asExtra); });
    });
    Q_EMIT chooserRequested(asExtra);
}

/// A running instance takes the place of the one that has ended; else it is opened.
void ControlWindowModel::takeBack(const AudioSource& source) {
    if (const auto successor = successorOf(parts_.platform, parts_.engine, source)) {
        parts_.engine.replace(source, *successor);
        return;
    }
    const auto application = closedApplication(parts_.platform, source);
    if (!application) {
        return;
    }
    strips_.setOpening(source, true);
    opener_.open(
        *application,
        [this, source](const AudioSource& opened) { parts_.engine.replace(source, opened); },
        [this, source] { strips_.setOpening(source, false); });
}

void ControlWindowModel::apply(const Preset& preset) {
    // A source that was removed before does not belong into this setup.
    undo_.withdraw(UndoOffer::Kind::source);
    parts_.recall.apply(preset, {.launchClosedApps = true, .quiet = false});
    parts_.presets.setActive(preset.id);
}

void ControlWindowModel::remove(const Uuid& preset) {
    offerUndo("Preset « {name} » supprimé", parts_.presets.remove(preset));
}

void ControlWindowModel::offerUndo(const RemovedSource& removed) {
    undo_.offer(
        {.kind = UndoOffer::Kind::source,
         .french = "« {name} » retiré",
         .name = removed.source.name(),
         .undo = [this, removed] { putBack(parts_.engine, removed); },
         .isMoot = [this, source = removed.source] { return isInMix(parts_.engine, source); }});
}

void ControlWindowModel::offerUndo(std::string_view french, const DisplacedPresets& displaced) {
    if (!displaced.entries.empty()) {
        undo_.offer({.kind = UndoOffer::Kind::presets,
                     .french = french,
                     .name = displaced.entries.front().preset.name,
                     .undo = [this, displaced] { parts_.presets.bringBack(displaced); }});
    }
}

} // namespace velmora
