#include "ui/settings/SettingsModel.h"

#include "capture/DAWModeManager.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/MixerText.h"
#include "platform/LoginItem.h"

#include <QVariantMap>
#include <algorithm>
#include <utility>

namespace velmora {
namespace {

template <typename Choices>
QVariantList optionList(const Choices& choices) {
    QVariantList options;
    for (const Choice& choice : choices) {
        options.push_back(QVariantMap{{"tag", QString::fromStdString(choice.value)},
                                      {"label", QString::fromStdString(choice.label)}});
    }
    return options;
}

/// `value` if it is offered, else the first option's.
template <typename Choices>
QString offered(const Choices& choices, const std::string& value) {
    const bool isThere = std::ranges::find(choices, value, &Choice::value) != choices.end();
    return QString::fromStdString(isThere ? value : choices.front().value);
}

std::optional<std::string> unlessEmpty(const QString& tag) {
    return tag.isEmpty() ? std::nullopt : std::optional(tag.toStdString());
}

} // namespace

QString versionText(const ProgramVersion& version) {
    const QString unknown = QStringLiteral("—");
    return QStringLiteral("%1 (%2)").arg(version.release.value_or(unknown),
                                         version.build.value_or(unknown));
}

SettingsModel::SettingsModel(const Parts& parts, QObject* parent)
    : QObject(parent), parts_(parts), version_(versionText(parts.version)),
      launchAtLogin_(parts.platform.loginItem.isEnabled()), shortcuts_(parts.keys, parts.settings),
      settingsConnection_(parts.settings.changed().connect([this] { followSettings(); })),
      engineConnection_(parts.engine.changedBesidesLevels().connect([this] { followEngine(); })),
      sourcesConnection_(parts.sources.changed().connect([this] { readDevices(); })),
      pluggingConnection_(parts.platform.devices.changed().connect([this] { followPlugging(); })),
      dawConnection_(parts.dawMode.changed().connect([this] { Q_EMIT dawChanged(); })) {
    readDevices();
    followBlocks();
}

void SettingsModel::setVisible(bool visible) {
    if (std::exchange(isVisible_, visible) == visible) {
        return;
    }
    Q_EMIT visibleChanged();
    followPlugging();
}

void SettingsModel::followPlugging() {
    if (isVisible_) {
        parts_.sources.refresh();
    }
}

void SettingsModel::refresh() {
    parts_.sources.refresh();
    readDevices();
    const bool isEnabled = parts_.platform.loginItem.isEnabled();
    if (std::exchange(launchAtLogin_, isEnabled) != isEnabled) {
        Q_EMIT loginChanged();
    }
}

QVariantList SettingsModel::appearanceOptions() const {
    return optionList(parts_.settings.appearanceChoices());
}

QString SettingsModel::appearance() const {
    return offered(parts_.settings.appearanceChoices(), parts_.settings.appearance());
}

void SettingsModel::setAppearance(const QString& value) {
    parts_.settings.setAppearance(value.toStdString());
}

QVariantList SettingsModel::languageOptions() {
    return optionList(AppSettings::languageChoices());
}

QString SettingsModel::language() const {
    return offered(AppSettings::languageChoices(), parts_.settings.language());
}

void SettingsModel::setLanguage(const QString& value) {
    parts_.settings.setLanguage(value.toStdString());
}

void SettingsModel::setLaunchAtLogin(bool wanted) {
    LoginItem& item = parts_.platform.loginItem;
    const auto outcome = wanted ? item.registerItem() : item.unregisterItem();
    loginError_ = outcome ? QString{} : QString::fromStdString(outcome.error());
    launchAtLogin_ = item.isEnabled();
    Q_EMIT loginChanged();
}

QVariantList SettingsModel::monitoringOptions() const {
    return optionList(monitoringOptions_);
}

QString SettingsModel::monitoring() const {
    const std::string selection = parts_.engine.monitoringSelection().value_or("");
    const bool namesChannel = selection.empty() || selection.contains('#');
    return offered(monitoringOptions_, namesChannel ? selection : selection + "#1");
}

void SettingsModel::setMonitoring(const QString& tag) {
    parts_.engine.setMonitoringSelection(unlessEmpty(tag));
}

bool SettingsModel::dawEnabled() const {
    return parts_.dawMode.enabled();
}

void SettingsModel::setDawEnabled(bool enabled) {
    parts_.dawMode.setEnabled(enabled);
}

QVariantList SettingsModel::dawInterfaceOptions() const {
    return optionList(dawOptions_);
}

QString SettingsModel::dawInterface() const {
    return offered(dawOptions_, parts_.dawMode.interfaceUID().value_or(""));
}

void SettingsModel::setDawInterface(const QString& tag) {
    parts_.dawMode.setInterfaceUID(unlessEmpty(tag));
}

QString SettingsModel::dawError() const {
    const auto& problem = parts_.dawMode.problem();
    if (!dawEnabled() || !problem) {
        return {};
    }
    return QString::fromStdString(
        sentence(*problem, [this](std::string_view french) { return parts_.settings.t(french); }));
}

void SettingsModel::followSettings() {
    readDevices(); // their entries have texts as well
    followBlocks();
    Q_EMIT settingsChanged();
    Q_EMIT dawChanged();
}

void SettingsModel::followEngine() {
    followMonitoring();
    followBlocks();
}

void SettingsModel::followBlocks() {
    QString now = QString::fromStdString(blocksText(parts_.engine.blocks(), parts_.settings));
    if (now != blocks_) {
        blocks_ = std::move(now);
        Q_EMIT blocksChanged();
    }
}

void SettingsModel::followMonitoring() {
    if (QString now = monitoring(); now != monitoring_) {
        monitoring_ = std::move(now);
        Q_EMIT monitoringChanged();
    }
}

void SettingsModel::readDevices() {
    const AudioDevices& devices = parts_.platform.devices;
    auto monitoring = velmora::monitoringOptions(devices, parts_.sources, parts_.settings);
    auto daw = velmora::dawInterfaceOptions(devices, parts_.sources, parts_.settings);
    if (monitoring != monitoringOptions_ || daw != dawOptions_) {
        monitoringOptions_ = std::move(monitoring);
        dawOptions_ = std::move(daw);
        Q_EMIT devicesChanged();
        Q_EMIT dawChanged();
    }
    followMonitoring();
}

} // namespace velmora
