#include "ui/window/WindowTest.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

class WindowSize : public WindowTest {
protected:
    /// Where an item stands in the window, in points.
    QRectF placeOf(QQuickItem& item) { return item.mapRectToScene(item.boundingRect()); }
    bool isInside(QQuickItem& item) {
        return QRectF(0, 0, window().width(), window().height()).contains(placeOf(item));
    }
};

TEST_F(WindowSize, IsThatOfTheContent) {
    open();
    const int empty = window().height();
    scene.engine.add(scene.browser);
    settle();
    EXPECT_EQ(window().width(), 400);
    EXPECT_GT(window().height(), empty + 60);
    scene.engine.remove(scene.browser);
    settle();
    EXPECT_EQ(window().height(), empty);
}

TEST_F(WindowSize, NeverGrowsBeyondTheScreen) {
    scene.mixMany(12);
    open(700);
    EXPECT_EQ(window().height(), 700);
    EXPECT_TRUE(isInside(find("quitRow")));
    EXPECT_TRUE(isInside(find("runningSwitch")));
}

TEST_F(WindowSize, AHeightThatTheUserChoseIsKeptUntilItIsPulledToTheWhole) {
    scene.mixMany(3);
    open();
    const int whole = window().height();
    window().resize(400, whole - 30);
    settle();

    scene.engine.add(scene.player);
    settle();
    EXPECT_EQ(window().height(), whole - 30);
    EXPECT_TRUE(isInside(find("quitRow")));

    window().resize(400, window().maximumHeight());
    settle();
    scene.engine.add(scene.interfaceInputs);
    settle();
    EXPECT_EQ(window().height(), window().maximumHeight());
    EXPECT_GT(window().height(), whole + 100);
}

TEST_F(WindowSize, AChosenHeightGivesWayToLessContentAndComesBack) {
    scene.mixMany(4);
    open();
    const int chosen = window().height() - 20;
    window().resize(400, chosen);
    settle();
    const auto sources = scene.engine.sources();
    scene.engine.remove(sources.front());
    settle();
    EXPECT_LT(window().height(), chosen);
    scene.engine.add(sources.front());
    settle();
    EXPECT_EQ(window().height(), chosen);
}

TEST_F(WindowSize, WhereNobodyKnowsItsPlaceItGrowsAsFarAsFromTheMiddle) {
    open(700);
    window().setProperty("placedUnseen", true);
    const int placed = window().height();
    scene.mixMany(12);
    settle();
    EXPECT_EQ(window().height(), (700 + placed) / 2);
    EXPECT_TRUE(isInside(find("quitRow")));

    window().hide(); // what is shown again has a new place
    settle();
    window().show();
    settle();
    EXPECT_EQ(window().height(), 700);
}

TEST_F(WindowSize, WhereNobodyKnowsItsPlaceTheUserPullsItToTheWhole) {
    open(700);
    window().setProperty("placedUnseen", true);
    scene.mixMany(12);
    settle();
    window().resize(400, 700);
    settle();
    scene.engine.add(scene.browser);
    settle();
    EXPECT_EQ(window().height(), 700);
}

TEST_F(WindowSize, ManyStripsScrollByWheelBetweenTopAndBottom) {
    scene.mixMany(12);
    open(700);
    auto& strips = find("strips");
    pointer().wheel(find("sourceName"), {0, -1200});
    advance(2s);
    EXPECT_GT(strips.property("contentY").toDouble(), 100);
    EXPECT_TRUE(isInside(find("quitRow")));
}

TEST_F(WindowSize, StripsThatAreScrolledOutLeaveNoTraceBelowTheList) {
    scene.mixMany(12);
    open(700);
    constexpr double withinGap = 5;     // points, of the ten between cards
    constexpr double belowLevels = 250; // from the left
    for (const char* card : {"strips", "addSource", "presetFiles", "quitRow"}) {
        const double y = placeOf(find(card)).bottom() + withinGap;
        EXPECT_EQ(colorAt(*window().contentItem(), {belowLevels, y}), window().color()) << card;
    }
    const double row = placeOf(find("addSource")).center().y();
    EXPECT_EQ(colorAt(*window().contentItem(), {belowLevels, row}), window().color());
}

TEST_F(WindowSize, AMarkShowsThatThereIsMoreAndHowFarItIs) {
    openWithBrowser();
    EXPECT_FALSE(isShown("scrollMark"));
    scene.mixMany(12);
    window().setProperty("tallest", 700);
    auto& mark = within(find("strips"), "scrollMark");
    const double before = placeOf(mark).top();
    pointer().wheel(find("sourceName"), {0, -1200});
    advance(2s);
    EXPECT_GT(placeOf(mark).top(), before + 10);
}

TEST_F(WindowSize, TheKeyboardBringsHiddenStripsIntoView) {
    scene.mixMany(12);
    open(700);
    tabTo(QString::fromUtf8("Retirer — Instrument 12"));
    QQuickItem& button = *window().activeFocusItem();
    auto& strips = find("strips");
    EXPECT_TRUE(placeOf(strips).contains(placeOf(button)));
    tabTo(QString::fromUtf8("Couper le son — Instrument 1"));
    EXPECT_TRUE(placeOf(strips).contains(placeOf(*window().activeFocusItem())));
}

