#include "app/FakePanel.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <gtest/gtest.h>

namespace velmora {
namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString busName = QStringLiteral("fake-panel");

std::string joined(const QVariant& shortcut) {
    std::string text;
    const auto argument = shortcut.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QStringList keys;
        argument >> keys;
        text += (text.empty() ? "" : " ") + keys.join('+').toStdString();
    }
    argument.endArray();
    return text;
}

PanelMenuEntry parseEntry(const QDBusArgument& argument) {
    PanelMenuEntry entry;
    QVariantMap properties;
    QVariantList children;
    argument.beginStructure();
    argument >> entry.id >> properties >> children;
    argument.endStructure();
    entry.label = properties.value("type").toString() == "separator"
                      ? "-"
                      : properties.value("label").toString().toStdString();
    if (properties.contains("shortcut")) {
        entry.shortcut = joined(properties.value("shortcut"));
    }
    return entry;
}

} // namespace

FakePanel::FakePanel(const std::string& busAddress, bool hasHost)
    : bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), busName)) {
    watcher_.setHost(hasHost);
    EXPECT_TRUE(bus_.registerObject(
        "/StatusNotifierWatcher", &watcher_, QDBusConnection::ExportAllContents));
    EXPECT_TRUE(bus_.registerService(watcherName));
}

FakePanel::~FakePanel() {
    bus_.unregisterService(watcherName);
    QDBusConnection::disconnectFromBus(busName);
}

QVariant FakePanel::property(const QString& name) const {
    auto question =
        QDBusMessage::createMethodCall(item(), itemPath, "org.freedesktop.DBus.Properties", "Get");
    question << itemInterface << name;
    const QDBusMessage answer = bus_.call(question);
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

std::string FakePanel::iconName() const {
    return property("IconName").toString().toStdString();
}

std::string FakePanel::toolTip() const {
    const auto argument = property("ToolTip").value<QDBusArgument>();
    QString icon;
    QString title;
    argument.beginStructure();
    argument >> icon;
    argument.beginArray(); // its pictures
    while (!argument.atEnd()) {
        argument.beginStructure();
        int width = 0;
        int height = 0;
        QByteArray pixels;
        argument >> width >> height >> pixels;
        argument.endStructure();
    }
    argument.endArray();
    argument >> title;
    return title.toStdString();
}

std::vector<FakePanel::Picture> FakePanel::pictures() const {
    std::vector<Picture> pictures;
    const auto argument = property("IconPixmap").value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        Picture picture;
        argument.beginStructure();
        argument >> picture.width >> picture.height >> picture.pixels;
        argument.endStructure();
        pictures.push_back(picture);
    }
    argument.endArray();
    return pictures;
}

QString FakePanel::menuPath() const {
    return property("Menu").value<QDBusObjectPath>().path();
}

std::vector<PanelMenuEntry> FakePanel::menu() const {
    auto question = QDBusMessage::createMethodCall(item(), menuPath(), menuInterface, "GetLayout");
    question << 0 << -1 << QStringList{};
    const QDBusMessage answer = bus_.call(question);
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
    const auto root = answer.arguments().value(1).value<QDBusArgument>();
    int id = 0;
    QVariantMap properties;
    QVariantList children;
    root.beginStructure();
    root >> id >> properties >> children;
    root.endStructure();
    std::vector<PanelMenuEntry> entries;
    for (const QVariant& child : children) {
        entries.push_back(parseEntry(child.value<QDBusArgument>()));
    }
    return entries;
}

void FakePanel::choose(const std::string& label) const {
    for (const PanelMenuEntry& entry : menu()) {
        if (entry.label == label) {
            auto event = QDBusMessage::createMethodCall(item(), menuPath(), menuInterface, "Event");
            event << entry.id << QStringLiteral("clicked")
                  << QVariant::fromValue(QDBusVariant(QString{})) << 0U;
            bus_.send(event);
            return;
        }
    }
    ADD_FAILURE() << "the menu has no " << label;
}

void FakePanel::click() const {
    auto activation = QDBusMessage::createMethodCall(item(), itemPath, itemInterface, "Activate");
    activation << 0 << 0;
    bus_.send(activation);
}

void FakePanel::watchIcon() {
    watcher_.newIcons = 0;
    EXPECT_TRUE(
        bus_.connect(item(), itemPath, itemInterface, "NewIcon", &watcher_, SLOT(countIcon())));
}

} // namespace velmora
