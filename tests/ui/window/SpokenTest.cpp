// What a screen reader is told of the control window, beyond roles and names.

#include "ui/window/WindowTest.h"

#include <QAccessible>
#include <string>

namespace velmora {

namespace {

class SpokenWindow : public WindowTest {
protected:
    static QAccessibleTextInterface& textIn(QQuickItem& item) {
        return *QAccessible::queryAccessibleInterface(&item)->textInterface();
    }
};

TEST_F(SpokenWindow, SaysInAMenuWhatPlaysAndWhatOpens) {
    open();
    click("addSource");
    EXPECT_EQ(spokenDescription(find("Web Browser")), "Du son en sort");
    QQuickItem& interface = find("Interface");
    EXPECT_EQ(spokenDescription(interface), u"Sous-menu, Fermé");
    EXPECT_TRUE(speakAction(interface, QAccessibleActionInterface::pressAction()));
    EXPECT_EQ(spokenDescription(find("Interface")), "Sous-menu, Ouvert");
    settings.setLanguage("en");
    EXPECT_EQ(spokenDescription(find("Interface")), "Submenu, Expanded");
}

TEST_F(SpokenWindow, ReadsTheStrengthOfCompressionInWords) {
    scene.mixPodcast(); // strength 2
    open();
    click("effectsButton");
    EXPECT_EQ(spokenDescription(find("compTitle")), "Moyenne");
    click("compTitle");
    EXPECT_TRUE(spokenState(find("Moyenne")).checked);
    settings.setLanguage("en");
    EXPECT_EQ(spokenDescription(find("compTitle")), "Medium");
    EXPECT_TRUE(isShown("Strong"));
}

TEST_F(SpokenWindow, SaysWhatADashAndAnInfinityStandFor) {
    openWithEffects();
    EXPECT_EQ(spokenDescription(find("tiltTitle")), "Neutre");
    scene.engine.setGain(0, scene.browser);
    settle();
    EXPECT_EQ(spokenDescription(trackOf(find("gainFader"))), "Silence");
}

TEST_F(SpokenWindow, CountsSourcesOfTheSameName) {
    machine.startApplication(6001, "Web Browser", "org.browser.other");
    scene.engine.add(scene.browser);
    scene.engine.add(AppSource{6001, "Web Browser", "org.browser.other"});
    open();
    EXPECT_TRUE(isShown(QString::fromUtf8("Effets — Web Browser")));
    EXPECT_TRUE(isShown(QString::fromUtf8("Effets — Web Browser (2)")));
    scene.engine.remove(scene.browser);
    EXPECT_FALSE(isShown(QString::fromUtf8("Effets — Web Browser (2)")));
    EXPECT_TRUE(isShown(QString::fromUtf8("Effets — Web Browser")));
}

int toldLevels = 0;

TEST_F(SpokenWindow, HasALevelForWhoeverAsksAndTellsNoChangeOfIt) {
    openWithBrowser();
    QQuickItem& level = find(QString::fromUtf8("Niveau — Web Browser"));
    EXPECT_EQ(spokenRole(level), QAccessible::ProgressBar);
    EXPECT_EQ(spokenValue(level), -60);

    toldLevels = 0;
    const auto before = QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
        const auto* const interface = event->accessibleInterface();
        toldLevels += interface != nullptr && interface->role() == QAccessible::ProgressBar ? 1 : 0;
    });
    scene.engine.start();
    advance(std::chrono::seconds(1));
    QAccessible::installUpdateHandler(before);

    EXPECT_NEAR(spokenValue(level).toDouble(), -6, 1); // a sine of amplitude 0.5
    EXPECT_EQ(toldLevels, 0);
}

TEST_F(SpokenWindow, GivesTheTextOfAFieldItsSelectionAndItsCaret) {
    scene.mixPodcast();
    open();
    Q_EMIT scene.model.savePromptRequested();
    settle();
    QQuickItem& input = find("input");
    auto* const interface = QAccessible::queryAccessibleInterface(&input);
    EXPECT_EQ(interface->text(QAccessible::Name), "Nom du preset");
    EXPECT_EQ(interface->text(QAccessible::Value), "Podcast");
    EXPECT_TRUE(interface->state().focused);
    EXPECT_NE(interface->parent(), nullptr);
    auto& text = textIn(input);
    EXPECT_EQ(text.characterCount(), 7);
    EXPECT_EQ(text.text(3, 7), "cast");
    int start = -1;
    int end = -1;
    text.selection(0, &start, &end);
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, 7);

    text.setSelection(0, 2, 4);
    EXPECT_EQ(input.property("selectedText"), "dc");
    text.removeSelection(0);
    EXPECT_EQ(text.selectionCount(), 0);
    text.setCursorPosition(3);
    EXPECT_EQ(text.cursorPosition(), 3);
    const QRect letter = text.characterRect(3);
    EXPECT_TRUE(interface->rect().contains(letter.center()));
    EXPECT_EQ(text.offsetAtPoint(letter.center()), 3);
    auto& edited = *interface->editableTextInterface();
    edited.replaceText(0, 3, "Broad");
    EXPECT_EQ(input.property("text"), "Broadcast");
}

TEST_F(SpokenWindow, LetsAMessageBeReachedReadAndDismissedByKeyboard) {
    scene.engine.tell(ProblemOrigin::recall, {inWords("Un souci")});
    open();
    QQuickItem& card = find("problemCard");
    EXPECT_EQ(spokenRole(card), QAccessible::AlertMessage);
    EXPECT_EQ(spokenName(card), "Un souci");

    tabTo("Message");
    EXPECT_EQ(textIn(*window().activeFocusItem()).text(0, 8), "Un souci");
    EXPECT_TRUE(spokenState(*window().activeFocusItem()).readOnly);
    key(Qt::Key_Tab);
    EXPECT_NE(focused(), "Message");
    key(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Message");

    key(Qt::Key_Escape);
    EXPECT_FALSE(isShown("problemCard"));
    EXPECT_EQ(focused(), "Choisir une source");
}

} // namespace

} // namespace velmora
