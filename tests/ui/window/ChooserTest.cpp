#include "ui/window/WindowTest.h"

#include <QInputMethodEvent>
#include <QQuickImageProvider>
#include <QThread>
#include <atomic>
#include <memory>

namespace velmora {

namespace {

class Chooser : public WindowTest {
protected:
    Chooser() {
        for (const char* name : {"Bach", "Bass", "Bell"}) {
            machine.applications.install(
                {.bundleID = name, .name = name, .location = std::string("/apps/") + name});
        }
    }
    void ask() {
        click("addSource");
        click(QString::fromUtf8("Choisir une application…"));
    }
    void openChooser() {
        open();
        ask();
    }
    QQuickItem& field() { return within(find("applicationSearch"), "input"); }
    [[nodiscard]] std::vector<std::string> launched() const {
        return machine.applications.launched();
    }
    using Places = std::vector<std::string>;
};

TEST_F(Chooser, FindsByNameAndReturnChooses) {
    openChooser();
    EXPECT_TRUE(isShown("Bell"));
    type("call");
    EXPECT_FALSE(isShown("Bell"));
    key(Qt::Key_Return);
    EXPECT_EQ(launched(), Places{"/apps/org.call.desktop"});
}

TEST_F(Chooser, SaysWhenNothingIsFound) {
    openChooser();
    type("zzz");
    EXPECT_TRUE(isShown("nothingFound"));
    EXPECT_FALSE(find("confirmChoice").isEnabled());
    key(Qt::Key_Return);
    EXPECT_TRUE(launched().empty());
}

TEST_F(Chooser, CancellingChangesNothing) {
    openChooser();
    key(Qt::Key_Escape);
    EXPECT_FALSE(isShown("applicationSearch"));
    advance(std::chrono::seconds(2));
    EXPECT_TRUE(scene.engine.sources().empty());
    EXPECT_EQ(focused(), "Ajouter une source");
}

TEST_F(Chooser, ArrowsGoUpAndDownTheHitsWhileTheFieldKeepsTheFocus) {
    openChooser();
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Up);
    EXPECT_TRUE(field().hasActiveFocus());
    EXPECT_TRUE(spokenState(find("Bass")).selected);
    key(Qt::Key_Return);
    EXPECT_EQ(launched(), Places{"/apps/Bass"});
}

TEST_F(Chooser, ArrowsStopAtBothEnds) {
    openChooser();
    key(Qt::Key_Up);
    EXPECT_TRUE(spokenState(find("Bach")).selected);
    for (int presses = 0; presses < 9; ++presses) {
        key(Qt::Key_Down);
    }
    EXPECT_TRUE(spokenState(find("Video Call")).selected);
}

TEST_F(Chooser, EveryLetterBeginsAtTheFirstHitAgain) {
    openChooser();
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    type("b");
    EXPECT_TRUE(spokenState(find("Bach")).selected);
    EXPECT_FALSE(spokenState(find("Bell")).selected);
    key(Qt::Key_Return);
    EXPECT_EQ(launched(), Places{"/apps/Bach"});
}

TEST_F(Chooser, OpensWithNothingTypedAndEverythingShown) {
    openChooser();
    type("call");
    key(Qt::Key_Escape);
    ask();
    EXPECT_EQ(field().property("text"), "");
    EXPECT_TRUE(field().hasActiveFocus());
    EXPECT_TRUE(isShown("Bell"));
}

TEST_F(Chooser, OpensAtTheFirstApplication) {
    openChooser();
    key(Qt::Key_Down);
    key(Qt::Key_Escape);
    ask();
    EXPECT_TRUE(spokenState(find("Bach")).selected);
}

TEST_F(Chooser, ReturnAndEnterChooseInTheListToo) {
    for (const auto pressed : {Qt::Key_Return, Qt::Key_Enter}) {
        openChooser();
        key(Qt::Key_Tab);
        EXPECT_TRUE(find("applicationList").hasActiveFocus());
        key(Qt::Key_Down);
        key(pressed);
        EXPECT_FALSE(isShown("applicationList"));
    }
    EXPECT_EQ(launched(), (Places{"/apps/Bass", "/apps/Bass"}));
}

TEST_F(Chooser, EnterInTheFieldChooses) {
    openChooser();
    type("bel");
    key(Qt::Key_Enter);
    EXPECT_EQ(launched(), Places{"/apps/Bell"});
}

TEST_F(Chooser, AClickPicksAndASecondOneChooses) {
    openChooser();
    click("Bell");
    EXPECT_TRUE(spokenState(find("Bell")).selected);
    EXPECT_TRUE(launched().empty());
    pointer().doubleClick(find("Bass"), {60, 10});
    settle();
    EXPECT_EQ(launched(), Places{"/apps/Bass"});
    EXPECT_FALSE(isShown("applicationList"));
}

TEST_F(Chooser, IsSpokenAsASearchFieldAndAListOfApplications) {
    openChooser();
    EXPECT_EQ(spokenRole(field()), QAccessible::EditableText);
    EXPECT_EQ(spokenName(field()), "Rechercher");
    EXPECT_EQ(spokenRole(find("applicationList")), QAccessible::List);
    EXPECT_EQ(spokenRole(find("Bell")), QAccessible::ListItem);
    ASSERT_TRUE(speakAction(find("Bell"), QAccessibleActionInterface::pressAction()));
    EXPECT_EQ(launched(), Places{"/apps/Bell"});
}

TEST_F(Chooser, TheHintGoesAsSoonAsALetterIsComposed) {
    openChooser();
    EXPECT_TRUE(isShown("placeholder"));
    QInputMethodEvent composing(QString::fromUtf8("ˆ"), {});
    QCoreApplication::sendEvent(&field(), &composing);
    EXPECT_EQ(field().property("text"), "");
    EXPECT_FALSE(isShown("placeholder"));
}

/// Counts the icons drawn by this thread and by others.
class CountingIcons : public QQuickImageProvider {
public:
    struct Counts {
        std::atomic<int> here{};
        std::atomic<int> elsewhere{};
    };

    explicit CountingIcons(std::shared_ptr<Counts> counts)
        : QQuickImageProvider(Pixmap), counts_(std::move(counts)) {}

    QPixmap requestPixmap(const QString&, QSize* size, const QSize&) override {
        ++(QThread::currentThread() == thread_ ? counts_->here : counts_->elsewhere);
        *size = {16, 16};
        QPixmap pixmap(*size);
        pixmap.fill(Qt::red);
        return pixmap;
    }

private:
    std::shared_ptr<Counts> counts_;
    QThread* thread_ = QThread::currentThread();
};

TEST_F(Chooser, DrawsItsIconsOnTheMainThreadOnly) {
    const auto counts = std::make_shared<CountingIcons::Counts>();
    engine->addImageProvider("application", new CountingIcons(counts));
    for (const char* name : {"Bach", "Bass", "Bell"}) {
        machine.applications.setIcon(name, std::string(name) + " icon");
    }
    openChooser();
    EXPECT_EQ(counts->here, 3);
    EXPECT_EQ(counts->elsewhere, 0);
}

} // namespace

} // namespace velmora
