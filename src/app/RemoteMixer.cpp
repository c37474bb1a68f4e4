#include "app/RemoteMixer.h"

#include "app/BusNames.h"
#include "engine/AudioEngine.h"
#include "operations/EffectWords.h"
#include "operations/MixerJson.h"
#include "operations/MixerText.h"
#include "operations/Numbers.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QMetaProperty>
#include <mixer1_adaptor.h>
#include <utility>
#include <vector>

namespace velmora {
namespace {

const QString refused = mixerInterface + QStringLiteral(".Refused");

std::string text(const QString& word) {
    return word.toStdString();
}

QStringList listOf(const std::vector<std::string>& texts) {
    QStringList list;
    for (const std::string& one : texts) {
        list.append(QString::fromStdString(one));
    }
    return list;
}

Switch switchTo(bool on) {
    return on ? Switch::on : Switch::off;
}

} // namespace

RemoteMixer::RemoteMixer(QObject* parent) : QObject(parent), bus_(QDBusConnection::sessionBus()) {
    qDBusRegisterMetaType<TextMap>();
    qDBusRegisterMetaType<NumberMapByText>();
    qDBusRegisterMetaType<MapList>();
    new Mixer1Adaptor(this); // belongs to this object
    bus_.registerObject(mixerPath, this, QDBusConnection::ExportAdaptors);
}

RemoteMixer::~RemoteMixer() {
    bus_.unregisterObject(mixerPath);
}

RemoteMixer::Attached::Attached(RemoteMixer& owner,
                                const MixerParts& mixerParts,
                                const std::function<void()>& quitProgram)
    : parts(mixerParts), control(mixerParts), commands(mixerParts, quitProgram), quit(quitProgram),
      teller(mixerParts, [&owner](const MixerState& before, const MixerState& after) {
          owner.tell(before, after);
      }) {
}

void RemoteMixer::attach(const MixerParts& parts, const std::function<void()>& quit) {
    attached_.emplace(*this, parts, quit);
    refresh();
}

void RemoteMixer::detach() {
    attached_.reset();
}

/// A call can come while the program is still deciding whether it may be open.
bool RemoteMixer::isReady() {
    if (!attached_ && calledFromDBus()) {
        sendErrorReply(QDBusError::Failed, QStringLiteral("not ready"));
    }
    return attached_.has_value();
}

/// Whoever has called reads what the call has made of the properties.
void RemoteMixer::refresh() {
    state_ = stateOf(attached_->parts);
}

void RemoteMixer::answer(const Answer<>& outcome) {
    if (!outcome && calledFromDBus()) {
        sendErrorReply(refused, QString::fromStdString(outcome.error().sentence));
    }
}

void RemoteMixer::perform(const std::function<Answer<>(MixerControl&)>& operation) {
    if (isReady()) {
        answer(operation(attached_->control));
        refresh();
    }
}

void RemoteMixer::act(const QString& action) {
    if (action == "on") {
        Start();
    } else if (action == "off") {
        Stop();
    } else if (action == "next-preset") {
        ApplyNextPreset();
    }
}

int RemoteMixer::Run(const QStringList& words, QString& output, QString& error) {
    if (!isReady()) {
        return 1;
    }
    std::vector<std::string> list;
    for (const QString& word : words) {
        list.push_back(text(word));
    }
    const CommandReply reply = attached_->commands.run(list);
    refresh();
    output = QString::fromStdString(reply.output);
    error = QString::fromStdString(reply.error);
    return reply.status;
}

void RemoteMixer::Start() {
    perform([](MixerControl& control) { return control.switchMix(Switch::on); });
}

void RemoteMixer::Stop() {
    perform([](MixerControl& control) { return control.switchMix(Switch::off); });
}

void RemoteMixer::Toggle() {
    perform([](MixerControl& control) { return control.switchMix(Switch::toggle); });
}

void RemoteMixer::SetBypassed(bool bypassed) {
    perform([&](MixerControl& control) {
        control.bypass(switchTo(bypassed));
        return Answer<>();
    });
}

void RemoteMixer::Add(const QString& source) {
    perform([&](MixerControl& control) { return control.add(text(source)); });
}

void RemoteMixer::Remove(const QString& source) {
    perform([&](MixerControl& control) { return control.remove(text(source)); });
}

void RemoteMixer::SetLevel(const QString& source, double db) {
    perform([&](MixerControl& control) { return control.setGain(text(source), db); });
}

void RemoteMixer::SetMuted(const QString& source, bool muted) {
    perform([&](MixerControl& control) { return control.mute(text(source), switchTo(muted)); });
}

void RemoteMixer::SetSilenced(const QString& source, bool silenced) {
    perform(
        [&](MixerControl& control) { return control.silence(text(source), switchTo(silenced)); });
}

void RemoteMixer::SetEffects(const QString& source, const TextMap& changes) {
    std::vector<std::pair<std::string, std::string>> list;
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        list.emplace_back(text(change.key()), text(change.value()));
    }
    perform([&](MixerControl& control) { return control.setEffects(text(source), list); });
}

