// A day with the program as a package installs it: from the login to the end, and again.

#include "app/DesktopRig.h"
#include "packaging/Staged.h"
#include "platform/desktop/ProgramName.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace velmora::packaging {
namespace {

using namespace support;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::UnorderedElementsAre;

namespace fs = std::filesystem;

constexpr double hz = 440;
constexpr double playedDb = -20;
constexpr float gain = 0.5F;
constexpr double mixedDb = playedDb - 6.02;

/// What a sound server holds, as far as a mixer could leave something there.
struct Traces {
    std::multiset<std::string> nodes;
    std::multiset<std::string> links;
    std::set<std::string> metadata;

    bool operator==(const Traces&) const = default;
};

class InstalledProgram : public DesktopRig {
protected:
    static void SetUpTestSuite() {
        packages_ = std::make_unique<UnpackedPackages>();
        DesktopRig::SetUpTestSuite();
    }
    static void TearDownTestSuite() {
        DesktopRig::TearDownTestSuite();
        packages_.reset();
    }

    InstalledProgram() {
        app.play("music", hz, hz, playedDb);
        EXPECT_TRUE(atSpeakers.hears(0, hz, playedDb));
        EXPECT_TRUE(mic.isSilentAt(0, hz));
    }

    // -- the program --

    [[nodiscard]] static fs::path program() { return packages_->root / "usr/bin/velmora"; }
    /// The package's data comes before the system's.
    [[nodiscard]] Environment installedEnvironment() const {
        auto result = environment();
        result["XDG_DATA_DIRS"] =
            (packages_->root / "usr/share").string() + ":/usr/local/share:/usr/share";
        return result;
    }
    /// Returns once its item is in the panel.
    [[nodiscard]] ChildProcess start(const std::vector<std::string>& commandLine) {
        panel.emplace(busAddress());
        ChildProcess mixer({.arguments = commandLine,
                            .environment = installedEnvironment(),
                            .output = home.path() / "output"});
        EXPECT_TRUE(waitUntil([&] { return panel->hasItem(); }));
        return mixer;
    }
    [[nodiscard]] fs::path loginEntry() const {
        return home.path() / "config/autostart/app.velmora.Velmora.desktop";
    }
    /// As the desktop does it at login.
    [[nodiscard]] ChildProcess startAtLogin() {
        std::ifstream entry(loginEntry());
        const std::string key = "Exec=";
        std::vector<std::string> commandLine;
        for (std::string line; std::getline(entry, line);) {
            if (line.starts_with(key)) {
                commandLine = splitExec(line.substr(key.size()));
            }
        }
        EXPECT_THAT(commandLine, ElementsAre(program().string(), "--hidden"));
        return start(commandLine);
    }
    /// Processes that run something of the package's.
    [[nodiscard]] static std::vector<fs::path> processes() {
        std::vector<fs::path> found;
        for (const auto& process : fs::directory_iterator("/proc")) {
            std::error_code notAProcess;
            const fs::path running = fs::read_symlink(process.path() / "exe", notAProcess);
            if (running.string().starts_with(packages_->root.string())) {
                found.push_back(running.lexically_relative(packages_->root));
            }
        }
        return found;
    }

    // -- its user --

