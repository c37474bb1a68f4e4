// Files that the user names, in the portal's dialog and in Qt's.

#include "app/DesktopFileChooser.h"

#include "platform/desktop/BusLeave.h"
#include "platform/desktop/FakePortal.h"
#include "platform/desktop/PrivateBus.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QWindow>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

namespace velmora {
namespace {

/// A portal whose user answers as a test wants.
class AskingPortal : public QDBusVirtualObject {
public:
    explicit AskingPortal(const std::string& address)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(address), "asking-portal")) {
        EXPECT_TRUE(bus_.registerVirtualObject(portalPath, this));
        EXPECT_TRUE(bus_.registerService(portalService));
    }
    ~AskingPortal() override { leaveBus(bus_, *this, portalPath); }
    AskingPortal(const AskingPortal&) = delete;
    AskingPortal& operator=(const AskingPortal&) = delete;

    void answer(uint response, const QVariantMap& results) {
        auto signal =
            QDBusMessage::createSignal(request_, "org.freedesktop.portal.Request", "Response");
        signal << response << results;
        EXPECT_TRUE(bus_.send(signal));
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != "org.freedesktop.portal.FileChooser") {
            return false;
        }
        asked = message.member() + ": " + message.arguments().value(1).toString();
        options = qdbus_cast<QVariantMap>(message.arguments().value(2));
        const QString caller = message.service().remove(u':').replace(u'.', u'_');
        request_ = namesRequests ? portalPath + "/request/ours/1"
                                 : portalPath + "/request/" + caller + "/" +
                                       options.value("handle_token").toString();
        return connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request_))));
    }
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool namesRequests = false; // as old portals do
    QString asked;
    QVariantMap options;

private:
    QString request_;
    QDBusConnection bus_;
};

class FileChoice : public testing::Test {
protected:
    FileChoice()
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(address_.address()),
                                             "file-choice")) {}
    ~FileChoice() override { QDBusConnection::disconnectFromBus("file-choice"); }

    template <typename Condition>
    [[nodiscard]] static bool soon(const Condition& condition) {
        return QTest::qWaitFor(condition, 5000);
    }
    void askToOpen() {
        chooser->askToOpen({.title = "Import"}, [this](const QString& path) { chosen = path; });
    }
    void askToSave() {
        chooser->askToSave({.title = "Export", .suggestedName = "Podcast.json"},
                           [this](const QString& path) { chosen = path; });
    }
    /// Qt's own dialog, once it is shown.
    QFileDialog* dialog() {
        QFileDialog* found = nullptr;
        EXPECT_TRUE(soon([&] {
            found = qobject_cast<QFileDialog*>(QApplication::activeWindow());
            return found != nullptr;
        }));
        return found;
    }
    void makePortal() { portal.emplace(address_.address()); }

    SimulatedPlatform machine;
    AppSettings settings{machine.platform()};
    std::optional<QString> chosen;
    std::optional<AskingPortal> portal;
    const QTemporaryDir folder;

private:
    const PrivateBus address_;
    QDBusConnection bus_;

public:
    std::unique_ptr<DesktopFileChooser> chooser =
        std::make_unique<DesktopFileChooser>(settings, bus_);
};

