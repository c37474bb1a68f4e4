// The window under fingers, which hover over nothing.

#include "ui/support/Readability.h"
#include "ui/window/WindowTest.h"

namespace velmora {

namespace {

using Touch = WindowTest;

TEST_F(Touch, DeletesAPresetInTheMenu) {
    scene.mixPodcast();
    open();
    tap(find("presetPicker"));
    tap(find(QString::fromUtf8("Supprimer — Podcast")));
    EXPECT_TRUE(scene.presets.presets().empty());
}

TEST_F(Touch, ShowsTheCrossesOfAMenuUntilTheMouseIsBack) {
    scene.mixPodcast();
    open();
    tap(find("presetPicker"));
    EXPECT_TRUE(isShown("delete"));
    key(Qt::Key_Escape);
    click("presetPicker");
    EXPECT_FALSE(isShown("delete"));
}

TEST_F(Touch, MovesAFaderOpensEffectsAndChooses) {
    openWithBrowser();
    QQuickItem& fader = trackOf(find("gainFader"));
    tap(fader);
    EXPECT_NEAR(decibels(gain()), -27, 0.5);
    tap(find("effectsButton"));
    EXPECT_TRUE(isShown("effectsPanel"));
    tap(find("addSource"));
    tap(find("Music Player"));
    EXPECT_EQ(scene.engine.sources().size(), 2U);
}

TEST_F(Touch, LeavesAFaderWhereTheFingerWasWhereverTheMouseIs) {
    openWithBrowser();
    QQuickItem& fader = trackOf(find("gainFader"));
    QTest::mouseMove(&window(), fader.mapToScene({fader.width() - 1, -20}).toPoint());
    tap(fader);
    EXPECT_NEAR(decibels(gain()), -27, 0.5);
}

TEST_F(Touch, FindsTargetsOfTwentyFourPointsAtLeastEverywhere) {
    scene.mixPodcast();
    scene.engine.tell(ProblemOrigin::recall, {inWords("Un souci\nsur deux lignes")});
    open();
    click("effectsButton");
    for (const char* row : {"compTitle", "reverbTitle", "tiltTitle", "gainTitle"}) {
        click(row);
        expectTargets(*window().contentItem());
    }
    tap(find("presetPicker"));
    expectTargets(*find("Podcast").window()->contentItem());
    EXPECT_GE(find("Podcast").height(), 24);
    key(Qt::Key_Escape);
    Q_EMIT scene.model.savePromptRequested();
    settle();
    expectTargets(find("savePrompt"));
    key(Qt::Key_Escape);
    scene.model.openExtraMenu()->activate(0);
    settle();
    expectTargets(find("chooser"));
}

} // namespace

} // namespace velmora