void RemoteMixer::ResetEffects(const QString& source) {
    perform([&](MixerControl& control) { return control.resetEffects(text(source)); });
}

void RemoteMixer::SetVolume(const QString& volume, double db) {
    perform([&](MixerControl& control) {
        return then(control.fader(text(volume)),
                    [&](Fader fader) { return control.setGain(fader, db); });
    });
}

void RemoteMixer::SetVolumeMuted(const QString& volume, bool muted) {
    perform([&](MixerControl& control) {
        return then(control.fader(text(volume)), [&](Fader fader) {
            control.mute(fader, switchTo(muted));
            return Answer<>();
        });
    });
}

void RemoteMixer::SetPushToTalk(bool on) {
    perform([&](MixerControl& control) { return control.pushToTalk(switchTo(on)); });
}

void RemoteMixer::SetMonitor(const QString& device) {
    perform([&](MixerControl& control) { return control.setMonitor(text(device)); });
}

void RemoteMixer::ApplyPreset(const QString& preset) {
    perform([&](MixerControl& control) { return control.applyPreset(text(preset)); });
}

void RemoteMixer::ApplyNextPreset() {
    perform([](MixerControl& control) { return control.applyNextPreset(); });
}

void RemoteMixer::SavePreset(const QString& name) {
    perform([&](MixerControl& control) { return control.savePreset(text(name)); });
}

void RemoteMixer::RemovePreset(const QString& preset) {
    perform([&](MixerControl& control) { return control.removePreset(text(preset)); });
}

void RemoteMixer::ExportPresets(const QString& file) {
    perform([&](MixerControl& control) { return control.exportPresets(text(file), std::nullopt); });
}

void RemoteMixer::ImportPresets(const QString& file) {
    perform([&](MixerControl& control) { return control.importPresets(text(file)); });
}

NumberMapByText RemoteMixer::Levels() {
    NumberMapByText levels;
    if (isReady()) {
        for (const auto& [id, level] : attached_->parts.engine.sourceLevels()) {
            levels.insert(QString::fromStdString(id), static_cast<double>(level));
        }
    }
    return levels;
}

void RemoteMixer::Quit() {
    if (isReady()) {
        attached_->quit();
    }
}

double RemoteMixer::microphoneDb() const {
    return dbFromGain(state_.microphone);
}

double RemoteMixer::headphonesDb() const {
    return dbFromGain(state_.headphones);
}

QString RemoteMixer::preset() const {
    return QString::fromStdString(state_.preset.value_or(""));
}

QStringList RemoteMixer::presets() const {
    return listOf(state_.presets);
}

MapList RemoteMixer::sources() const {
    MapList list;
    for (const SourceState& source : state_.sources) {
        QVariantMap effects;
        for (const auto& [name, value] : effectValues(source.effects)) {
            effects.insert(QString::fromStdString(name), QString::fromStdString(value));
        }
        list.append(
            {{"id", QString::fromStdString(source.id)},
             {"name", QString::fromStdString(source.name)},
             {"kind",
              QString::fromUtf8(source.kind.data(), static_cast<qsizetype>(source.kind.size()))},
             {"db", dbFromGain(source.gain)},
             {"silenced", source.isSilenced},
             {"effects", effects}});
    }
    return list;
}

QStringList RemoteMixer::problems() const {
    return listOf(state_.problems);
}

QVariantMap RemoteMixer::properties() const {
    QVariantMap values;
    for (int index = staticMetaObject.propertyOffset(); index < staticMetaObject.propertyCount();
         ++index) {
        const QMetaProperty property = staticMetaObject.property(index);
        values.insert(property.name(), property.read(this));
    }
    return values;
}

void RemoteMixer::tell(const MixerState& before, const MixerState& after) {
    state_ = before;
    const QVariantMap old = properties();
    state_ = after;
    QVariantMap changed = properties();
    for (auto property = changed.begin(); property != changed.end();) {
        property = *property == old.value(property.key()) ? changed.erase(property) : ++property;
    }
    auto signal = QDBusMessage::createSignal(mixerPath,
                                             QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("PropertiesChanged"));
    signal << mixerInterface << changed << QStringList();
    bus_.send(signal);
    Q_EMIT Changed(listOf(changeLines(before, after, attached_->parts.settings)),
                   QString::fromStdString(stateJson(after)));
}

} // namespace velmora
