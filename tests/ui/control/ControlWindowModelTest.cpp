#include "ui/control/ControlWindowFixture.h"

#include "ui/control/SourceStripModel.h"

#include <QSignalSpy>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class ControlWindowModelTest : public ControlWindowFixture {};

TEST_F(ControlWindowModelTest, TheSwitchStartsAndStopsTheMix) {
    QSignalSpy changes(&model, &ControlWindowModel::runningChanged);
    machine.sound.play(4711, silence());
    engine.add(player);
    EXPECT_FALSE(model.running());
    model.toggleRunning();
    EXPECT_TRUE(engine.isRunning());
    EXPECT_TRUE(model.running());
    model.toggleRunning();
    EXPECT_FALSE(engine.isRunning());
    EXPECT_FALSE(model.running());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(ControlWindowModelTest, AFailedStartLeavesTheSwitchOffAndTellsWhy) {
    QSignalSpy changes(&model, &ControlWindowModel::runningChanged);
    model.toggleRunning();
    EXPECT_FALSE(model.running());
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(model.problemText(), "Choisir d'abord une source");
}

TEST_F(ControlWindowModelTest, AProblemGoesWhenTheEngineClearsIt) {
    QSignalSpy changes(&model, &ControlWindowModel::problemTextChanged);
    engine.tell(ProblemOrigin::recall, {radioMissing});
    EXPECT_EQ(model.problemText(), "Introuvable : Radio");
    engine.tell(ProblemOrigin::recall, {});
    EXPECT_EQ(model.problemText(), "");
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(ControlWindowModelTest, ProblemsAreLinesInAFixedOrder) {
    machine.defaults.report(
        {.kind = StoreProblem::Kind::full, .file = "/home/s.db", .status = -28});
    machine.sound.loseService();
    machine.advance(std::chrono::milliseconds{10});
    engine.tell(ProblemOrigin::recall, {radioMissing});
    EXPECT_EQ(model.problemText(),
              "Introuvable : Radio\n"
              "Service audio injoignable\n"
              "Plus de place pour les réglages dans /home/s.db (err -28). "
              "Les changements seront enregistrés quand de la place sera libérée.");
}

TEST_F(ControlWindowModelTest, ALaterModelShowsTheProblemsOfTheStoreToo) {
    machine.defaults.report({.kind = StoreProblem::Kind::newer, .file = "/home/s.db"});
    const ControlWindowModel later{
        {machine.platform(), engine, sources, presets, recall, settings, talk}};
    EXPECT_NE(later.problemText(), "");
    EXPECT_EQ(later.problemText(), model.problemText());
}

TEST_F(ControlWindowModelTest, AWriteThatSucceedsEndsTheWarningThatChangesWillBeLost) {
    machine.defaults.refuseWrites(
        {.kind = StoreProblem::Kind::unwritable, .file = "/home/s.db", .status = -30});
    settings.setLanguage("en");
    EXPECT_NE(model.problemText(), "");
    machine.defaults.allowWrites();
    settings.setLanguage("fr");
    EXPECT_EQ(model.problemText(), "");
}

TEST_F(ControlWindowModelTest, OffersTheCopyOfLostSettingsUntilItIsTaken) {
    QSignalSpy changes(&model, &ControlWindowModel::problemActionChanged);
    EXPECT_EQ(model.problemAction(), "");
    machine.defaults.offerCopy("2025-03-14", {{"language", std::string("fr")}});
    EXPECT_EQ(model.problemAction(), "Reprendre la copie");
    EXPECT_TRUE(model.problemText().contains("2025-03-14"));
    settings.setLanguage("en");
    EXPECT_EQ(model.problemAction(), "Restore the copy");

    model.actOnProblem();

    EXPECT_EQ(model.problemAction(), "");
    EXPECT_TRUE(model.problemText().contains("2025-03-14"));
    EXPECT_EQ(changes.count(), 3);
    EXPECT_EQ(machine.defaults.kept().at("language"), DefaultsValue(std::string("fr")));
}

TEST_F(ControlWindowModelTest, EveryDamagedFileIsALine) {
    for (const char* place : {"/home/first.db", "/home/second.db"}) {
        machine.defaults.report(
            {.kind = StoreProblem::Kind::damaged, .file = "/home/s.db", .setAside = place});
    }
    EXPECT_EQ(model.problemText().count('\n'), 1);
    EXPECT_TRUE(model.problemText().contains("/home/first.db"));
    EXPECT_TRUE(model.problemText().contains("/home/second.db"));
}

TEST_F(ControlWindowModelTest, ProblemsFollowTheLanguage) {
    machine.sound.loseService();
    machine.advance(std::chrono::milliseconds{10});
    settings.setLanguage("en");
    EXPECT_EQ(model.problemText(), "Audio service not reachable");
    machine.sound.returnService();
    machine.advance(std::chrono::milliseconds{10});
    EXPECT_EQ(model.problemText(), "");
}

TEST_F(ControlWindowModelTest, ASourceThatIsCalledLikeAText) {
    settings.setLanguage("en");
    engine.tell(ProblemOrigin::launch, {{.kind = Problem::Kind::notLaunched, .subject = "Casque"}});
    EXPECT_EQ(model.problemText(), "Could not launch Casque");
}

TEST_F(ControlWindowModelTest, WhatWasReadCanBePutAway) {
    QSignalSpy changes(&model, &ControlWindowModel::canDismissProblemsChanged);
    EXPECT_FALSE(model.canDismissProblems());
    engine.tell(ProblemOrigin::recall, {radioMissing});
    EXPECT_TRUE(model.canDismissProblems());
    model.dismissProblems();
    EXPECT_EQ(model.problemText(), "");
    EXPECT_FALSE(model.canDismissProblems());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(ControlWindowModelTest, WhatStillHoldsCannotBePutAway) {
    machine.sound.loseService();
    machine.advance(std::chrono::milliseconds{10});
    EXPECT_FALSE(model.canDismissProblems());
    model.dismissProblems();
    EXPECT_EQ(model.problemText(), "Service audio injoignable");
}

TEST_F(ControlWindowModelTest, TheCaptionInvitesUntilThereIsAPrimarySource) {
    QSignalSpy changes(&model, &ControlWindowModel::primaryCaptionChanged);
    EXPECT_EQ(model.primaryCaption(), "Choisir une source");
    settings.setLanguage("en");
    EXPECT_EQ(model.primaryCaption(), "Choose a source");
    engine.setPrimary(player);
    EXPECT_EQ(model.primaryCaption(), "Player");
    engine.add(browser);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(ControlWindowModelTest, LevelsMoveOnlyWhileTheWindowIsSeen) {
    machine.sound.play(4711, constant(0.5F));
    engine.add(player);
    engine.start();
    QSignalSpy levels(model.strips()->strip(0), &SourceStripModel::levelChanged);
    machine.advance(200ms);
    EXPECT_EQ(levels.count(), 0);
    model.setVisible(true);
    EXPECT_EQ(levels.count(), 1);
    model.setVisible(false);
    machine.sound.play(4711, constant(0.25F));
    machine.advance(200ms);
    EXPECT_EQ(levels.count(), 1);
}

TEST_F(ControlWindowModelTest, AMeterTickTellsNothingButLevels) {
    machine.sound.play(4711, constant(0.5F));
    engine.add(player);
    engine.start();
    model.setVisible(true);
    QSignalSpy running(&model, &ControlWindowModel::runningChanged);
    QSignalSpy problems(&model, &ControlWindowModel::problemTextChanged);
    QSignalSpy captions(&model, &ControlWindowModel::primaryCaptionChanged);
    QSignalSpy volumes(model.headphones(), &VolumeModel::valueChanged);
    machine.advance(1s);
    EXPECT_EQ(running.count() + problems.count() + captions.count() + volumes.count(), 0);
}

TEST_F(ControlWindowModelTest, ThePrimaryMenuReplacesTheFirstSource) {
    machine.sound.play(4711, constant(0.5F));
    engine.replaceSources({browser});
    choose(*model.openPrimaryMenu(), "Player");
    EXPECT_EQ(engine.sources(), std::vector{player});
}

TEST_F(ControlWindowModelTest, TheExtraMenuAddsASource) {
    machine.sound.play(4711, constant(0.5F));
    engine.replaceSources({browser});
    choose(*model.openExtraMenu(), "Player");
    EXPECT_EQ(engine.sources(), (std::vector{browser, player}));
}

TEST_F(ControlWindowModelTest, AMenuShowsWhatIsThereWhenItOpens) {
    EXPECT_EQ(rowOf(*model.openExtraMenu(), "Headset"), -1);
    machine.sound.addDevice({.uid = "headset", .name = "Headset", .inputs = {1}});
    EXPECT_EQ(rowOf(*model.extraMenu(), "Headset"), -1);
    EXPECT_GE(rowOf(*model.openExtraMenu(), "Headset"), 0);
}

TEST_F(ControlWindowModelTest, BrowsingAsksForTheChooser) {
    machine.applications.install(
        {.bundleID = "org.radio", .name = "Radio", .location = "/applications/org.radio"});
    QSignalSpy requests(&model, &ControlWindowModel::chooserRequested);
    choose(*model.openExtraMenu(), "Choisir une application…");
    ASSERT_EQ(requests.count(), 1);
    EXPECT_TRUE(requests[0][0].toBool());
    EXPECT_EQ(model.chooser()->count(), 1);
    choose(*model.openPrimaryMenu(), "Choisir une application…");
    EXPECT_FALSE(requests[1][0].toBool());
}

TEST_F(ControlWindowModelTest, AChosenRunningApplicationIsTakenAtOnce) {
    machine.applications.install(
        {.bundleID = "org.player", .name = "Player", .location = "/applications/org.player"});
    engine.replaceSources({browser});
    choose(*model.openExtraMenu(), "Choisir une application…");
    model.chooser()->choose(0);
    EXPECT_EQ(engine.sources(), (std::vector{browser, player}));
}

TEST_F(ControlWindowModelTest, AChosenClosedApplicationJoinsWhenItHasSettled) {
    machine.applications.install(
        {.bundleID = "org.radio", .name = "Radio", .location = "/applications/org.radio"});
    engine.replaceSources({browser, player});
    choose(*model.openPrimaryMenu(), "Choisir une application…");
    model.chooser()->choose(0);
    machine.advance(1400ms);
    EXPECT_EQ(engine.sources().front(), browser);
    machine.advance(200ms);
    ASSERT_EQ(engine.sources().size(), 2U);
    EXPECT_EQ(engine.sources().front().name(), "Radio");
    EXPECT_EQ(engine.sources().back(), player);
}

TEST_F(ControlWindowModelTest, AChosenApplicationThatDoesNotStartIsTold) {
    machine.applications.install(
        {.bundleID = "org.radio", .name = "Radio", .location = "/applications/org.radio"});
    machine.applications.planLaunch("/applications/org.radio", {.result = std::nullopt});
    choose(*model.openExtraMenu(), "Choisir une application…");
    model.chooser()->choose(0);
    machine.advance(2s);
    EXPECT_EQ(model.problemText(), "Impossible de lancer Radio");
}

TEST_F(ControlWindowModelTest, SaysWhichApplicationIsComingUp) {
    machine.applications.install(
        {.bundleID = "org.radio", .name = "Radio", .location = "/applications/org.radio"});
    choose(*model.openExtraMenu(), "Choisir une application…");
    model.chooser()->choose(0);
    EXPECT_EQ(model.openingText(), "Ouverture de Radio…");
    settings.setLanguage("en");
    EXPECT_EQ(model.openingText(), "Opening Radio…");
    machine.advance(2s);
    EXPECT_EQ(model.openingText(), "");
}

TEST_F(ControlWindowModelTest, TakesTheInstanceThatWasStartedAgainWithItsSettings) {
    machine.sound.play(4711, constant(0.25F));
    engine.replaceSources({browser, player});
    engine.setGain(0.5F, player);
    machine.quitApplication(4711);
    machine.startApplication(6000, "Player", "org.player");
    machine.sound.play(6000, constant(0.25F));
    machine.advance(100ms);

    model.strips()->strip(1)->applyRemedy();

    const AudioSource again = AppSource{6000, "Player", "org.player"};
    EXPECT_EQ(engine.sources(), (std::vector{browser, again}));
    EXPECT_EQ(engine.gain(again), 0.5F);
}

TEST_F(ControlWindowModelTest, OpensAnApplicationThatHasEndedAndPutsItInItsPlace) {
    machine.sound.play(4711, constant(0.25F));
    machine.applications.install(
        {.bundleID = "org.player", .name = "Player", .location = "/applications/org.player"});
    engine.replaceSources({player, browser});
    engine.setGain(0.5F, player);
    machine.quitApplication(4711);
    machine.advance(100ms);

    model.strips()->strip(0)->applyRemedy();
    EXPECT_EQ(model.strips()->strip(0)->notice(), "Ouverture…");
    machine.advance(2s);

    ASSERT_EQ(engine.sources().size(), 2U);
    EXPECT_NE(engine.sources().front(), player);
    EXPECT_EQ(engine.sources().front().name(), "Player");
    EXPECT_EQ(engine.gain(engine.sources().front()), 0.5F);
    EXPECT_EQ(engine.sources().back(), browser);
}

TEST_F(ControlWindowModelTest, AnApplicationThatCannotBeOpenedAgainStaysGone) {
    machine.sound.play(4711, constant(0.25F));
    machine.applications.install(
        {.bundleID = "org.player", .name = "Player", .location = "/applications/org.player"});
    machine.applications.planLaunch("/applications/org.player", {.result = std::nullopt});
    engine.replaceSources({player});
    machine.quitApplication(4711);
    machine.advance(100ms);

    model.strips()->strip(0)->applyRemedy();
    machine.advance(2s);

    EXPECT_EQ(model.strips()->strip(0)->notice(), "Cette app s'est fermée.");
    EXPECT_EQ(model.problemText(), "Impossible de lancer Player");
}

TEST_F(ControlWindowModelTest, TheEffectsOfAllSourcesCanBeSwitchedOnceThereAreAny) {
    QSignalSpy changes(&model, &ControlWindowModel::effectsChanged);
    engine.add(player);
    EXPECT_FALSE(model.hasEffects());

    engine.setFX({.lowcut = 1}, player);
    EXPECT_TRUE(model.hasEffects());
    EXPECT_TRUE(model.effectsOn());

    model.setEffectsOn(false);
    EXPECT_TRUE(engine.fxBypassed());
    EXPECT_FALSE(model.effectsOn());
    engine.setFX({}, player);
    EXPECT_TRUE(model.hasEffects()) << "the way back stays";
    model.setEffectsOn(true);
    EXPECT_FALSE(model.hasEffects());
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(ControlWindowModelTest, TheFooterAsksForSettingsAndForTheEnd) {
    QSignalSpy settingsAsked(&model, &ControlWindowModel::settingsRequested);
    QSignalSpy quitAsked(&model, &ControlWindowModel::quitRequested);
    model.openSettings();
    model.quit();
    EXPECT_EQ(settingsAsked.count(), 1);
    EXPECT_EQ(quitAsked.count(), 1);
}

TEST_F(ControlWindowModelTest, QmlNeverOwnsWhatTheModelHandsOut) {
    for (const QObject* object : std::initializer_list<QObject*>{model.openPrimaryMenu(),
                                                                 model.openExtraMenu(),
                                                                 model.openPresetsMenu(),
                                                                 model.strips(),
                                                                 model.headphones(),
                                                                 model.stream(),
                                                                 model.chooser()}) {
        EXPECT_EQ(object->parent(), &model);
    }
}

} // namespace
} // namespace velmora
