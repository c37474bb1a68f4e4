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
    scene.engine.setLastError("Premier souci\nSecond souci");
    EXPECT_EQ(textOf("problemText"), "Premier souci\nSecond souci");
    scene.engine.setLastError(std::nullopt);
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
    std::string lines = "Souci";
    for (int i = 0; i < 30; ++i) {
        lines += "\nSouci";
    }
    scene.engine.setLastError(lines);
    EXPECT_LE(find("problemCard").height(), 160);
}

} // namespace

} // namespace velmora
