// Applications inside control groups, as desktops make them, and what is launched inside those.

#include "MixerTest.h"

#include "presets/PresetRecall.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <system_error>

#include <unistd.h>

namespace velmora {
namespace {

using namespace support;
namespace fs = std::filesystem;
using ::testing::SizeIs;

/// The folder of this process's own group; none where the kernel has no groups of the second kind.
fs::path ownGroup() {
    std::ifstream mounts("/proc/self/mountinfo");
    std::ifstream groups("/proc/self/cgroup");
    for (std::string mount; std::getline(mounts, mount);) {
        if (mount.find(" - cgroup2 ") == std::string::npos) {
            continue;
        }
        std::istringstream words(mount);
        std::string word;
        std::string folder;
        words >> word >> word >> word >> word >> folder;
        for (std::string group; std::getline(groups, group);) {
            if (group.starts_with("0::/")) {
                return fs::path(folder) / group.substr(4);
            }
        }
    }
    return {};
}

/// A group such as a desktop makes for one application. Whatever is inside ends with it.
class Scope {
public:
    explicit Scope(const std::string& application)
        : outside_(ownGroup()),
          folder_(outside_ / ("app-" + application + "-" + std::to_string(getpid()) + ".scope")) {
        std::error_code refused;
        isMade_ = !outside_.empty() && fs::create_directory(folder_, refused);
    }
    ~Scope() {
        leave();
        static_cast<void>(waitUntil([this] {
            std::ifstream inside(folder_ / "cgroup.procs");
            for (pid_t pid = 0; inside >> pid;) {
                ::kill(pid, SIGKILL);
            }
            std::error_code occupied;
            fs::remove(folder_, occupied);
            return !occupied;
        }));
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    /// False where this process may make none.
    [[nodiscard]] bool isMade() const { return isMade_; }

    /// This process and what it starts from now on is inside.
    void enter() const { move(folder_); }
    void leave() const { move(outside_); }

    /// A shell's line that brings the shell and what it starts inside.
    [[nodiscard]] std::string entering() const {
        return "echo $$ > '" + (folder_ / "cgroup.procs").string() + "'; ";
    }

private:
    static void move(const fs::path& group) { std::ofstream(group / "cgroup.procs") << getpid(); }

    fs::path outside_;
    fs::path folder_;
    bool isMade_ = false;
};

class ControlGroups : public ListeningMixerTest {
protected:
    ControlGroups() { writeWav(sound, makeTone({.hz = {leftHz, rightHz}, .db = playedDb}, 60)); }
    ~ControlGroups() override {
        for (const auto& entry : entries_) {
            fs::remove(entry);
        }
    }
    void SetUp() override {
        if (!scope.isMade()) {
            GTEST_SKIP() << "no control groups can be made here";
        }
    }

    fs::path
    install(const std::string& id, const std::string& name, const std::string& exec = "true") {
        entries_.push_back(session().applicationsFolder() / (id + ".desktop"));
        std::ofstream(entries_.back())
            << "[Desktop Entry]\nType=Application\nName=" << name << "\nExec=" << exec << "\n";
        return entries_.back();
    }

    /// What a launcher leaves with the shell that it starts.
    static std::string mark(const fs::path& entry) {
        return "export GIO_LAUNCHED_DESKTOP_FILE='" + entry.string() +
               "' GIO_LAUNCHED_DESKTOP_FILE_PID=$$; ";
    }

