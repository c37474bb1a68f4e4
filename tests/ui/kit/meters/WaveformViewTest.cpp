#include "ui/kit/meters/WaveformView.h"

#include "ui/kit/meters/FrameClock.h"
#include "ui/kit/meters/WaveformShape.h"
#include "ui/support/QmlTest.h"

#include <QSignalSpy>
#include <cmath>
#include <numbers>
#include <vector>

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t places = 368;

TEST(WaveformShape, StaysWithinItsBoundsAndEndsFlat) {
    WaveformShape shape;
    shape.setPlaces(places);

    for (const std::size_t line : {0U, 1U}) {
        for (double seconds = 0; seconds < 60; seconds += 0.37) {
            const auto& heights = shape.heights(line, seconds);
            ASSERT_EQ(heights.size(), places);
            for (const double height : heights) {
                ASSERT_LE(std::abs(height), 1.0);
            }
            // sin² of half a place from the edge
            ASSERT_NEAR(heights.front(), 0, 2e-5);
            ASSERT_NEAR(heights.back(), 0, 2e-5);
        }
    }
}

TEST(WaveformShape, IsTheSumOfItsSines) {
    using std::numbers::pi;
    constexpr double seconds = 12.3;
    WaveformShape shape;
    shape.setPlaces(places);
    const auto& heights = shape.heights(1, seconds);

    for (std::size_t place = 0; place < places; ++place) {
        const double x = (double(place) + 0.5) / places;
        const double sum = 0.50 * std::sin(2 * pi * (2.2 * x - 0.09 * seconds + 1)) +
                           0.35 * std::sin(2 * pi * (3.7 * x + 0.14 * seconds + 1)) +
                           0.15 * std::sin(2 * pi * (6.1 * x - 0.20 * seconds + 1));
        ASSERT_NEAR(heights[place], sum * std::pow(std::sin(pi * x), 2), 1e-12);
    }
}

TEST(WaveformShape, MovesSlowly) {
    WaveformShape shape;
    shape.setPlaces(places);
    const std::vector<double> now = shape.heights(0, 1.0);
    const std::vector<double> soon = shape.heights(0, 1.033); // one frame
    const std::vector<double> later = shape.heights(0, 1.5);

    for (std::size_t place = 40; place < places; place += 40) {
        EXPECT_NE(now[place], later[place]);
        EXPECT_NEAR(now[place], soon[place], 0.05);
    }
}

class WaveformViewTest : public QmlTest {
protected:
    int framesIn(std::chrono::milliseconds duration) {
        const QSignalSpy frames(&window(), &QQuickWindow::frameSwapped);
        advance(duration);
        return int(frames.count());
    }

    QQuickItem& view = show("WaveformView { width: 368; height: 28 }");
};

TEST_F(WaveformViewTest, DrawsAtMostTwentyFiveFramesASecond) {
    const int frames = framesIn(990ms);
    EXPECT_GE(frames, 20);
    EXPECT_LE(frames, 26);
}

TEST_F(WaveformViewTest, ChangesItsPictureAndFadesAtBothEnds) {
    const QImage before = grab();
    advance(500ms);
    EXPECT_NE(grab(), before);

    const auto hasInkAt = [&](double x) {
        for (int y = 0; y < 28; ++y) {
            if (colorAt(view, {x, double(y)}).red() < 0x80) {
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(hasInkAt(184));
    EXPECT_FALSE(hasInkAt(1));
    EXPECT_FALSE(hasInkAt(367));
}

TEST_F(WaveformViewTest, DrawsNoFrameWhileItIsNotShown) {
    view.setVisible(false);
    settle();
    EXPECT_FALSE(FrameClock::of(window()).isTicking());
    EXPECT_EQ(framesIn(500ms), 0);

    view.setVisible(true);
    EXPECT_GT(framesIn(500ms), 0);
}

TEST_F(WaveformViewTest, DrawsNoFrameWhileItsWindowIsHiddenOrMinimised) {
    window().hide();
    settle();
    EXPECT_EQ(framesIn(500ms), 0);

    window().showMinimized();
    settle();
    EXPECT_FALSE(FrameClock::of(window()).isTicking());
    EXPECT_EQ(framesIn(500ms), 0);

    window().showNormal();
    settle();
    EXPECT_GT(framesIn(500ms), 0);
}

TEST_F(WaveformViewTest, RestsWithinFiveSecondsOfAStopAndDriftsAgainAtAStart) {
    view.setProperty("running", false);
    EXPECT_GT(framesIn(1s), 0);
    advance(4s);
    EXPECT_FALSE(FrameClock::of(window()).isTicking());
    EXPECT_EQ(framesIn(1s), 0);

    view.setProperty("running", true);
    advance(6s);
    EXPECT_GT(framesIn(1s), 0);
}

TEST_F(WaveformViewTest, StandsStillWhereNothingShallMove) {
    view.setProperty("still", true);
    EXPECT_FALSE(FrameClock::of(window()).isTicking());
    const QImage before = grab();
    EXPECT_EQ(framesIn(500ms), 0);
    EXPECT_EQ(grab(), before);

    view.setProperty("still", false);
    EXPECT_GT(framesIn(500ms), 0);
}

TEST_F(WaveformViewTest, TheClockOfAWindowThatIsClosedStops) {
    ASSERT_TRUE(FrameClock::of(window()).isTicking());

    window().close();
    EXPECT_FALSE(FrameClock::of(window()).isTicking());

    window().show();
    settle();
    EXPECT_TRUE(FrameClock::of(window()).isTicking());
}

} // namespace

} // namespace velmora
