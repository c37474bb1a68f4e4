#include "soak/MixerClient.h"

#include "operations/EffectWords.h"

#include <QDBusMessage>
#include <QStringList>
#include <QVariantList>
#include <algorithm>
#include <optional>
#include <sstream>
#include <utility>

namespace velmora::soak {

namespace {

using Kind = Action::Kind;
using Clock = std::chrono::steady_clock;

const QString connectionName = QStringLiteral("soak");
/// Longer than this nobody waits for a click.
constexpr int answerMilliseconds = 10'000;

std::string number(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string onOff(bool on) {
    return on ? "on" : "off";
}

/// The command that does it.
std::vector<std::string> commandFor(const Action& action) {
    switch (action.kind) {
    case Kind::start:
        return {"on"};
    case Kind::stop:
        return {"off"};
    case Kind::bypass:
        return {"bypass", onOff(action.on)};
    case Kind::volume:
        return {"volume", action.word, number(action.db)};
    case Kind::muteVolume:
        return {"volume", action.word, action.on ? "mute" : "unmute"};
    case Kind::add:
        return {"add", action.word};
    case Kind::remove:
        return {"remove", action.word};
    case Kind::gain:
        return {"gain", action.word, number(action.db)};
    case Kind::mute:
        return {"mute", action.word, onOff(action.on)};
    case Kind::silence:
        return {"silence", action.word, onOff(action.on)};
    case Kind::effects: {
        if (action.fx.isNeutral()) {
            return {"effects", action.word, "reset"};
        }
        std::vector<std::string> words{"effects", action.word};
        for (const auto& [name, value] : effectValues(action.fx)) {
            words.push_back(name + "=" + value);
        }
        return words;
    }
    case Kind::savePreset:
        return {"preset", "save", action.word};
    case Kind::applyPreset:
        return {"preset", "apply", action.word};
    case Kind::removePreset:
        return {"preset", "remove", action.word};
    case Kind::ask: {
        std::istringstream words(action.word);
        return {std::istream_iterator<std::string>(words), {}};
    }
    default:
        return {};
    }
}

struct Method {
    QString name;
    QVariantList arguments;
};

/// The method that does it, where there is one that takes nothing but plain values.
std::optional<Method> methodFor(const Action& action) {
    const QString word = QString::fromStdString(action.word);
    switch (action.kind) {
    case Kind::start:
        return Method{"Start", {}};
    case Kind::stop:
        return Method{"Stop", {}};
    case Kind::bypass:
        return Method{"SetBypassed", {action.on}};
    case Kind::volume:
        return Method{"SetVolume", {word, action.db}};
    case Kind::muteVolume:
        return Method{"SetVolumeMuted", {word, action.on}};
    case Kind::add:
        return Method{"Add", {word}};
    case Kind::remove:
        return Method{"Remove", {word}};
    case Kind::gain:
        return Method{"SetLevel", {word, action.db}};
    case Kind::mute:
        return Method{"SetMuted", {word, action.on}};
    case Kind::silence:
        return Method{"SetSilenced", {word, action.on}};
    case Kind::savePreset:
        return Method{"SavePreset", {word}};
    case Kind::applyPreset:
        return Method{"ApplyPreset", {word}};
    case Kind::removePreset:
        return Method{"RemovePreset", {word}};
    default:
        return std::nullopt;
    }
}

} // namespace

MixerClient::MixerClient(const std::string& busAddress)
    : bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), connectionName)) {
}

MixerClient::~MixerClient() {
    QDBusConnection::disconnectFromBus(connectionName);
}

QDBusMessage MixerClient::call(const QString& method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(
        "app.velmora.Velmora", "/app/velmora/Velmora/Mixer", "app.velmora.Mixer1", method);
    message.setArguments(arguments);
    const auto asked = Clock::now();
    QDBusMessage reply = bus_.call(message, QDBus::Block, answerMilliseconds);
    slowest_ =
        std::max(slowest_, std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - asked));
    return reply;
}

Said MixerClient::run(const std::vector<std::string>& words) {
    QStringList list;
    for (const std::string& word : words) {
        list.push_back(QString::fromStdString(word));
    }
    const QDBusMessage reply = call("Run", {list});
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return {.error = reply.errorMessage().toStdString()};
    }
    const QVariantList said = reply.arguments();
    return {.status = said.value(0).toInt(),
            .output = said.value(1).toString().toStdString(),
            .error = said.value(2).toString().toStdString()};
}

nlohmann::json MixerClient::json(std::vector<std::string> words) {
    words.emplace_back("--json");
    const Said said = run(words);
    return said.status == 0 ? nlohmann::json::parse(said.output, nullptr, false) : nlohmann::json();
}

Said MixerClient::perform(const Action& action, bool byMethod) {
    const auto method = byMethod ? methodFor(action) : std::nullopt;
    if (!method) {
        return run(commandFor(action));
    }
    const QDBusMessage reply = call(method->name, method->arguments);
    if (reply.type() == QDBusMessage::ReplyMessage) {
        return {.status = 0};
    }
    const bool isRefused = reply.errorName() == "app.velmora.Mixer1.Refused";
    return {.status = isRefused ? 1 : -1, .error = reply.errorMessage().toStdString()};
}

} // namespace velmora::soak