TEST_F(WindowSize, TheMarkCanBeDragged) {
    scene.mixMany(12);
    open(700);
    auto& strips = find("strips");
    auto& mark = within(strips, "scrollMark");
    pointer().press(mark, {mark.width() / 2, 10});
    pointer().moveTo(mark, {mark.width() / 2, 40});
    settle();
    const double moved = strips.property("contentY").toDouble();
    const double hidden = strips.property("contentHeight").toDouble() - strips.height();
    EXPECT_NEAR(moved, 30 / (strips.height() - mark.height()) * hidden, 1);
    pointer().moveTo(strips, {strips.width() - 8, 3000});
    pointer().release();
    settle();
    EXPECT_NEAR(strips.property("contentY").toDouble(), hidden, 1);
}

TEST_F(WindowSize, AnAddedStripComesIntoViewWhole) {
    scene.mixMany(12);
    open(700);
    scene.engine.add(scene.browser);
    advance(100ms);
    EXPECT_TRUE(placeOf(find("strips")).contains(placeOf(find("strip12"))));
}

TEST_F(WindowSize, ManyStripsAddedAtOnceBeginAtTheFirst) {
    open(700);
    scene.mixMany(12);
    advance(100ms);
    EXPECT_EQ(find("strips").property("contentY"), 0.0);
}

TEST_F(WindowSize, AnOpenedEffectsPanelComesIntoViewWhole) {
    scene.mixMany(12);
    open(1000);
    auto& strips = find("strips");
    QQuickItem* last = nullptr;
    for (int i = 0; i < 12; ++i) {
        QQuickItem& strip = find(QString("strip%1").arg(i));
        last = placeOf(strips).contains(placeOf(strip)) ? &strip : last;
    }
    ASSERT_NE(last, nullptr);
    const double before = placeOf(*last).top();
    pointer().click(within(*last, "effectsButton"));
    advance(100ms);
    EXPECT_TRUE(placeOf(strips).contains(placeOf(*last)));
    EXPECT_LT(placeOf(*last).top(), before);
}

TEST_F(WindowSize, AnOpenedEffectComesIntoViewAlsoWhereThePanelIsHigherThanItsPlace) {
    scene.mixMany(12);
    open(700);
    pointer().click(within(find("strip0"), "effectsButton"));
    advance(100ms);
    find("strips").setProperty("contentY", 1000);
    find("gainTitle").forceActiveFocus();
    advance(100ms);
    click("gainTitle");
    advance(100ms);
    EXPECT_TRUE(placeOf(find("strips")).contains(placeOf(find("gainRow"))));
}

TEST_F(WindowSize, ControlAndArrowsGoFromStripToStripAtTheSameControl) {
    scene.mixMany(12);
    open(700);
    tabTo(QString::fromUtf8("Effets — Instrument 1"));
    key(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(focused(), QString::fromUtf8("Effets — Instrument 2"));
    key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(focused(), QString::fromUtf8("Effets — Instrument 12"));
    EXPECT_TRUE(placeOf(find("strips")).contains(placeOf(*window().activeFocusItem())));
    key(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(focused(), "Ajouter une source");
    key(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(focused(), QString::fromUtf8("Couper le son — Instrument 12"));
    key(Qt::Key_Home, Qt::ControlModifier);
    key(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(focused(), "Choisir une source");
}

TEST_F(WindowSize, ControlAndArrowsLeaveAFaderAsItIs) {
    scene.mixMany(2);
    open();
    tabTo(QString::fromUtf8("Gain — Instrument 1"));
    key(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(focused(), QString::fromUtf8("Gain — Instrument 2"));
    for (const AudioSource& source : scene.engine.sources()) {
        EXPECT_EQ(scene.engine.gain(source), 1.0F);
    }
}

TEST_F(WindowSize, OnAVerySmallScreenTheWholePageScrolls) {
    scene.mixMany(3);
    open(320);
    EXPECT_EQ(window().height(), 320);
    EXPECT_FALSE(isInside(find("quitRow")));
    tabTo("Quitter Velmora");
    EXPECT_TRUE(isInside(find("quitRow")));
}

class Frames : public WindowTest {
protected:
    int framesIn(std::chrono::milliseconds duration) {
        int frames = 0;
        const auto count = QObject::connect(
            &window(),
            &QQuickWindow::afterRendering,
            &window(),
            [&] { ++frames; },
            Qt::DirectConnection);
        advance(duration);
        QObject::disconnect(count);
        return frames;
    }
};

TEST_F(Frames, AreDrawnWhileTheWindowIsSeen) {
    scene.mixPodcast();
    open();
    scene.engine.start();
    EXPECT_GT(framesIn(500ms), 0);
}

TEST_F(Frames, AreNotDrawnWhileTheWindowIsHidden) {
    scene.mixPodcast();
    open();
    scene.engine.start();
    advance(100ms);
    window().hide();
    settle();
    EXPECT_EQ(framesIn(500ms), 0);
    EXPECT_FALSE(scene.model.visible());
}

TEST_F(Frames, AreNotDrawnWhileTheWindowIsMinimised) {
    scene.mixPodcast();
    open();
    scene.engine.start();
    advance(500ms); // the running switch has glided to its place
    window().showMinimized();
    settle();
    EXPECT_EQ(framesIn(500ms), 0);
    EXPECT_FALSE(scene.model.visible());
    window().showNormal();
    settle();
    EXPECT_TRUE(scene.model.visible());
}

} // namespace

} // namespace velmora
