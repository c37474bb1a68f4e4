// The program as a screen reader finds it: every window whole, in both languages.

#include "app/ScreenReader.h"
#include "app/DesktopRig.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <utility>

namespace velmora {
namespace {

using namespace support;

/// What the test names things by, in one of the languages.
struct Words {
    std::string language;
    QString effects;
    QString lowCut;
    QString compression;
    QString strongest;
    QString sourcePicker;
    QString wholeSource;
    QString preset;
    QString saveSetup;
    QString promptTitle;
    QString presetName;
    QString settings;
    QString settingsTitle;
    QString shortcuts;
    QString shortcutsElsewhere;
    QString hearsItself;
};

const Words french{.language = "fr",
                   .effects = "Effets — First pair",
                   .lowCut = "Coupe-bas",
                   .compression = "Compression",
                   .strongest = "Forte",
                   .sourcePicker = "Choisir une source",
                   .wholeSource = "Studio Interface 4",
                   .preset = "Preset",
                   .saveSetup = "Enregistrer le setup actuel…",
                   .promptTitle = "Enregistrer le setup actuel",
                   .presetName = "Nom du preset",
                   .settings = "Réglages…",
                   .settingsTitle = "Réglages Velmora",
                   .shortcuts = "Raccourcis",
                   .shortcutsElsewhere =
                       "Chaque commande de Velmora (« velmora --help ») peut avoir sa touche dans "
                       "les réglages du clavier du bureau.",
                   .hearsItself = "S'entend dans le micro"};
const Words english{.language = "en",
                    .effects = "Effects — First pair",
                    .lowCut = "Low cut",
                    .compression = "Compression",
                    .strongest = "Strong",
                    .sourcePicker = "Choose a source",
                    .wholeSource = "Studio Interface 4",
                    .preset = "Preset",
                    .saveSetup = "Save current setup…",
                    .promptTitle = "Save current setup",
                    .presetName = "Preset name",
                    .settings = "Settings…",
                    .settingsTitle = "Velmora Settings",
                    .shortcuts = "Shortcuts",
                    .shortcutsElsewhere = "Any of Velmora's commands (“velmora --help”) can be "
                                          "given a key in the desktop's keyboard settings.",
                    .hearsItself = "Hears itself in the microphone"};

class SpokenProgram : public DesktopRig, public testing::WithParamInterface<Words> {
protected:
    SpokenProgram() {
        settings().set("language", GetParam().language);
        keepActivePreset();
    }

