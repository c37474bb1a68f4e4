#include "presets/PresetSnapshot.h"
#include "ui/window/WindowTest.h"

using namespace std::chrono_literals;

namespace velmora {

namespace {

class Undo : public WindowTest {
protected:
    void openAndRemoveTheBrowser() {
        openWithBrowser();
        click("removeButton");
        ASSERT_TRUE(scene.engine.sources().empty());
    }
    void keep(const std::string& name) {
        scene.presets.save(snapshotPreset(scene.engine, machine.devices, name));
    }
    [[nodiscard]] bool isBack() const {
        return scene.engine.sources() == std::vector{scene.browser};
    }
    void tap(const QString& name) {
        const QQuickItem& item = find(name);
        const QPointF middle(item.width() / 2, item.height() / 2);
        const QPoint at = item.mapToScene(middle).toPoint();
        QTest::touchEvent(&window(), finger_).press(0, at, &window());
        QTest::touchEvent(&window(), finger_).release(0, at, &window());
        settle();
    }

private:
    QPointingDevice* finger_ = QTest::createTouchDevice();
};

TEST_F(Undo, IsOfferedInABarForSomeSeconds) {
    openAndRemoveTheBrowser();
    EXPECT_TRUE(isShown("undoBar"));
    EXPECT_EQ(textOf("undoText"), QString::fromUtf8("« Web Browser » retiré"));
    EXPECT_EQ(spokenRole(find("undoText")), QAccessible::AlertMessage);
    pointer().moveTo(find("sourcePicker"), {10, 10});
    advance(UndoModel::shownFor);
    EXPECT_FALSE(isShown("undoBar"));
}

TEST_F(Undo, TheBarMovesNothing) {
    scene.engine.add(scene.player);
    openWithBrowser();
    const double before = find("addSource").mapToScene({}).y();
    keep("Podcast");
    scene.model.savePreset("Podcast");
    settle();
    ASSERT_TRUE(isShown("undoBar"));
    EXPECT_EQ(find("addSource").mapToScene({}).y(), before);
}

TEST_F(Undo, ByMouse) {
    openAndRemoveTheBrowser();
    click("undoButton");
    EXPECT_TRUE(isBack());
    EXPECT_FALSE(isShown("undoBar"));
}

TEST_F(Undo, ByTouch) {
    openAndRemoveTheBrowser();
    tap("undoButton");
    EXPECT_TRUE(isBack());
}

TEST_F(Undo, ByControlZAndItsLikeness) {
    for (const auto command : {Qt::ControlModifier, Qt::MetaModifier}) {
        SCOPED_TRACE(command);
        openAndRemoveTheBrowser();
        QTest::keyClick(&window(), Qt::Key_Z, command);
        settle();
        EXPECT_TRUE(isBack());
    }
}

TEST_F(Undo, ByTabAndReturn) {
    openAndRemoveTheBrowser();
    tabTo(QString::fromUtf8("Défaire"));
    advance(1min); // it waits for whoever is on it
    key(Qt::Key_Return);
    EXPECT_TRUE(isBack());
    EXPECT_EQ(focused(), "Ajouter une source");
}

TEST_F(Undo, EscapeOnTheBarAndItsCrossPutItAway) {
    openAndRemoveTheBrowser();
    tabTo(QString::fromUtf8("Défaire"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(isShown("undoBar"));
    EXPECT_EQ(focused(), "Ajouter une source");

    scene.engine.add(scene.browser);
    settle();
    click("removeButton");
    click("dismissUndo");
    EXPECT_FALSE(isShown("undoBar"));
    QTest::keyClick(&window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(scene.engine.sources().empty());
}

TEST_F(Undo, ThePointerOnTheBarHoldsIt) {
    openAndRemoveTheBrowser();
    pointer().moveTo(find("undoText"), {5, 5});
    advance(1min);
    EXPECT_TRUE(isShown("undoBar"));
    pointer().moveTo(find("sourcePicker"), {10, 10});
    advance(UndoModel::shownFor);
    EXPECT_FALSE(isShown("undoBar"));
}

TEST_F(Undo, APresetDeletedInTheMenuReturnsIntoTheOpenMenu) {
    openWithBrowser();
    keep("Podcast");
    click("presetPicker");
    auto& row = find("Podcast");
    pointer().moveTo(row, {40, 10});
    pointer().click(within(row, "delete"));
    settle();
    ASSERT_FALSE(isShown("Podcast"));
    advance(1min); // the menu lies over the bar
    QTest::keyClick(&window(), Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_TRUE(isShown("Podcast"));
    EXPECT_EQ(scene.presets.presets().size(), 1U);
}

TEST_F(Undo, TheBarIsReachedOnceTheMenuIsClosed) {
    openWithBrowser();
    keep("Podcast");
    click("presetPicker");
    key(Qt::Key_Home);
    key(Qt::Key_Down);
    key(Qt::Key_Delete);
    ASSERT_TRUE(scene.presets.presets().empty());
    key(Qt::Key_Escape);
    click("undoButton");
    EXPECT_EQ(scene.presets.presets().size(), 1U);
}

TEST_F(Undo, ControlZInATextFieldIsTheFieldsOwn) {
    openAndRemoveTheBrowser();
    Q_EMIT scene.model.savePromptRequested();
    settle();
    ASSERT_TRUE(isShown("presetName"));
    type("Talk");
    QTest::keyClick(&window(), Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_TRUE(scene.engine.sources().empty());
    EXPECT_NE(find("presetName").property("text"), "Talk");
}

TEST_F(Undo, ControlZWorksWhileAProblemsTextHasTheFocus) {
    openWithBrowser();
    scene.engine.tell(ProblemOrigin::recall, {inWords("Lost")});
    settle();
    click("removeButton");
    click("problemText");
    QTest::keyClick(&window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(isBack());
}

TEST_F(Undo, AnEndlessNameLeavesTheButtonItsPlace) {
    scene.engine.add(AppSource{4711, std::string(300, 'W'), "org.browser"});
    open();
    click("removeButton");
    EXPECT_TRUE(find("undoText").property("truncated").toBool());
    EXPECT_EQ(window().width(), 400);
    click("undoButton");
    EXPECT_EQ(scene.engine.sources().size(), 1U);
}

} // namespace

} // namespace velmora
