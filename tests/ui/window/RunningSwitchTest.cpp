#include "ui/window/WindowTest.h"

namespace velmora {

namespace {

class RunningSwitch : public WindowTest {};

TEST_F(RunningSwitch, StartsAndStopsTheMix) {
    openWithBrowser();
    click("runningSwitch");
    EXPECT_TRUE(scene.engine.isRunning());
    EXPECT_TRUE(isChecked("runningSwitch"));
    click("runningSwitch");
    EXPECT_FALSE(scene.engine.isRunning());
    EXPECT_FALSE(isChecked("runningSwitch"));
}

TEST_F(RunningSwitch, FollowsAMixThatSomebodyElseStops) {
    openWithBrowser();
    scene.engine.start();
    EXPECT_TRUE(isChecked("runningSwitch"));
    scene.engine.stop();
    EXPECT_FALSE(isChecked("runningSwitch"));
}

TEST_F(RunningSwitch, StaysOffWhenTheStartFailsAndTheReasonIsShown) {
    open();
    EXPECT_FALSE(isShown("problemCard"));
    click("runningSwitch");
    EXPECT_FALSE(isChecked("runningSwitch"));
    EXPECT_EQ(textOf("problemText"), "Choisir d'abord une source");
}

TEST_F(RunningSwitch, TheReasonGoesWhenTheEngineClearsIt) {
    open();
    scene.engine.tell(ProblemOrigin::recall, {inWords("Premier souci"), inWords("Second souci")});
    EXPECT_EQ(textOf("problemText"), "Premier souci\nSecond souci");
    scene.engine.tell(ProblemOrigin::recall, {});
    EXPECT_FALSE(isShown("problemCard"));
}

TEST_F(RunningSwitch, WorksByKeyboard) {
    openWithBrowser();
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), spokenName(find("runningSwitch")));
    key(Qt::Key_Space);
    EXPECT_TRUE(scene.engine.isRunning());
}

TEST_F(RunningSwitch, ManyReasonsScroll) {
    open();
    scene.engine.tell(ProblemOrigin::recall, std::vector(31, inWords("Souci")));
    EXPECT_LE(find("problemCard").height(), 160);
}

TEST_F(RunningSwitch, TheReasonCanBePutAwayByMouseAndByKeyboard) {
    open();
    for (const bool byMouse : {true, false}) {
        scene.engine.start(); // without a source
        ASSERT_TRUE(isShown("problemCard"));
        if (byMouse) {
            click("dismissProblems");
        } else {
            find("dismissProblems").forceActiveFocus();
            key(Qt::Key_Space);
        }
        EXPECT_FALSE(isShown("problemCard"));
    }
}

TEST_F(RunningSwitch, AReasonThatStillHoldsCannotBePutAway) {
    open();
    machine.sound.loseService();
    machine.advance(std::chrono::milliseconds{10});
    EXPECT_TRUE(isShown("problemCard"));
    EXPECT_FALSE(isShown("dismissProblems"));
}

TEST_F(RunningSwitch, ACopyOfLostSettingsIsTakenBackByAClickOrTheKeyboard) {
    open();
    for (const bool isClicked : {true, false}) {
        machine.defaults.offerCopy("2025-03-14", {{"volume", 0.5}});
        settle();
        ASSERT_TRUE(isShown("actOnProblem"));
        EXPECT_EQ(textOf("actOnProblem"), "Reprendre la copie");

        if (isClicked) {
            click("actOnProblem");
        } else {
            find("actOnProblem").forceActiveFocus();
            key(Qt::Key_Space);
        }

        EXPECT_FALSE(isShown("actOnProblem"));
        EXPECT_TRUE(textOf("problemText").contains("Relance Velmora"));
        EXPECT_EQ(machine.defaults.kept().at("volume"), DefaultsValue(0.5));
    }
}

} // namespace

} // namespace velmora
