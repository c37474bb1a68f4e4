#include "ui/control/UndoModel.h"

#include "ui/support/ModelFixture.h"

#include <QSignalSpy>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class UndoModelTest : public ModelFixture {
protected:
    void offer(const std::string& name, UndoOffer::Kind kind = UndoOffer::Kind::presets) {
        model.offer({.kind = kind,
                     .french = "Preset « {name} » supprimé",
                     .name = name,
                     .undo = [this, name] { undone.push_back(name); }});
    }

    UndoModel model{machine.platform().mainQueue, settings};
    std::vector<std::string> undone;
};

TEST_F(UndoModelTest, OffersForSomeSeconds) {
    QSignalSpy offered(&model, &UndoModel::offeredChanged);
    EXPECT_FALSE(model.offered());
    offer("Podcast");
    EXPECT_TRUE(model.offered());
    machine.advance(UndoModel::shownFor - 1ms);
    EXPECT_TRUE(model.offered());
    machine.advance(1ms);
    EXPECT_FALSE(model.offered());
    EXPECT_EQ(offered.count(), 2);
    model.undo();
    EXPECT_TRUE(undone.empty());
}

TEST_F(UndoModelTest, SaysWhatHappenedInTheUsersLanguage) {
    offer("{name} Café");
    EXPECT_EQ(model.text(), QString::fromUtf8("Preset « {name} Café » supprimé"));
    settings.setLanguage("en");
    EXPECT_EQ(model.text(), QString::fromUtf8("Preset “{name} Café” deleted"));
}

TEST_F(UndoModelTest, UndoesTheLatestFirstAndEachOnce) {
    offer("a");
    offer("b");
    model.undo();
    EXPECT_EQ(undone, std::vector<std::string>{"b"});
    EXPECT_EQ(model.text(), QString::fromUtf8("Preset « a » supprimé"));
    model.undo();
    model.undo();
    EXPECT_EQ(undone, (std::vector<std::string>{"b", "a"}));
    EXPECT_FALSE(model.offered());
}

TEST_F(UndoModelTest, EveryEditAndEveryUndoBeginsTheTimeAnew) {
    offer("a");
    machine.advance(7s);
    offer("b");
    machine.advance(7s);
    model.undo();
    machine.advance(7s);
    EXPECT_TRUE(model.offered());
    machine.advance(1s);
    EXPECT_FALSE(model.offered());
}

TEST_F(UndoModelTest, TimeStandsStillWhileItIsHeldAndBeginsAgainAfterwards) {
    model.setHeld(true);
    offer("a");
    machine.advance(60s);
    EXPECT_TRUE(model.offered());
    model.setHeld(false);
    machine.advance(7s);
    EXPECT_TRUE(model.offered());
    machine.advance(1s);
    EXPECT_FALSE(model.offered());
}

TEST_F(UndoModelTest, DismissingForgetsAll) {
    offer("a");
    offer("b");
    model.dismiss();
    EXPECT_FALSE(model.offered());
    model.undo();
    EXPECT_TRUE(undone.empty());
}

TEST_F(UndoModelTest, WithdrawsOneKindOnly) {
    offer("preset");
    offer("source", UndoOffer::Kind::source);
    model.withdraw(UndoOffer::Kind::source);
    model.undo();
    EXPECT_EQ(undone, std::vector<std::string>{"preset"});
}

TEST_F(UndoModelTest, WithdrawsWhatHasBecomeMoot) {
    bool isBack = false;
    offer("a");
    model.offer({.french = "« {name} » retiré",
                 .name = "b",
                 .undo = [] {},
                 .isMoot = [&] { return isBack; }});
    model.withdrawMoot();
    EXPECT_EQ(model.text(), QString::fromUtf8("« b » retiré"));
    isBack = true;
    model.withdrawMoot();
    EXPECT_EQ(model.text(), QString::fromUtf8("Preset « a » supprimé"));
}

TEST_F(UndoModelTest, AnUndoMayMakeOthersMoot) {
    bool isBack = false;
    model.offer({.french = "« {name} » retiré", .undo = [] {}, .isMoot = [&] { return isBack; }});
    model.offer({.french = "« {name} » retiré", .undo = [&] {
                     isBack = true;
                     model.withdrawMoot();
                 }});
    model.undo();
    EXPECT_FALSE(model.offered());
}

} // namespace
} // namespace velmora
