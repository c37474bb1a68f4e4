#include "platform/desktop/AutostartEntry.h"

#include "platform/contract/LoginItemContract.h"
#include "platform/desktop/ExecLine.h"
#include "platform/desktop/FakeDesktop.h"
#include "platform/desktop/Gio.h"
#include "platform/sqlite/Unprivileged.h"
#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A home in a folder of the test's own, which may lose its right to write.
class AutostartRig {
public:
    LoginItem& item() { return entry; }

    void refuse() {
        fs::create_directories(autostart);
        fs::permissions(autostart, fs::perms::owner_read | fs::perms::owner_exec);
        unprivileged_.emplace(home.path());
    }
    void allow() {
        unprivileged_.reset();
        fs::permissions(autostart, fs::perms::owner_all);
    }
    void changeElsewhere(bool enabled) {
        write("[Desktop Entry]\nType=Application\nName=Velmora\nExec=/bin/true\nHidden=" +
              std::string(enabled ? "false" : "true") + "\n");
    }

    void write(const std::string& content) const { FakeDesktop::write(entry.file(), content); }
    [[nodiscard]] std::string read() const {
        std::ifstream file(entry.file());
        return {std::istreambuf_iterator<char>(file), {}};
    }

    support::TemporaryFolder home{"velmora-autostart"};
    fs::path autostart = home.path() / "config" / "autostart";
    AutostartEntry entry{autostart, "/bin/true"};

private:
    std::optional<Unprivileged> unprivileged_;
};

class AutostartEntryTest : public testing::Test {
protected:
    AutostartRig rig;
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, LoginItemContract, AutostartRig);

namespace {

TEST_F(AutostartEntryTest, WritesOneWholeEntry) {
    ASSERT_TRUE(rig.entry.registerItem().has_value());

    EXPECT_EQ(rig.read(),
              "[Desktop Entry]\n"
              "Type=Application\n"
              "Version=1.4\n"
              "Name=Velmora\n"
              "Exec=/bin/true --hidden\n"
              "TryExec=/bin/true\n"
              "Icon=app.velmora.Velmora\n"
              "Terminal=false\n"
              "X-GNOME-Autostart-enabled=true\n");
    EXPECT_THAT(std::vector<fs::path>(fs::directory_iterator(rig.autostart), {}),
                ElementsAre(rig.autostart / "app.velmora.Velmora.desktop"));
}

TEST_F(AutostartEntryTest, RemovesItsFileAndNothingElse) {
    ASSERT_TRUE(rig.entry.registerItem().has_value());
    FakeDesktop::write(rig.autostart / "other.desktop", "other");

    ASSERT_TRUE(rig.entry.unregisterItem().has_value());

    EXPECT_FALSE(fs::exists(rig.entry.file()));
    EXPECT_TRUE(fs::exists(rig.autostart / "other.desktop"));
}

TEST_F(AutostartEntryTest, IsOffWhenADesktopSwitchedItOff) {
    ASSERT_TRUE(rig.entry.registerItem().has_value());
    const std::string written = rig.read();

    rig.write(written + "Hidden=true\n");
    EXPECT_FALSE(rig.entry.isEnabled());
    rig.write(written + "X-GNOME-Autostart-enabled=false\n");
    EXPECT_FALSE(rig.entry.isEnabled());
    rig.write(written + "Hidden=false\n");
    EXPECT_TRUE(rig.entry.isEnabled());
}

TEST_F(AutostartEntryTest, IsOnAgainOnceItIsRegisteredOverADisabledEntry) {
    rig.write("[Desktop Entry]\nType=Application\nName=Velmora\nExec=/bin/true\nHidden=true\n");

    ASSERT_TRUE(rig.entry.registerItem().has_value());

    EXPECT_TRUE(rig.entry.isEnabled());
}

TEST_F(AutostartEntryTest, IsOffWhenTheFileIsNoApplicationOrItsProgramIsGone) {
    for (const char* const content :
         {"",
          "no entry at all",
          "[Desktop Entry]\nHidden=false\n",
          "[Desktop Entry]\nType=Link\nName=Velmora\nURL=file:///\n",
          "[Desktop Entry]\nType=Application\nName=Velmora\nExec=/nowhere/velmora\n",
          "[Desktop Entry]\nType=Application\nName=Velmora\nExec=/bin/true\n"
          "TryExec=/nowhere/velmora\n"}) {
        rig.write(content);

        EXPECT_FALSE(rig.entry.isEnabled()) << content;
    }
}

TEST_F(AutostartEntryTest, NamesTheFileThatCannotBeWrittenOrRemoved) {
    ASSERT_TRUE(rig.entry.registerItem().has_value());
    rig.refuse();

    const auto unregistered = rig.entry.unregisterItem();
    const auto registered = rig.entry.registerItem();
    rig.allow();

    EXPECT_THAT(unregistered.error(), HasSubstr("app.velmora.Velmora.desktop"));
    EXPECT_THAT(registered.error(), HasSubstr("app.velmora.Velmora.desktop"));
    EXPECT_TRUE(rig.entry.isEnabled());
}

TEST_F(AutostartEntryTest, SaysSoWhenTheFolderCannotBeMade) {
    FakeDesktop::write(rig.home.path() / "config", "a file in the folder's place");

    const auto outcome = rig.entry.registerItem();

    ASSERT_FALSE(outcome.has_value());
    EXPECT_THAT(outcome.error(), HasSubstr("autostart"));
}

TEST_F(AutostartEntryTest, StartsAProgramWhateverItsPathHolds) {
    const fs::path program =
        rig.home.path() / "a \"b\" $HOME `c` \\d 'e' ~f;g&h(i)" / " j\tk\nl\rm" / "velmora";
    const fs::path trace = rig.home.path() / "started";
    FakeDesktop::write(program, "#!/bin/sh\necho started > '" + trace.string() + "'\n");
    fs::permissions(program, fs::perms::owner_all);
    AutostartEntry entry(rig.autostart, program);

    ASSERT_TRUE(entry.registerItem().has_value());
    ASSERT_TRUE(entry.isEnabled());
    const AppInfo info(g_desktop_app_info_new_from_filename(entry.file().c_str()));
    ASSERT_TRUE(g_app_info_launch(G_APP_INFO(info.get()), nullptr, nullptr, nullptr));

    EXPECT_TRUE(support::waitUntil([&] { return fs::exists(trace); }));
}

TEST(ExecLine, QuotesWhatAShellWouldRead) {
    EXPECT_EQ(execLine("/usr/bin/velmora"), "/usr/bin/velmora");
    EXPECT_EQ(execLine("/opt/my apps/velmora"), "\"/opt/my apps/velmora\"");
    EXPECT_EQ(execLine("/opt/$x/velmora"), R"("/opt/\$x/velmora")");
    EXPECT_EQ(execLine(R"(/opt/a"b/velmora)"), R"("/opt/a\"b/velmora")");
    EXPECT_EQ(execLine(R"(/opt/a\b/velmora)"), R"("/opt/a\\b/velmora")");
    EXPECT_EQ(execLine("/opt/100%/velmora"), "/opt/100%%/velmora");
}

TEST(AutostartEntry, KnowsTheRunningProgram) {
    EXPECT_EQ(AutostartEntry::ownProgram().filename(), "desktop_test");
}

} // namespace
} // namespace velmora