    /// The playing application of this name.
    AudioSource playingAs(const std::string& name) {
        std::optional<AudioSource> found;
        EXPECT_TRUE(waitUntil([&] {
            discovery.refresh();
            for (const AudioSource& source : discovery.runningApps()) {
                if (source.name() == name && discovery.playingPIDs().contains(source.app()->pid)) {
                    found = source;
                }
            }
            return found.has_value();
        })) << name
            << " does not play";
        return found.value_or(AppSource{.pid = 0, .name = "missing", .bundleID = "missing"});
    }

private:
    std::vector<fs::path> entries_;

protected:
    const Scope scope{"org.example.Chat"};
    const fs::path sound = folder.path() / "sound.wav";
    const fs::path chat = install("org.example.Chat", "Chat");
};

TEST_F(ControlGroups, OfAChatProgramHoldNoBrowserThatItOpened) {
    const fs::path browser = install("org.example.Browser", "Browser");
    // Each shell becomes, or waits for, what it starts.
    const std::string opened = mark(browser) + "exec paplay '" + sound.string() + "'";
    std::ofstream(folder.path() / "open") << opened << "\n";
    const ChildProcess program = session().start(
        {"sh",
         "-c",
         scope.entering() + mark(chat) + "sh '" + (folder.path() / "open").string() + "'; true"},
        "chat");

    const AudioSource source = playingAs("Browser");

    EXPECT_EQ(source.app()->bundleID, "org.example.Browser");
    EXPECT_NE(source.app()->pid, program.pid());
    EXPECT_THAT(platform.applications.byBundleID("org.example.Browser"), SizeIs(1));
    mix({source});
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
}

TEST_F(ControlGroups, OfALauncherHoldNoGameThatRunsUnderAWrapper) {
    const fs::path game = install("org.example.Game", "Game");
    // The wrapper stays and waits; the game bears its mark.
    std::ofstream(folder.path() / "wrapper")
        << mark(game) << "env A=1 paplay '" << sound.string() << "'; true\n";
    const ChildProcess program = session().start(
        {"sh",
         "-c",
         scope.entering() + mark(chat) + "sh '" + (folder.path() / "wrapper").string() + "'; true"},
        "launcher");

    const AudioSource source = playingAs("Game");

    EXPECT_EQ(source.app()->bundleID, "org.example.Game");
    EXPECT_THAT(platform.applications.byBundleID("org.example.Game"), SizeIs(1));
}

TEST_F(ControlGroups, NameWhatNobodyHasLaunchedInside) {
    const ChildProcess program = session().start(
        {"sh", "-c", scope.entering() + "paplay '" + sound.string() + "'; true"}, "chat");

    EXPECT_EQ(playingAs("Chat").app()->bundleID, "org.example.Chat");
}

/// The mixer itself is in the group.
TEST_F(ControlGroups, OfTheMixerHoldNoApplicationThatARecallOpens) {
    const fs::path player = folder.path() / "radio";
    fs::copy_file(clientProgram("velmora_tone_app"), player);
    std::ostringstream exec;
    exec << player.string() << " --play " << leftHz << ' ' << rightHz << ' ' << playedDb;
    const std::string id = "org.example.radio";
    install(id, "Radio", exec.str());
    scope.enter();
    AudioEngine& mixer = engine;
    PresetRecall recall{platform, mixer};
    const Preset preset{
        .id = Uuid::random(),
        .name = "Setup",
        .sources = {{.kind = PresetSource::Kind::app, .name = "Radio", .bundleID = id, .fx = {}}}};
    const auto instances = [&] { return platform.applications.byBundleID(id); };
    mix({input(interface4.description, 1, 2)});

    recall.apply(preset, {.launchClosedApps = true, .quiet = false});
    ASSERT_TRUE(waitUntil(
        [&] { return mixer.sources().size() == 1 && mixer.sources().front().app() != nullptr; }));
    const AudioSource source = mixer.sources().front();
    EXPECT_EQ(source.app()->bundleID, id);
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    recall.apply(preset, {.launchClosedApps = true, .quiet = false});

    EXPECT_THAT(recall.opening(), SizeIs(0));
    EXPECT_EQ(mixer.sources(), std::vector{source});
    EXPECT_EQ(mixer.lastError(), std::nullopt);
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_THAT(instances(), SizeIs(1));
    for (const auto& instance : instances()) {
        ::kill(instance.pid, SIGKILL);
    }
    EXPECT_TRUE(waitUntil([&] { return instances().empty(); }));
}

} // namespace
} // namespace velmora
