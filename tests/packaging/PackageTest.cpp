#include "packaging/Staged.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <regex>
#include <string>
#include <vector>

namespace velmora::packaging {
namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const auto commonFiles = {"usr/bin/velmora",
                          "usr/libexec/velmora/velmora-give-back",
                          "usr/libexec/velmora/velmora-mixer",
                          "usr/share/applications/app.velmora.Velmora.desktop",
                          "usr/share/metainfo/app.velmora.Velmora.metainfo.xml",
                          "usr/share/dbus-1/interfaces/app.velmora.Mixer1.xml",
                          "usr/lib/systemd/user/velmora-headless.service",
                          "usr/share/man/man1/velmora.1.gz",
                          "usr/share/man/fr/man1/velmora.1.gz",
                          "usr/share/bash-completion/completions/velmora",
                          "usr/share/zsh/vendor-completions/_velmora",
                          "usr/share/fish/vendor_completions.d/velmora.fish",
                          "usr/share/icons/hicolor/scalable/apps/app.velmora.Velmora.svg",
                          "usr/share/doc/velmora/changelog.gz",
                          "usr/share/doc/velmora-microphone/changelog.gz",
                          "usr/share/doc/velmora/fonts/AlbertSans-OFL.txt",
                          "usr/share/doc/velmora/fonts/BricolageGrotesque-OFL.txt",
                          "usr/share/pipewire/pipewire.conf.d/velmora-microphone.conf"};

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The first match's first group; empty = none.
std::string firstOf(const std::string& text, const std::string& pattern) {
    std::smatch match;
    return std::regex_search(text, match, std::regex(pattern)) ? match[1].str() : "";
}

class Package : public ::testing::Test {
protected:
    static void SetUpTestSuite() { packages_ = std::make_unique<UnpackedPackages>(); }
    static void TearDownTestSuite() { packages_.reset(); }

    static std::string field(const std::filesystem::path& package, const std::string& name) {
        return support::runToEnd({"dpkg-deb", "--field", package, name},
                                 support::currentEnvironment());
    }

    static inline std::unique_ptr<UnpackedPackages> packages_;
};

TEST_F(Package, HoldsTheProgramAndWhatADesktopLooksFor) {
    const auto files = filesIn(packages_->root);

    for (const std::string file : commonFiles) {
        EXPECT_THAT(files, Contains(file));
    }
}

TEST_F(Package, HoldsTheIconsThatTheTrayItemNames) {
    const auto files = filesIn(packages_->root);

    for (const std::string look : {"idle", "level-00", "level-16"}) {
        EXPECT_THAT(files,
                    Contains("usr/share/icons/hicolor/scalable/status/app.velmora.Velmora-" + look +
                             "-symbolic.svg"));
    }
    EXPECT_THAT(files, Not(Contains(HasSubstr("hicolor/scalable/status/made"))));
}

TEST_F(Package, NamesWhatNoLinkShows) {
    const std::string depends = field(packages_->mixerPackage, "Depends");

    for (const std::string package : {"qml6-module-qtquick,",
                                      "qml6-module-qtquick-window,",
                                      "qml6-module-qtqml-models,",
                                      "qml6-module-qtqml-workerscript,",
                                      "libqt6svg6 (<< 6.7.2-5~) | qt6-svg-plugins,",
                                      "libpipewire-0.3-0",
                                      "libsqlite3-0 "}) {
        EXPECT_THAT(depends, HasSubstr(package));
    }
}

TEST_F(Package, LeavesTheMicrophoneToAPackageOfItsOwn) {
    EXPECT_THAT(field(packages_->mixerPackage, "Recommends"), HasSubstr("velmora-microphone"));
    EXPECT_EQ(field(packages_->microphonePackage, "Depends"), "pipewire\n");
    EXPECT_EQ(field(packages_->microphonePackage, "Architecture"), "all\n");
}

TEST_F(Package, LooksForItsLibrariesWhereTheSystemHasThem) {
    const std::string dynamic = support::runToEnd(
        {"readelf", "--dynamic", packages_->root / "usr/libexec/velmora/velmora-mixer"},
        support::currentEnvironment());

    EXPECT_THAT(dynamic, HasSubstr("libpipewire-0.3.so.0"));
    EXPECT_THAT(dynamic, Not(HasSubstr("PATH)")));
}

// A licence and the address of whoever maintains it. Newer lintian has the metadata judged as well,
// which lack the licence too; DesktopFilesTest names all that they may lack.
TEST_F(Package, LacksOnlyWhatItsOwnerIsToGive) {
    const auto verdict = packages_->folder.path() / "lintian";
    runPatiently({"sh",
                  "-c",
                  R"(exec lintian --allow-root --fail-on none "$@" >"$0")",
                  verdict,
                  packages_->mixerPackage,
                  packages_->microphonePackage});

    std::ifstream said(verdict);
    std::vector<std::string> lines;
    for (std::string line; std::getline(said, line);) {
        lines.push_back(line);
    }
    EXPECT_THAT(lines, Contains(HasSubstr("no-copyright-file"))); // it has looked
    EXPECT_THAT(lines,
                Each(AnyOf(HasSubstr(": no-copyright-file"),
                           HasSubstr(": malformed-contact Maintainer "),
                           HasSubstr(": bogus-mail-host-in-debian-changelog "),
                           HasSubstr(": appstream-metadata-validation-failed "))));
}

// They are most of a start, and a command has no use for them.
TEST_F(Package, ACommandWaitsForNoLibraryOfTheWindows) {
    const std::string loaded = support::runToEnd({"ldd", packages_->root / "usr/bin/velmora"},
                                                 support::currentEnvironment());

    EXPECT_THAT(loaded, HasSubstr("libQt6DBus"));
    for (const char* library : {"libQt6Gui", "libQt6Widgets", "libQt6Qml", "libpipewire"}) {
        EXPECT_THAT(loaded, Not(HasSubstr(library)));
    }
}

TEST_F(Package, CarriesTheHistoryOfTheReleases) {
    const std::string history = textOf(CHANGELOG);
    const std::string debian =
        support::runToEnd({"gzip", "-dc", packages_->root / "usr/share/doc/velmora/changelog.gz"},
                          support::currentEnvironment());

    const std::string latest = firstOf(history, "\n## ([0-9][^ ]*) - ");
    EXPECT_EQ(latest, PACKAGE_VERSION);
    EXPECT_THAT(debian, ::testing::StartsWith("velmora (" + latest + ") "));
    EXPECT_THAT(textOf(PACKAGING_FOLDER "/desktop/app.velmora.Velmora.metainfo.xml"),
                HasSubstr("<releases>\n    <release version=\"" + latest + "\" date=\"" +
                          firstOf(history, "\n## [0-9][^ ]* - ([0-9-]+)\n") + "\"/>"));
    EXPECT_THAT(debian, Not(HasSubstr("Unreleased")));
}

TEST(Installation, IsRemovedWithoutATrace) {
    support::TemporaryFolder root("velmora-install");
    auto environment = support::currentEnvironment();
    environment["DESTDIR"] = root.path();
    runPatiently({CMAKE_PROGRAM, "--install", BUILD_FOLDER, "--prefix", "/usr"}, environment);
    const auto installed = filesIn(root.path());
    EXPECT_THAT(installed, Contains("usr/bin/velmora"));

    runPatiently({CMAKE_PROGRAM, "-P", BUILD_FOLDER "/packaging/Uninstall.cmake"}, environment);

    EXPECT_THAT(filesIn(root.path()), IsEmpty());
}

} // namespace
} // namespace velmora::packaging