    [[nodiscard]] fs::path playerFile() const { return home.path() / "evening-player"; }
    /// A copy under a name of its own, which no other process of the machine has.
    [[nodiscard]] std::string player() const {
        fs::copy_file(clientProgram("velmora_tone_app"), playerFile());
        return playerFile();
    }
    void keepMutedApplicationInActivePreset() const {
        const fs::path applications = home.path() / "data/applications";
        fs::create_directories(applications);
        std::ofstream(applications / (bundleID + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=Player\nExec=" << playerFile().string()
            << '\n';
        auto store = settings();
        PresetStore(store).save({.id = Uuid::random(),
                                 .name = "Evening",
                                 .sources = {{.kind = PresetSource::Kind::app,
                                              .name = "Player",
                                              .bundleID = bundleID,
                                              .gain = gain}}});
        const std::string source = "app-" + bundleID + "-" + std::to_string(app.pid());
        store.set("sourceMuteDirect", BooleanMap{{source, true}});
        // Away from the speakers, so that these carry nothing but the application itself.
        store.set("monitoringSelection", interface4.name + "#3");
    }
    void switchLoginStartOn() const {
        panel->choose("Réglages…");
        ASSERT_TRUE(showsSoon("Réglages Velmora"));
        // All three tabs, the appearance, the language, the switch.
        press("Réglages Velmora", {"Tab", "Tab", "Tab", "Tab", "Tab", "Tab", "space"});
        ASSERT_TRUE(waitUntil([&] { return fs::exists(loginEntry()); }));
    }
    void openAndStartTheMix() const {
        panel->choose("Ouvrir Velmora");
        ASSERT_TRUE(showsSoon("Velmora"));
        toggleMix();
    }
    void expectTheSetupHeard() const {
        EXPECT_TRUE(mic.hears(0, hz, mixedDb));
        EXPECT_TRUE(mic.hears(1, hz, mixedDb));
        EXPECT_TRUE(atSpeakers.isSilentAt(0, hz));
    }

    // -- what is left of it --

    [[nodiscard]] static Traces traces() {
        Traces found;
        const AudioGraph graph = session().graph();
        for (const GraphNode& node : graph.nodes()) {
            found.nodes.insert(node.name);
        }
        for (const GraphLink& link : graph.links()) {
            found.links.insert(link.from + " -> " + link.to);
        }
        std::istringstream lines(runToEnd({"pw-metadata"}, session().environment()));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("update:")) {
                found.metadata.insert(line);
            }
        }
        return found;
    }
    void expectNothingLeftBut(const Traces& before) const {
        EXPECT_THAT(processes(), IsEmpty());
        EXPECT_TRUE(atSpeakers.hears(0, hz, playedDb));
        EXPECT_TRUE(mic.isSilentAt(0, hz));
        static_cast<void>(waitUntil([&] { return traces() == before; }));
        const Traces after = traces();
        EXPECT_EQ(after.nodes, before.nodes);
        EXPECT_EQ(after.links, before.links);
        EXPECT_EQ(after.metadata, before.metadata);
    }

    const std::string bundleID = "org.example.player";
    std::optional<FakePanel> panel;
    ToneApp app{session(), {.program = player()}};
    Recorder mic{session(), microphone, {1, 2}};
    Recorder atSpeakers{session(), speakers.name, {1, 2}};

private:
    static inline std::unique_ptr<UnpackedPackages> packages_;
};

TEST_F(InstalledProgram, StartsAtLoginAndBringsTheSetupBackEachTime) {
    keepMutedApplicationInActivePreset();
    ChildProcess first = start({program()});
    switchLoginStartOn();
    panel->choose("Quitter Velmora");
    ASSERT_THAT(first.wait(patience), Optional(0));

    for (const char* login : {"first", "second"}) {
        SCOPED_TRACE(login);
        ChildProcess mixer = startAtLogin();
        EXPECT_TRUE(window("Velmora").empty());

        openAndStartTheMix();
        expectTheSetupHeard();

        panel->choose("Quitter Velmora");
        EXPECT_THAT(mixer.wait(patience), Optional(0));
    }
}

TEST_F(InstalledProgram, LeavesNothingBehindWhenItIsQuitInTheMiddleOfAMix) {
    keepMutedApplicationInActivePreset();
    const Traces before = traces();
    ChildProcess mixer = start({program()});
    openAndStartTheMix();
    expectTheSetupHeard();
    ASSERT_THAT(processes(),
                UnorderedElementsAre("usr/libexec/velmora/velmora-mixer",
                                     "usr/libexec/velmora/velmora-give-back"));
    const Traces during = traces();
    EXPECT_NE(during.nodes, before.nodes);
    EXPECT_NE(during.links, before.links);
    EXPECT_NE(during.metadata, before.metadata);

    panel->choose("Quitter Velmora");

    ASSERT_THAT(mixer.wait(patience), Optional(0));
    expectNothingLeftBut(before);
}

TEST_F(InstalledProgram, NamesTheIconThatThePackageBrings) {
    ChildProcess mixer = start({program()});

    EXPECT_EQ(panel->iconName(), "app.velmora.Velmora-idle-symbolic");
}

} // namespace
} // namespace velmora::packaging
