#include "platform/desktop/DesktopNotices.h"

#include "platform/desktop/NoticeBoard.h"
#include "platform/desktop/PrivateBus.h"
#include "platform/qt/QtEventLoop.h"

#include <QList>
#include <QStringList>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::ElementsAre;

class DesktopNoticesTest : public testing::Test {
protected:
    [[nodiscard]] bool shows(qsizetype count) {
        return loop.runUntil([&] { return desktop.shown.size() >= count; });
    }

    QtEventLoop loop;
    PrivateBus bus;
    NoticeBoard desktop{bus.address()};
    DesktopNotices notices{bus.address()};
};

TEST_F(DesktopNoticesTest, AreShownForAMomentAndLeaveNothingBehind) {
    notices.show("Effets contournés");

    ASSERT_TRUE(shows(1));
    EXPECT_EQ(desktop.shown.first(), "Effets contournés");
    EXPECT_EQ(desktop.hints.value("transient"), true);
}

TEST_F(DesktopNoticesTest, EachTakesThePlaceOfTheOneBeforeAndOnlyTheLatestWaits) {
    desktop.answersItself = false;
    notices.show("one");
    ASSERT_TRUE(shows(1));
    notices.show("two");
    notices.show("three");
    desktop.answer(7);

    ASSERT_TRUE(shows(2));
    EXPECT_THAT(desktop.shown, ElementsAre(QString("one"), QString("three")));
    EXPECT_THAT(desktop.replaced, ElementsAre(0U, 7U));
}

TEST(DesktopNotices, CostNothingWithoutABus) {
    const QtEventLoop loop;
    DesktopNotices notices("unix:path=/nowhere/bus");

    notices.show("unseen");
}

} // namespace
} // namespace velmora
