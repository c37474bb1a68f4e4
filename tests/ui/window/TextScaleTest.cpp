// The window on a desktop whose user wants larger texts.

#include "ui/window/WindowTest.h"

#include <QRectF>

namespace velmora {

namespace {

class TextScale : public WindowTest {
protected:
    void ask(double scale) { machine.appearance.setLook({.textScale = scale}); }
    static QRectF placeOf(QQuickItem& item) { return item.mapRectToScene(item.boundingRect()); }
};

TEST_F(TextScale, MultipliesTypeAndMeasuresAlikeAndBackWhileTheWindowIsOpen) {
    scene.mixPodcast();
    open();
    const QSize size = window().size();
    const QRectF name = placeOf(find("sourceName"));
    const QRectF fader = placeOf(find("gainFader"));

    ask(1.5);
    settle();
    EXPECT_EQ(window().size(), QSize(600, (size.height() * 3 + 1) / 2));
    EXPECT_NEAR(placeOf(find("sourceName")).height(), 1.5 * name.height(), 0.01);
    EXPECT_NEAR(placeOf(find("gainFader")).width(), 1.5 * fader.width(), 0.01);
    EXPECT_NEAR(placeOf(find("gainFader")).top(), 1.5 * fader.top(), 0.01);
    ask(4);
    settle();
    EXPECT_EQ(window().width(), 600);
    ask(1);
    settle();
    EXPECT_EQ(window().size(), size);
}

TEST_F(TextScale, LeavesEveryControlWhereItIsPressed) {
    ask(1.5);
    openWithBrowser();
    drag(trackOf(find("gainFader")), 0.5);
    EXPECT_NEAR(decibels(gain()), -27, 0.5);
    click("effectsButton");
    EXPECT_TRUE(isShown("effectsPanel"));
}

TEST_F(TextScale, GivesMenusTheSameSize) {
    ask(1.5);
    openWithBrowser();
    click("addSource");
    QQuickItem& row = find("Music Player");
    EXPECT_NEAR(placeOf(row).height(), 1.5 * 28, 0.01);
    EXPECT_GE(row.window()->width(), 1.5 * 368);
    click("Music Player");
    EXPECT_EQ(scene.engine.sources().size(), 2U);
}

TEST_F(TextScale, KeepsTheWindowOnTheScreen) {
    scene.mixMany(12);
    open(900);
    ask(1.5);
    settle();
    EXPECT_LE(window().height(), 900);
    EXPECT_TRUE(find("strips").property("scrolls").toBool());
    EXPECT_LE(placeOf(find("quitRow")).bottom(), window().height());
}

TEST_F(TextScale, DrawsNothingFromFewerPixelsThanItCovers) {
    ask(1.5);
    openWithBrowser();
    for (QQuickItem* item : visibleItems(*window().contentItem(), [](QQuickItem& one) {
             return one.inherits("QQuickImage");
         })) {
        const QSize pixels = item->property("sourceSize").toSize();
        EXPECT_GE(pixels.width() + 0.5, 1.5 * item->width()) << item->metaObject()->className();
        EXPECT_GE(pixels.height() + 0.5, 1.5 * item->height()) << item->metaObject()->className();
    }
}

} // namespace

} // namespace velmora
