#include "ui/window/WindowTest.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

class Menus : public WindowTest {
protected:
    [[nodiscard]] std::vector<std::string> mixed() const {
        std::vector<std::string> names;
        for (const AudioSource& source : scene.engine.sources()) {
            names.push_back(source.name());
        }
        return names;
    }
    /// The rows of the open menu that are marked.
    [[nodiscard]] QStringList marks() {
        QStringList names;
        for (QQuickItem* row : visibleItems(window(), [](QQuickItem& item) {
                 return spokenRole(item) == QAccessible::MenuItem && spokenState(item).checked;
             })) {
            names.push_back(spokenName(*row));
        }
        names.sort();
        return names;
    }
    void openChooser() {
        open();
        click("addSource");
        click(QString::fromUtf8("Choisir une application…"));
    }
};

TEST_F(Menus, TheAddMenuAddsTheChosenSourceAndCloses) {
    openWithBrowser();
    click("addSource");
    click("Music Player");
    EXPECT_EQ(mixed(), (std::vector<std::string>{"Web Browser", "Music Player"}));
    EXPECT_FALSE(isShown("Microphone"));
    EXPECT_EQ(focused(), "Ajouter une source");
}

TEST_F(Menus, MarkThePrimarySourceAndWhatIsInTheMix) {
    scene.engine.add(scene.browser);
    scene.engine.add(scene.player);
    open();
    click("sourcePicker");
    EXPECT_EQ(marks(), QStringList{"Web Browser"});
    key(Qt::Key_Escape);
    click("addSource");
    EXPECT_EQ(marks(), (QStringList{"Music Player", "Web Browser"}));
}

TEST_F(Menus, ThePickersMenuReplacesThePrimarySource) {
    openWithBrowser();
    click("sourcePicker");
    click("Music Player");
    EXPECT_EQ(mixed(), std::vector<std::string>{"Music Player"});
    EXPECT_EQ(textOf("caption"), "Music Player");
}

TEST_F(Menus, ThePickerInvitesToChooseWhileThereIsNoSource) {
    open();
    EXPECT_EQ(textOf("caption"), "Choisir une source");
    settings.setLanguage("en");
    EXPECT_EQ(textOf("caption"), "Choose a source");
}

TEST_F(Menus, ThePickersArrowTurnsWhileItsMenuIsOpen) {
    open();
    const auto turned = [this](const char* picker) {
        advance(200ms);
        const auto arrows = visibleItems(
            find(picker), [](QQuickItem& item) { return item.property("name") == "chevron.down"; });
        return arrows.size() == 1 ? arrows.front()->rotation() : -1;
    };
    for (const char* picker : {"sourcePicker", "presetPicker"}) {
        EXPECT_EQ(turned(picker), 0);
        click(picker);
        EXPECT_EQ(turned(picker), 180);
        key(Qt::Key_Escape);
        EXPECT_EQ(turned(picker), 0);
    }
}

TEST_F(Menus, AreRebuiltWhenOpened) {
    open();
    click("addSource");
    key(Qt::Key_Escape);
    machine.startApplication(4800, "Newcomer", "org.newcomer");
    machine.sound.play(4800, silence());
    click("addSource");
    EXPECT_TRUE(isShown("Newcomer"));
}

TEST_F(Menus, ADevicesChannelsUnfoldInPlace) {
    open();
    click("addSource");
    EXPECT_FALSE(isShown("Entrées 3-4"));
    type("Int");
    key(Qt::Key_Right);
    EXPECT_TRUE(isShown("Appareil entier"));
    for (int row = 0; row < 3; ++row) {
        key(Qt::Key_Down); // past the whole device and its first two channels
    }
    key(Qt::Key_Return);
    ASSERT_EQ(scene.engine.sources().size(), 1U);
    EXPECT_EQ(scene.engine.sources().front(), scene.interfaceInputs);
}

TEST_F(Menus, AreAsHighAsTheirEntriesNeedWhateverTheWindowsHeight) {
    for (int i = 1; i <= 12; ++i) {
        const std::string number = std::to_string(i);
        machine.startApplication(5000 + i, "Instrument " + number, "org.instrument" + number);
        machine.sound.play(5000 + i, silence());
    }
    open();
    window().setPosition(100, 100);
    window().resize(400, 300);
    settle();
    click("addSource");
    const auto menus = visibleItems(
        window(), [](QQuickItem& item) { return spokenRole(item) == QAccessible::PopupMenu; });
    ASSERT_EQ(menus.size(), 1U);
    EXPECT_EQ(menus.front()->height(), 380);
    EXPECT_NE(menus.front()->window(), &window());
}

TEST_F(Menus, StayOpenAndUsableWhenAMessageChangesTheWindowsHeight) {
    openWithBrowser();
    click("addSource");
    const int before = window().height();
    const QPointF entry = find("Music Player").mapToGlobal(QPointF());

    scene.engine.tell(ProblemOrigin::recall, {inWords("Something went wrong")});
    settle();
    advance(100ms); // a frame, after which the menu has followed its row

    EXPECT_GT(window().height(), before);
    EXPECT_NE(find("Music Player").mapToGlobal(QPointF()), entry);
    click("Music Player");
    EXPECT_EQ(mixed(), (std::vector<std::string>{"Web Browser", "Music Player"}));
}

TEST_F(Menus, AreWorkedByKeyboardAlone) {
    open();
    tabTo("Ajouter une source");
    key(Qt::Key_Return);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(mixed().size(), 1U);
}

TEST_F(Menus, ChoosingAnApplicationThatRunsAddsItAtOnce) {
    machine.startApplication(4900, "Video Call", "org.call");
    openChooser();
    click("confirmChoice");
    EXPECT_EQ(mixed(), std::vector<std::string>{"Video Call"});
    EXPECT_TRUE(machine.applications.launched().empty());
}

TEST_F(Menus, ChoosingAnApplicationThatDoesNotRunLaunchesItAndAddsItAfterASecondAndAHalf) {
    openChooser();
    click("confirmChoice");
    EXPECT_EQ(machine.applications.launched().size(), 1U);
    advance(1400ms);
    EXPECT_TRUE(mixed().empty());
    advance(200ms);
    EXPECT_EQ(mixed(), std::vector<std::string>{"Video Call"});
}

TEST_F(Menus, ALaunchThatFailsIsTold) {
    machine.applications.planLaunch("/apps/org.call.desktop", {});
    openChooser();
    click("confirmChoice");
    advance(2s);
    EXPECT_EQ(textOf("problemText"), "Impossible de lancer Video Call");
}

} // namespace

} // namespace velmora