    [[nodiscard]] ChildProcess launchSpoken() {
        Environment all = environment();
        all["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1";
        return launch(all);
    }
    [[nodiscard]] SpokenObject windowSoon(const QString& title) {
        SpokenObject found;
        EXPECT_TRUE(waitUntil([&] { return (found = reader.window(title)).isThere(); }))
            << title.toStdString();
        return found;
    }
    [[nodiscard]] SpokenObject findSoon(const SpokenObject& root, const QString& name) {
        SpokenObject found;
        EXPECT_TRUE(waitUntil([&] { return (found = reader.find(root, name)).isThere(); }))
            << name.toStdString();
        return found;
    }
    [[nodiscard]] SpokenObject menuSoon() {
        SpokenObject found;
        EXPECT_TRUE(waitUntil([&] { return (found = reader.menu()).isThere(); }));
        return found;
    }
    void press(const SpokenObject& root, const QString& name) {
        const SpokenObject found = findSoon(root, name);
        EXPECT_TRUE(found.isThere() && reader.press(found)) << name.toStdString();
    }

    /// What is heard of a window, once it no longer changes, is what is kept under this name.
    void expectKept(const SpokenObject& window, const std::string& name) {
        const std::filesystem::path file =
            std::filesystem::path(VELMORA_SPOKEN_TREES) / (name + "." + GetParam().language);
        std::ifstream in(file);
        const std::string kept{std::istreambuf_iterator<char>(in), {}};
        std::string heard;
        const bool isSettled = waitUntil([&] {
            const std::string before = std::exchange(heard, tree(window));
            return isRenewing() ? heard == before : heard == kept;
        });
        if (isRenewing()) {
            EXPECT_TRUE(isSettled) << name;
            std::ofstream(file) << heard;
        } else {
            EXPECT_TRUE(isSettled) << "kept in " << file << ":\n" << kept << "heard:\n" << heard;
        }
        expectEveryControlIsTold(heard, name);
    }

    ScreenReader reader{environment()};

private:
    static bool isRenewing() {
        return std::getenv("VELMORA_RENEW_SPOKEN_TREES") !=
               nullptr; // NOLINT(concurrency-mt-unsafe)
    }

    /// The version is another one with every commit.
    std::string tree(const SpokenObject& window) {
        return std::regex_replace(
            reader.tree(window), std::regex("\"Version [^\"]*\""), "\"Version …\"");
    }

    /// No two controls of a window are called the same, unless groups of different names keep them
    /// apart.
    static void expectEveryControlIsTold(const std::string& tree, const std::string& where) {
        std::istringstream lines(tree);
        std::vector<std::string> path;
        std::map<std::string, int> seen;
        for (std::string line; std::getline(lines, line);) {
            const std::size_t depth = line.find_first_not_of(' ') / 2;
            const std::size_t open = line.find('"');
            const std::string name = line.substr(open + 1, line.find('"', open + 1) - open - 1);
            path.resize(depth);
            path.push_back(name);
            if (line.find(", focusable") == line.npos) {
                continue;
            }
            EXPECT_NE(name, "") << line << " in " << where;
            std::string whole;
            for (const std::string& part : path) {
                whole += "/" + part;
            }
            EXPECT_EQ(++seen[whole], 1) << whole << " in " << where;
        }
    }
};

TEST_P(SpokenProgram, IsTheSameAsEverInTheControlWindow) {
    const Words& words = GetParam();
    ChildProcess program = launchSpoken();
    const SpokenObject window = windowSoon("Velmora");

    expectKept(window, "control");
    press(window, words.effects);
    press(window, words.lowCut);
    EXPECT_TRUE(findSoon(window, "150 Hz").isThere());
    expectKept(window, "low-cut");
    press(window, words.compression);
    EXPECT_TRUE(findSoon(window, words.strongest).isThere());
    expectKept(window, "compression");
}

TEST_P(SpokenProgram, IsTheSameAsEverInItsMenus) {
    const Words& words = GetParam();
    ChildProcess program = launchSpoken();
    const SpokenObject window = windowSoon("Velmora");

    press(window, words.sourcePicker);
    const SpokenObject sources = menuSoon();
    ASSERT_TRUE(sources.isThere());
    press(sources, words.wholeSource);
    expectKept(sources, "source-menu");
    DesktopRig::press("Velmora", {"Escape"});
    press(window, words.preset);
    SpokenObject presets;
    ASSERT_TRUE(waitUntil([&] {
        presets = reader.menu();
        return presets.isThere() && presets.path != sources.path;
    }));
    expectKept(presets, "preset-menu");
}

TEST_P(SpokenProgram, LetsTheNameOfAPresetBeReadAndSelected) {
    const Words& words = GetParam();
    ChildProcess program = launchSpoken();
    const SpokenObject window = windowSoon("Velmora");
    press(window, words.preset);
    const SpokenObject presets = menuSoon();
    ASSERT_TRUE(presets.isThere());
    press(presets, words.saveSetup);

    const SpokenObject line = findSoon(window, words.presetName);
    ASSERT_TRUE(line.isThere());
    // Of what lies below it newer Qt tells that it is disabled, Qt 6.4 does not.
    expectKept(findSoon(window, words.promptTitle), "prompt");
    EXPECT_EQ(reader.text(line), "Evening");
    EXPECT_EQ(reader.selectedText(line), "Evening");
    EXPECT_TRUE(reader.select(line, 0, 4));
    EXPECT_EQ(reader.selectedText(line), "Even");
}

TEST_P(SpokenProgram, IsTheSameAsEverInTheSettings) {
    const Words& words = GetParam();
    ChildProcess program = launchSpoken();
    press(windowSoon("Velmora"), words.settings);
    const SpokenObject window = windowSoon(words.settingsTitle);

    expectKept(window, "settings");
    press(window, "Audio");
    EXPECT_TRUE(findSoon(window, "Monitoring").isThere());
    expectKept(window, "settings-audio");
    press(window, words.shortcuts);
    EXPECT_TRUE(findSoon(window, words.shortcutsElsewhere).isThere());
    expectKept(window, "settings-shortcuts");
}

TEST_P(SpokenProgram, SaysThatAnApplicationHearsItselfUntilItNoLongerDoes) {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    const ToneApp app(session());
    app.play("music", 440, 440, -20);
    ChildProcess program = launchSpoken();
    const SpokenObject window = windowSoon("Velmora");
    command({"add", playing(app.pid())});
    command({"on"});
    EXPECT_FALSE(reader.find(window, GetParam().hearsItself).isThere());

    double slowest = 0;
    for (int time = 0; time < 5; ++time) {
        const auto begun = std::chrono::steady_clock::now();
        app.hear("ear", microphone);
        EXPECT_TRUE(findSoon(window, GetParam().hearsItself).isThere());
        slowest = std::max(slowest, Milliseconds(std::chrono::steady_clock::now() - begun).count());
        app.stop("ear");
        EXPECT_TRUE(
            waitUntil([&] { return !reader.find(window, GetParam().hearsItself).isThere(); }));
    }
    RecordProperty("slowestMilliseconds", std::to_string(slowest));
}

INSTANTIATE_TEST_SUITE_P(, SpokenProgram, testing::Values(french, english), [](const auto& one) {
    return one.param.language;
});

} // namespace
} // namespace velmora
