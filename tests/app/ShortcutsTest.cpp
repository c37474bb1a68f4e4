// The program worked by keys that a portal tells, heard by a recorder.

#include "app/CommandRig.h"

#include "platform/desktop/NoticeBoard.h"
#include "platform/desktop/ShortcutsPortal.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using support::ChildProcess;
using support::microphone;
using support::Recorder;
using support::ToneApp;
using support::waitUntil;

constexpr int spokenHz = 440;
constexpr double spokenDb = -20.0;

class ShortcutsProgram : public CommandRig {
protected:
    [[nodiscard]] std::string busAddress() const {
        return session().environment().at("DBUS_SESSION_BUS_ADDRESS");
    }
    void makePortal() { portal.emplace(busAddress()); }
    [[nodiscard]] bool binds() {
        return waitUntil([&] { return portal->wanted.size() == 5; });
    }
    void tap(const QString& id) {
        portal->press(id);
        portal->release(id);
    }
    [[nodiscard]] bool says(const QString& sentence) {
        return waitUntil(
            [&] { return !notices.shown.isEmpty() && notices.shown.last() == sentence; });
    }
    [[nodiscard]] bool isClosed() const { return json({"status"})["microphone"]["closed"] == true; }

    NoticeBoard notices{busAddress()};
    std::optional<ShortcutsPortal> portal;
};

TEST_F(ShortcutsProgram, IsWorkedByTheKeysOfThePortal) {
    const ToneApp app(session());
    app.play("music", spokenHz, spokenHz, spokenDb);
    const Recorder mic(session(), microphone, {1});
    settings().set("globalShortcuts", true);
    monitorOnTheInterface();
    makePortal();
    ChildProcess mixer = headless();
    ASSERT_TRUE(binds());
    command({"add", playing(app.pid())});

    tap("mix");
    EXPECT_TRUE(mic.hears(0, spokenHz, spokenDb));
    EXPECT_TRUE(says("The mix is running"));
    tap("mute");
    EXPECT_TRUE(mic.isSilentAt(0, spokenHz));
    EXPECT_TRUE(says("The virtual microphone is muted"));
    tap("mute");
    EXPECT_TRUE(mic.hears(0, spokenHz, spokenDb));
    tap("bypass");
    EXPECT_TRUE(says("Effects bypassed"));
    tap("mix");
    EXPECT_TRUE(mic.isSilentAt(0, spokenHz));
    EXPECT_TRUE(says("The mix is stopped"));
}

TEST_F(ShortcutsProgram, IsHeardWhileTheKeyIsHeldAndNeverAfterThePortalHasGone) {
    const ToneApp app(session());
    app.play("music", spokenHz, spokenHz, spokenDb);
    const Recorder mic(session(), microphone, {1});
    settings().set("globalShortcuts", true);
    monitorOnTheInterface();
    makePortal();
    ChildProcess mixer = headless();
    ASSERT_TRUE(binds());
    command({"add", playing(app.pid())});
    command({"on"});
    EXPECT_TRUE(mic.hears(0, spokenHz, spokenDb));

    command({"push-to-talk", "on"});
    EXPECT_TRUE(mic.isSilentAt(0, spokenHz));
    EXPECT_TRUE(isClosed());
    portal->press("talk");
    EXPECT_TRUE(mic.hears(0, spokenHz, spokenDb));
    EXPECT_TRUE(says("The microphone is open"));
    portal.reset();
    EXPECT_TRUE(mic.isSilentAt(0, spokenHz));
    EXPECT_TRUE(isClosed());

    makePortal();
    ASSERT_TRUE(binds());
    portal->press("talk");
    EXPECT_TRUE(mic.hears(0, spokenHz, spokenDb));
    portal->release("talk");
    EXPECT_TRUE(mic.isSilentAt(0, spokenHz));
    command({"push-to-talk", "off"});
    EXPECT_TRUE(mic.hears(0, spokenHz, spokenDb));
}

TEST_F(ShortcutsProgram, AsksThePortalForNothingUntilTheUserWantsIt) {
    makePortal();
    ChildProcess mixer = headless();
    EXPECT_TRUE(waitUntil([&] { return portal->asked.contains("Get"); }));

    EXPECT_FALSE(portal->asked.contains("CreateSession"));
    EXPECT_EQ(velmora({"push-to-talk", "on"}).status, 1);
}

} // namespace
} // namespace velmora
