#include "app/ScreenReader.h"

#include "support/Wait.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace velmora {

namespace {

constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto actions = "org.a11y.atspi.Action";
constexpr auto texts = "org.a11y.atspi.Text";
constexpr auto values = "org.a11y.atspi.Value";
const QString connectionName = QStringLiteral("screen-reader");

// Source: at-spi2-core 2.46, atspi-constants.h, AtspiStateType: the number of a state's bit. That
// something can be checked (41) is told by newer Qt only.
constexpr quint64 isShowing = 1ULL << 25U;
constexpr std::array<std::pair<unsigned, const char*>, 8> told{{{4, "checked"},
                                                                {7, "editable"},
                                                                {9, "expandable"},
                                                                {10, "expanded"},
                                                                {11, "focusable"},
                                                                {23, "selected"},
                                                                {42, "opens a menu"},
                                                                {43, "read only"}}};
constexpr quint64 isEditable = 1ULL << 7U;
constexpr quint64 isSensitive = 1ULL << 24U;

QDBusConnection session(const support::Environment& environment) {
    return QDBusConnection::connectToBus(
        QString::fromStdString(environment.at("DBUS_SESSION_BUS_ADDRESS")), connectionName);
}

/// The bus of its own that programs speak on, where the session's launcher knows it.
QString addressIn(const support::Environment& environment) {
    QDBusConnection bus = session(environment);
    QString address;
    const bool isThere = support::waitUntil([&] {
        const QDBusReply<QString> reply = bus.call(QDBusMessage::createMethodCall(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"));
        address = reply.value();
        return !address.isEmpty();
    });
    QDBusConnection::disconnectFromBus(connectionName);
    if (!isThere) {
        throw std::runtime_error("the accessibility bus did not come up");
    }
    return address;
}

support::Command launcherCommand(const support::Environment& environment) {
    support::Command command;
    command.arguments = {"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"};
    command.environment = environment;
    command.output = "/dev/null";
    return command;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, SpokenObject& object) {
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> object.bus >> path;
    argument.endStructure();
    object.path = path.path();
    return argument;
}

} // namespace

ScreenReader::ScreenReader(const support::Environment& environment)
    : launcher_(launcherCommand(environment)),
      bus_(QDBusConnection::connectToBus(addressIn(environment), connectionName)) {
    bus_.connect({},
                 {},
                 "org.a11y.atspi.Event.Object",
                 "StateChanged",
                 &ear_,
                 SLOT(stateChanged(QDBusMessage)));
    // Programs tell only what somebody has asked for.
    ask({"org.a11y.atspi.Registry", "/org/a11y/atspi/registry"},
        "org.a11y.atspi.Registry",
        "RegisterEvent",
        {"object:state-changed:focused"});
}

void FocusEar::stateChanged(const QDBusMessage& message) {
    if (message.arguments().value(0) == "focused" && message.arguments().value(1) == 1) {
        last_ = {message.service(), message.path()};
    }
}

ScreenReader::~ScreenReader() {
    QDBusConnection::disconnectFromBus(connectionName);
}

SpokenObject ScreenReader::window(const QString& title) {
    const SpokenObject desktop{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
    for (const SpokenObject& program : children(desktop)) {
        for (const SpokenObject& window : childrenShown(program)) {
            if (property(window, accessible, "Name").toString() == title) {
                return window;
            }
        }
    }
    return {};
}

SpokenObject ScreenReader::find(const SpokenObject& root, const QString& name) {
    for (const SpokenObject& child : childrenShown(root)) {
        if (property(child, accessible, "Name").toString() == name) {
            return child;
        }
        if (const SpokenObject below = find(child, name); below.isThere()) {
            return below;
        }
    }
    return {};
}

SpokenObject ScreenReader::menu() {
    SpokenObject object = ear_.last();
    while (object.isThere() && ask(object, accessible, "GetRoleName") != "popup menu") {
        const auto parent = property(object, accessible, "Parent").value<QDBusArgument>();
        const bool isTop = property(object, accessible, "Parent").isNull();
        object = {};
        if (!isTop) {
            parent >> object;
        }
    }
    return object;
}

std::string ScreenReader::tree(const SpokenObject& root) {
    std::string lines = line(root) + "\n";
    for (const SpokenObject& child : childrenShown(root)) {
        const std::string below = tree(child);
        std::size_t start = 0;
        for (std::size_t end = below.find('\n'); end != below.npos; end = below.find('\n', start)) {
            lines += "  " + below.substr(start, end + 1 - start);
            start = end + 1;
        }
    }
    return lines;
}

std::string ScreenReader::line(const SpokenObject& object) {
    const QString called = property(object, accessible, "Name").toString();
    QString words = ask(object, accessible, "GetRoleName").toString() + " \"" + called + '"';
    // Qt 6.4 describes a window by its title once more.
    if (const QString added = property(object, accessible, "Description").toString();
        !added.isEmpty() && added != called) {
        words += " (" + added + ')';
    }
    const quint64 state = states(object);
    for (const auto& [bit, name] : told) {
        words += (state >> bit & 1U) != 0 ? QString(", ") + name : QString();
    }
    words += (state & isSensitive) == 0 ? QString(", disabled") : QString();
    if (has(object, values)) {
        const double value = property(object, values, "CurrentValue").toDouble();
        words += ", value " + QString::number(value, 'f', 2);
    }
    // Of what is only read the name says it all; whether it has a text as well depends on Qt.
    if ((state & isEditable) != 0 && has(object, texts)) {
        words += ", text \"" + QString::fromStdString(text(object)) + '"';
    }
    return words.toStdString();
}

bool ScreenReader::press(const SpokenObject& object) {
    const auto answer = ask(object, actions, "GetActions").value<QDBusArgument>();
    int index = -1;
    answer.beginArray();
    for (int place = 0; !answer.atEnd(); ++place) {
        QString name;
        QString description;
        QString keys;
        answer.beginStructure();
        answer >> name >> description >> keys;
        answer.endStructure();
        // A switch may offer both; they are the same.
        if (name == "Press" || (index < 0 && name == "Toggle")) {
            index = place;
        }
    }
    answer.endArray();
    return index >= 0 && ask(object, actions, "DoAction", {index}).toBool();
}

bool ScreenReader::select(const SpokenObject& line, int start, int end) {
    return ask(line, texts, "SetSelection", {0, start, end}).toBool();
}

std::string ScreenReader::selectedText(const SpokenObject& line) {
    const QDBusMessage reply =
        bus_.call(QDBusMessage::createMethodCall(line.bus, line.path, texts, "GetSelection") << 0);
    const int start = reply.arguments().value(0).toInt();
    const int end = reply.arguments().value(1).toInt();
    return QString::fromStdString(text(line)).mid(start, end - start).toStdString();
}

std::string ScreenReader::text(const SpokenObject& line) {
    return ask(line, texts, "GetText", {0, -1}).toString().toStdString();
}

QVariant ScreenReader::property(const SpokenObject& of, const char* interface, const char* name) {
    const QVariant answer =
        ask(of, "org.freedesktop.DBus.Properties", "Get", {QString(interface), QString(name)});
    return answer.value<QDBusVariant>().variant();
}

QVariant ScreenReader::ask(const SpokenObject& of,
                           const char* interface,
                           const char* method,
                           const QVariantList& arguments) {
    auto question = QDBusMessage::createMethodCall(of.bus, of.path, interface, method);
    question.setArguments(arguments);
    return bus_.call(question).arguments().value(0);
}

std::vector<SpokenObject> ScreenReader::children(const SpokenObject& of) {
    if (!of.isThere()) {
        return {};
    }
    const auto answer = ask(of, accessible, "GetChildren").value<QDBusArgument>();
    std::vector<SpokenObject> found;
    answer.beginArray();
    while (!answer.atEnd()) {
        answer >> found.emplace_back();
    }
    answer.endArray();
    return found;
}

std::vector<SpokenObject> ScreenReader::childrenShown(const SpokenObject& of) {
    std::vector<SpokenObject> found;
    for (const SpokenObject& child : children(of)) {
        if ((states(child) & isShowing) == 0) {
            continue;
        }
        if (saysNothing(child)) {
            std::ranges::copy(childrenShown(child), std::back_inserter(found));
        } else {
            found.push_back(child);
        }
    }
    return found;
}

bool ScreenReader::saysNothing(const SpokenObject& object) {
    return ask(object, accessible, "GetRoleName") == "filler" &&
           property(object, accessible, "Name").toString().isEmpty();
}

quint64 ScreenReader::states(const SpokenObject& of) {
    const auto answer = ask(of, accessible, "GetState").value<QDBusArgument>();
    QList<uint> halves;
    answer >> halves;
    return halves.size() < 2 ? 0 : halves[0] | quint64(halves[1]) << 32U;
}

bool ScreenReader::has(const SpokenObject& object, const char* interface) {
    return ask(object, accessible, "GetInterfaces").toStringList().contains(interface);
}

} // namespace velmora
