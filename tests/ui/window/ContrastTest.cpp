// How well texts, symbols and the mark of the keyboard stand out, in every look.

#include "ui/kit/Kit.h"
#include "ui/kit/theme/ThemeColors.h"
#include "ui/window/WindowTest.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <string>

namespace velmora {

namespace {

constexpr double forTexts = 4.5; // to 1 (WCAG 2.1, 1.4.3)
constexpr double forSymbols = 3; // to 1 (WCAG 2.1, 1.4.11)

/// Relative luminance of an opaque colour (WCAG 2.1).
double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor over(const QColor& front, const QColor& back) {
    const auto mix = [&](double f, double b) {
        return float(f * double(front.alphaF()) + b * (1 - double(front.alphaF())));
    };
    return QColor::fromRgbF(mix(front.redF(), back.redF()),
                            mix(front.greenF(), back.greenF()),
                            mix(front.blueF(), back.blueF()));
}

bool isEnabledText(QQuickItem& item) {
    return isText(item) && item.isEnabled();
}

bool isSymbol(QQuickItem& item) {
    return item.property("source").toString().startsWith("image://glyph/") && item.isEnabled();
}

/// Itself, or in something of this name.
bool isIn(const QQuickItem* item, const QString& name) {
    while (item != nullptr && item->objectName() != name) {
        item = item->parentItem();
    }
    return item != nullptr;
}

class Contrast : public WindowTest {
protected:
    void openEverythingMuted() {
        openEverything();
        scene.engine.setHeadphoneVolume(0);
        settle();
    }

    using Filter = bool (*)(QQuickItem&);

    /// Each of these in `root` stands out from what is beside it.
    void expectContrast(QQuickItem& root,
                        Filter filter,
                        double least,
                        const std::set<QString>& fixed = {}) {
        const QImage picture = grabOf(root);
        const double scale = picture.devicePixelRatio();
        const auto items = visibleItems(root, filter);
        EXPECT_FALSE(items.empty());
        for (QQuickItem* item : items) {
            const QPointF beside = item->mapToScene({-2, item->height() / 2}) * scale;
            if (!picture.rect().contains(beside.toPoint()) ||
                std::ranges::any_of(fixed, [&](const QString& name) { return isIn(item, name); })) {
                continue;
            }
            const QColor back = picture.pixelColor(beside.toPoint());
            const auto color = item->property("color").value<QColor>();
            EXPECT_GE(contrast(over(color, back), back), least)
                << item->property("text").toString().toStdString()
                << item->property("name").toString().toStdString() << ", "
                << color.name(QColor::HexArgb).toStdString() << " on " << back.name().toStdString()
                << " in " << settings.appearance();
        }
    }

    void inBothAppearances(const std::function<void()>& check) {
        for (const char* appearance : {"light", "dark"}) {
            settings.setAppearance(appearance);
            advance(std::chrono::milliseconds(400)); // switches glide to their colour
            check();
        }
    }
    void askForHighContrast() { machine.appearance.setLook({.isHighContrast = true}); }

    [[nodiscard]] ThemeColors& colors() { return *kitOf<ThemeColors>(engine.get()); }

    /// What is drawn in these is fixed: the faintest shade and the accent's own.
    const std::set<QString> fixedSymbols{"monitoringButton", "mute", "delete", "playing"};

private:
    QImage grabOf(QQuickItem& item) {
        settle();
        QImage picture = item.window()->grabWindow();
        picture.setDevicePixelRatio(item.window()->effectiveDevicePixelRatio());
        return picture;
    }
};

TEST_F(Contrast, IsEnoughForEveryTextAndSymbol) {
    openEverythingMuted();
    inBothAppearances([this] {
        expectContrast(*window().contentItem(), isEnabledText, forTexts);
        expectContrast(*window().contentItem(), isSymbol, forSymbols, fixedSymbols);
    });
}

TEST_F(Contrast, IsEnoughInThePromptAndTheChooser) {
    scene.mixPodcast();
    open();
    Q_EMIT scene.model.savePromptRequested();
    settle();
    inBothAppearances([this] { expectContrast(find("sheetPanel"), isEnabledText, forTexts); });
    key(Qt::Key_Escape);
    scene.model.openExtraMenu()->activate(0);
    settle();
    inBothAppearances([this] {
        expectContrast(find("sheetPanel"), isEnabledText, forTexts);
        expectContrast(find("sheetPanel"), isSymbol, forSymbols);
    });
}

TEST_F(Contrast, IsEnoughInItsMenus) {
    scene.mixPodcast();
    open();
    click("addSource");
    auto& menu = *find("Web Browser").parentItem()->parentItem();
    inBothAppearances([&] {
        expectContrast(menu, isEnabledText, forTexts);
        expectContrast(menu, isSymbol, forSymbols, fixedSymbols);
    });
    askForHighContrast();
    inBothAppearances([&] { expectContrast(menu, isSymbol, forSymbols); });
}

TEST_F(Contrast, IsEnoughForWhatIsFixedAsWellWhereTheDesktopAsksForIt) {
    askForHighContrast();
    openEverythingMuted();
    inBothAppearances([this] {
        expectContrast(*window().contentItem(), isEnabledText, 7); // WCAG 2.1, 1.4.6
        expectContrast(*window().contentItem(), isSymbol, forSymbols);
        for (const QColor& back : {colors().paper(), colors().sand()}) {
            EXPECT_GE(contrast(over(colors().ink15(), back), back), forSymbols);
            EXPECT_GE(contrast(over(colors().ink40(), back), back), forTexts);
        }
    });
}

TEST_F(Contrast, FollowsTheDesktopWhileTheWindowIsOpen) {
    openEverythingMuted();
    const QColor before = colors().ink60();

    askForHighContrast();
    EXPECT_EQ(colors().ink60(), colors().ink());

    machine.appearance.setLook({});
    EXPECT_EQ(colors().ink60(), before);
}

TEST_F(Contrast, IsEnoughForTheMarkOfTheKeyboardAndForSwitches) {
    open();
    inBothAppearances([this] {
        for (const QColor& back : {colors().paper(), colors().sand()}) {
            EXPECT_GE(contrast(colors().ring(), back), forSymbols);
            EXPECT_GE(contrast(colors().alarm(), back), forTexts);
            EXPECT_GE(contrast(colors().ink(), back), forSymbols); // a switch's outline
        }
        EXPECT_GE(contrast(colors().sun(), colors().ocean()), forSymbols); // its knob, on
    });
}

/// A desktop on which nothing shall move for the sake of moving.
class Stillness : public WindowTest {};

TEST_F(Stillness, StopsTheWaveformAndTakesASwitchToItsPlaceAtOnce) {
    machine.appearance.setLook({.isStill = true});
    scene.mixPodcast();
    open();
    auto& knob = within(find("runningSwitch"), "knob");
    const double off = knob.x();

    scene.engine.start();
    settle();

    EXPECT_GT(knob.x(), off + 10);
    EXPECT_TRUE(find("waveform").property("still").toBool());
    machine.appearance.setLook({});
    EXPECT_FALSE(find("waveform").property("still").toBool());
}

TEST_F(Stillness, IsReachedByAStoppedMixWithinFiveSeconds) {
    scene.mixPodcast();
    open();
    advance(std::chrono::seconds(5));
    const QImage before = grab();

    advance(std::chrono::seconds(2));

    EXPECT_EQ(grab(), before);
}

} // namespace

} // namespace velmora
