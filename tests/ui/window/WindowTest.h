// WindowTest.h: the real control window on a simulated machine.
#pragma once

#include "ui/Ui.h"
#include "ui/support/ItemSearch.h"
#include "ui/support/QmlTest.h"
#include "ui/support/Spoken.h"
#include "ui/window/WindowScene.h"

#include <QTest>
#include <cmath>

/// Makes failed expectations readable.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace velmora {

/// A problem that speaks for itself.
[[nodiscard]] inline Problem inWords(std::string words) {
    return {.kind = Problem::Kind::ownWords, .detail = std::move(words)};
}

/// Threads: main.
class WindowTest : public QmlTest {
protected:
    WindowTest() { installUi(*engine); }
    /// The window goes before the model that it shows.
    ~WindowTest() override { show("Item {}"); }

    /// @param tallest  points, how high a window fits on the screen
    void open(double tallest = 2000) {
        showWindow(QUrl(QStringLiteral("qrc:/qt/qml/Velmora/ControlWindow.qml")),
                   {{"model", QVariant::fromValue(&scene.model)}, {"tallest", tallest}});
        settle();
    }

    /// Opens the window with the browser in the mix.
    void openWithBrowser() {
        scene.engine.add(scene.browser);
        open();
    }

    /// Opens the window with much to read: a message, and effects with one of them unfolded.
    void openEverything() {
        scene.mixPodcast();
        scene.engine.tell(ProblemOrigin::recall, {inWords("Un souci")});
        open();
        click("effectsButton");
        click("gainTitle");
        scene.engine.setFX({.tilt = -1, .autoGain = false, .manualDB = -12}, scene.browser);
        settle();
    }

    /// Opens the window with the browser's effects unfolded.
    void openWithEffects() {
        openWithBrowser();
        click("effectsButton");
    }

    /// What carries this name inside `root`; missing, the test fails.
    QQuickItem& within(QQuickItem& root, const QString& name) {
        QQuickItem* const item = findItem(root, name);
        return item != nullptr ? *item : find(name + " within " + root.objectName());
    }

    void click(const QString& name) {
        pointer().click(find(name));
        settle();
    }

    /// Drags a slider's thumb to a position from 0 to 1.
    void drag(QQuickItem& slider, double position) {
        constexpr double thumb = 16; // points
        const double x = thumb / 2 + position * (slider.width() - thumb);
        pointer().click(slider, {x, slider.height() / 2});
        pointer().pause();
        settle();
    }

    /// The track of a fader with a read-out.
    QQuickItem& trackOf(QQuickItem& fader) { return within(fader, spokenNameOf(fader)); }

    [[nodiscard]] QString textOf(const QString& name) {
        return find(name).property("text").toString();
    }
    [[nodiscard]] bool isChecked(const QString& name) {
        return spokenState(find(name)).checked != 0;
    }
    /// What the keyboard acts on now, as a screen reader calls it.
    [[nodiscard]] QString focused() {
        QQuickItem* const item = window().activeFocusItem();
        return item != nullptr ? spokenName(*item) : QString();
    }
    /// Presses Tab until that is focused; not found, the test fails.
    void tabTo(const QString& name) {
        for (int presses = 0; presses < 80; ++presses) {
            if (focused() == name) {
                return;
            }
            key(Qt::Key_Tab);
        }
        ADD_FAILURE() << "Tab never reaches \"" << name.toStdString() << '"';
    }

    [[nodiscard]] float gain() const { return scene.engine.gain(scene.browser); }
    [[nodiscard]] FXParams fx() const { return scene.engine.fx(scene.browser); }

    WindowScene scene{machine, settings};

private:
    static QString spokenNameOf(const QQuickItem& fader) {
        return fader.property("name").toString();
    }
};

/// Linear to decibels.
[[nodiscard]] inline double decibels(float gain) {
    return 20 * std::log10(static_cast<double>(gain));
}

} // namespace velmora
