#include "platform/desktop/DesktopShortcuts.h"

#include "platform/desktop/PrivateBus.h"
#include "platform/desktop/ShortcutsPortal.h"
#include "platform/qt/QtEventLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using State = GlobalShortcuts::State;

class DesktopShortcutsTest : public testing::Test {
protected:
    void makePortal() { portal.emplace(bus.address()); }
    void makeShortcuts() { shortcuts = std::make_unique<DesktopShortcuts>(bus.address()); }
    void bind() {
        shortcuts->bind({{"talk", "Parler", "CTRL+LOGO+t"}, {"mute", "Couper", "CTRL+LOGO+m"}},
                        [this](const std::string& id, bool isPressed) {
                            told.push_back(id + (isPressed ? " pressed" : " released"));
                        });
    }
    [[nodiscard]] bool becomes(State state) {
        return loop.runUntil([&] { return shortcuts->state() == state; });
    }
    void makeBound() {
        makePortal();
        makeShortcuts();
        ASSERT_TRUE(becomes(State::unused));
        bind();
        ASSERT_TRUE(becomes(State::bound));
    }
    [[nodiscard]] bool tells(std::size_t count) {
        return loop.runUntil([&] { return told.size() >= count; });
    }

    QtEventLoop loop;
    PrivateBus bus;
    std::optional<ShortcutsPortal> portal;
    std::unique_ptr<DesktopShortcuts> shortcuts;
    std::vector<std::string> told;
};

TEST_F(DesktopShortcutsTest, AreThereWhereThePortalHasThem) {
    makePortal();
    makeShortcuts();

    EXPECT_EQ(shortcuts->state(), State::unavailable);
    EXPECT_TRUE(becomes(State::unused));
    EXPECT_THAT(portal->asked, ElementsAre(QString("Get")));
}

TEST_F(DesktopShortcutsTest, AreNotThereWithoutABusOrAPortalThatHasThem) {
    const DesktopShortcuts nowhere("unix:path=/nowhere/bus");
    makePortal();
    portal->hasShortcuts = false;
    makeShortcuts();
    bind();

    ASSERT_TRUE(loop.runUntil([&] { return !portal->asked.isEmpty(); }));
    portal->asked.clear();
    DesktopShortcuts later(bus.address()); // whose question is answered after the first one's
    ASSERT_TRUE(loop.runUntil([&] { return !portal->asked.isEmpty(); }));
    EXPECT_EQ(shortcuts->state(), State::unavailable);
    EXPECT_EQ(nowhere.state(), State::unavailable);
    EXPECT_FALSE(portal->asked.contains("CreateSession"));
}

TEST_F(DesktopShortcutsTest, BindWhatIsWantedInTheProgramsName) {
    makeBound();

    EXPECT_EQ(portal->program, "app.velmora.Velmora");
    ASSERT_EQ(portal->wanted.size(), 2);
    EXPECT_EQ(portal->wanted[0].id, "talk");
    EXPECT_EQ(portal->wanted[0].details.value("description"), "Parler");
    EXPECT_THAT(shortcuts->triggers(),
                ElementsAre(Pair("mute", "CTRL+LOGO+m"), Pair("talk", "CTRL+LOGO+t")));
}

TEST_F(DesktopShortcutsTest, TellEachPressAndReleaseOnceAndNoOtherPrograms) {
    makeBound();

    portal->release("talk");
    portal->pressOthers("talk");
    portal->press("talk");
    portal->press("talk");
    portal->press("mute");
    portal->release("talk");

    ASSERT_TRUE(tells(3));
    EXPECT_THAT(told, ElementsAre("talk pressed", "mute pressed", "talk released"));
}

TEST_F(DesktopShortcutsTest, FollowTheKeysThatTheUserGives) {
    makeBound();
    int changes = 0;
    const auto connection = shortcuts->changed().connect([&] { ++changes; });

    portal->giveKeys({{"talk", "F12"}});

    ASSERT_TRUE(loop.runUntil([&] { return changes > 0; }));
    EXPECT_THAT(shortcuts->triggers(), ElementsAre(Pair("talk", "F12")));
    EXPECT_EQ(shortcuts->state(), State::bound);
}

TEST_F(DesktopShortcutsTest, AreRefusedByTheUserAndNotAskedForAgain) {
    makePortal();
    portal->bindResponse = PortalRequest::cancelled;
    makeShortcuts();
    bind();
    ASSERT_TRUE(becomes(State::refused));

    portal.reset();
    ASSERT_TRUE(becomes(State::unavailable));
    makePortal();
    ASSERT_TRUE(becomes(State::unused));
    EXPECT_FALSE(portal->asked.contains("CreateSession"));
    bind();
    EXPECT_TRUE(becomes(State::bound));
}

TEST_F(DesktopShortcutsTest, AreNotHadWhereThePortalFails) {
    makePortal();
    portal->bindResponse = PortalRequest::failed;
    makeShortcuts();
    bind();

    EXPECT_TRUE(becomes(State::failed));
    EXPECT_THAT(shortcuts->triggers(), IsEmpty());
}

TEST_F(DesktopShortcutsTest, AHeldKeyIsReleasedWhenThePortalVanishesAndIsBoundWithTheNext) {
    makeBound();
    portal->press("talk");
    ASSERT_TRUE(tells(1));

    portal.reset();

    ASSERT_TRUE(becomes(State::unavailable));
    EXPECT_THAT(told, ElementsAre("talk pressed", "talk released"));
    makePortal();
    ASSERT_TRUE(becomes(State::bound));
    portal->press("talk");
    ASSERT_TRUE(tells(3));
    EXPECT_EQ(told.back(), "talk pressed");
}

TEST_F(DesktopShortcutsTest, APortalThatVanishesWhileItIsAskedIsAskedAgain) {
    makePortal();
    portal->answersBinding = false;
    makeShortcuts();
    bind();
    ASSERT_TRUE(loop.runUntil([&] { return portal->asked.contains("BindShortcuts"); }));

    portal.reset();
    ASSERT_TRUE(becomes(State::unavailable));
    makePortal();

    EXPECT_TRUE(becomes(State::bound));
}

TEST_F(DesktopShortcutsTest, AHeldKeyIsReleasedWhenThePortalClosesTheSession) {
    makeBound();
    portal->press("talk");
    ASSERT_TRUE(tells(1));

    portal->closeSession();

    ASSERT_TRUE(becomes(State::failed));
    EXPECT_THAT(told, ElementsAre("talk pressed", "talk released"));
}

TEST_F(DesktopShortcutsTest, UnboundTheyEndTheSessionAndTellNothing) {
    makeBound();
    portal->press("talk");
    ASSERT_TRUE(tells(1));
    const QString session = portal->session;

    shortcuts->unbind();

    EXPECT_EQ(shortcuts->state(), State::unused);
    EXPECT_THAT(told, ElementsAre("talk pressed", "talk released"));
    portal->press("mute");
    ASSERT_TRUE(loop.runUntil([&] { return !portal->closed.isEmpty(); }));
    EXPECT_THAT(portal->closed, ElementsAre(session));
    EXPECT_EQ(told.size(), 2U);
}

} // namespace
} // namespace velmora