TEST_F(FileChoice, ComesFromThePortal) {
    makePortal();
    askToOpen();
    ASSERT_TRUE(soon([&] { return !portal->asked.isEmpty(); }));
    EXPECT_EQ(portal->asked, "OpenFile: Import");
    portal->answer(0, {{"uris", QStringList{"file:///tmp/my%20presets.json"}}});
    ASSERT_TRUE(soon([&] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, "/tmp/my presets.json");
}

TEST_F(FileChoice, ThePortalIsToldTheSuggestedName) {
    makePortal();
    askToSave();
    ASSERT_TRUE(soon([&] { return !portal->asked.isEmpty(); }));
    EXPECT_EQ(portal->asked, "SaveFile: Export");
    EXPECT_EQ(portal->options.value("current_name"), "Podcast.json");
}

TEST_F(FileChoice, APortalMayNameTheRequestItself) {
    makePortal();
    portal->namesRequests = true;
    askToOpen();
    ASSERT_TRUE(soon([&] { return !portal->asked.isEmpty(); }));
    EXPECT_TRUE(soon([&] {
        portal->answer(0, {{"uris", QStringList{"file:///a"}}});
        return chosen.has_value();
    }));
}

TEST_F(FileChoice, ACancelledQuestionHasNoAnswer) {
    makePortal();
    askToOpen();
    ASSERT_TRUE(soon([&] { return !portal->asked.isEmpty(); }));
    portal->answer(1, {});
    portal->answer(0, {{"uris", QStringList{"file:///a"}}}); // nobody listens any more
    portal->asked.clear();
    askToOpen();
    ASSERT_TRUE(soon([&] { return !portal->asked.isEmpty(); })); // both have arrived
    EXPECT_EQ(chosen, std::nullopt);
    EXPECT_EQ(QApplication::activeWindow(), nullptr);
}

TEST_F(FileChoice, NobodyIsToldWhenTheChooserHasGone) {
    makePortal();
    askToOpen();
    ASSERT_TRUE(soon([&] { return !portal->asked.isEmpty(); }));
    chooser.reset();
    portal->answer(0, {{"uris", QStringList{"file:///a"}}});
    QCoreApplication::processEvents();
    EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(FileChoice, WithoutAPortalQtsDialogOpensAFile) {
    QFile file(folder.filePath("presets.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    settings.setLanguage("en");
    askToOpen();
    QFileDialog* const shown = dialog();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->windowTitle(), "Import");
    EXPECT_EQ(shown->labelText(QFileDialog::Reject), "Cancel");
    QTest::keyClicks(shown->findChild<QLineEdit*>(), file.fileName());
    QTest::keyClick(shown->findChild<QLineEdit*>(), Qt::Key_Return);
    ASSERT_TRUE(soon([&] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, file.fileName());
}

TEST_F(FileChoice, WithoutAPortalQtsDialogSavesUnderTheSuggestedName) {
    askToSave();
    QFileDialog* const shown = dialog();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->labelText(QFileDialog::Accept), "Enregistrer");
    auto* const name = shown->findChild<QLineEdit*>();
    EXPECT_EQ(name->text(), "Podcast.json");
    name->selectAll();
    QTest::keyClicks(name, folder.filePath("mine"));
    QTest::keyClick(name, Qt::Key_Return);
    ASSERT_TRUE(soon([&] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, folder.filePath("mine.json"));
}

TEST_F(FileChoice, APortalThatCannotShowItsDialogIsReplacedByQts) {
    makePortal();
    askToOpen();
    ASSERT_TRUE(soon([&] { return !portal->asked.isEmpty(); }));
    portal->answer(2, {});
    QFileDialog* const shown = dialog();
    ASSERT_NE(shown, nullptr);
    QTest::keyClick(shown, Qt::Key_Escape);
    EXPECT_TRUE(soon([&] { return QApplication::activeWindow() == nullptr; }));
    EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(FileChoice, APortalThatGoesBeforeItAnswersIsReplacedByQts) {
    makePortal();
    askToOpen();
    ASSERT_TRUE(soon([&] { return !portal->asked.isEmpty(); }));
    portal.reset();
    EXPECT_NE(dialog(), nullptr);
}

TEST_F(FileChoice, ASecondQuestionTakesThePlaceOfTheFirst) {
    askToOpen();
    const QPointer<QFileDialog> first = dialog();
    askToSave();
    ASSERT_TRUE(soon([&] { return first == nullptr; }));
    QFileDialog* const second = dialog();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->windowTitle(), "Export");
    EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(FileChoice, QtsDialogHasTheProgramsColours) {
    settings.setAppearance("dark");
    askToOpen();
    QFileDialog* const shown = dialog();
    ASSERT_NE(shown, nullptr);
    EXPECT_LT(shown->palette().color(QPalette::Window).lightness(), 80);
    EXPECT_GT(shown->palette().color(QPalette::Text).lightness(), 180);
}

} // namespace
} // namespace velmora
