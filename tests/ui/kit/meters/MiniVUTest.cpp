#include "ui/kit/controls/Scales.h"
#include "ui/kit/meters/FrameClock.h"
#include "ui/support/QmlTest.h"

#include <QSignalSpy>
#include <random>

namespace velmora {

namespace {

using namespace std::chrono_literals;

class MiniVUTest : public QmlTest {
protected:
    double fill() { return bar.property("fill").toDouble(); }
    void setLevel(double level) { bar.setProperty("level", level); }
    bool isTicking() { return FrameClock::of(window()).isTicking(); }

    QQuickItem& bar = show("MiniVU { x: 20; y: 20; active: true }");
};

TEST_F(MiniVUTest, IsEmptyAtAThousandthAndFullAtFullScale) {
    setLevel(0.001);
    advance(100ms);
    EXPECT_EQ(fill(), 0);
    setLevel(1.0);
    advance(100ms);
    EXPECT_EQ(fill(), 54);
    setLevel(4.0);
    advance(100ms);
    EXPECT_EQ(fill(), 54);
}

TEST_F(MiniVUTest, GlidesLinearlyToANewLevel) {
    setLevel(0.1); // −20 dB: two thirds of 54 points
    advance(50ms);
    EXPECT_NEAR(fill(), 36.0 * 40 / 80, 1e-6) << "one frame of 40 ms of 80 ms";
    advance(40ms);
    EXPECT_EQ(fill(), 36);
}

TEST_F(MiniVUTest, RestsOnceItHasArrived) {
    EXPECT_FALSE(isTicking());
    setLevel(0.1);
    EXPECT_TRUE(isTicking());
    advance(200ms);
    EXPECT_FALSE(isTicking());
}

TEST_F(MiniVUTest, DrawsNoFrameForALevelThatShowsNoDifference) {
    setLevel(1.0);
    advance(200ms);
    const QSignalSpy frames(&window(), &QQuickWindow::frameSwapped);
    setLevel(2.0);
    advance(200ms);
    EXPECT_EQ(frames.count(), 0);
}

TEST_F(MiniVUTest, TakesTheLevelAtOnceWhileItIsHidden) {
    bar.setVisible(false);
    setLevel(1.0);
    EXPECT_EQ(fill(), 54);
    EXPECT_FALSE(isTicking());
}

TEST_F(MiniVUTest, StandsStillWhileItsWindowIsHidden) {
    setLevel(1.0);
    window().hide();
    settle();
    EXPECT_FALSE(isTicking());

    window().show();
    advance(200ms);
    EXPECT_EQ(fill(), 54);
}

TEST_F(MiniVUTest, GoesFromGreenToRed) {
    setLevel(1.0);
    advance(200ms);
    const QColor left = colorAt(bar, {10, 3});
    const QColor right = colorAt(bar, {51, 3});
    EXPECT_GT(left.green(), left.red());
    EXPECT_GT(right.red(), right.green());
}

TEST_F(MiniVUTest, ShowsItsTrackWhereItIsNotFilledAndWhenItIsOff) {
    const QColor track = colorAt(bar, {40, 3});
    setLevel(0.01); // −40 dB: a third of 54 points
    advance(200ms);
    EXPECT_EQ(colorAt(bar, {40, 3}), track);
    EXPECT_NE(colorAt(bar, {10, 3}), track);

    bar.setProperty("active", false);
    advance(200ms);
    EXPECT_EQ(fill(), 0);
    bar.setProperty("active", true);
    advance(200ms);
    EXPECT_EQ(fill(), 18);
}

TEST_F(MiniVUTest, LandsExactlyOnEveryLevelAndRests) {
    std::mt19937 random(1); // the same levels in every run
    std::uniform_real_distribution<double> levels(0.001, 1.0);
    for (int round = 0; round < 50; ++round) {
        const double level = levels(random);
        setLevel(level);
        advance(120ms);
        ASSERT_EQ(fill(), Scales::meterFill(level)) << level;
        ASSERT_FALSE(isTicking()) << level;
    }
}

TEST_F(MiniVUTest, RecoloursItsTrackWithTheAppearance) {
    settings.setAppearance("light");
    const QColor light = colorAt(bar, {40, 3});
    settings.setAppearance("dark");
    EXPECT_NE(colorAt(bar, {40, 3}), light);
    settings.setAppearance("light");
    EXPECT_EQ(colorAt(bar, {40, 3}), light);
}

} // namespace

} // namespace velmora
