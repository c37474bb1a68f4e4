#include "support/ChildProcess.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const std::filesystem::path desktopFolder = std::filesystem::path(PACKAGING_FOLDER) / "desktop";
const std::filesystem::path desktopEntry = desktopFolder / "app.velmora.Velmora.desktop";
const std::filesystem::path metainfo = desktopFolder / "app.velmora.Velmora.metainfo.xml";

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What a validator says, whether or not it is content.
std::string verdict(const std::vector<std::string>& arguments) {
    try {
        return support::runToEnd(arguments, support::currentEnvironment());
    } catch (const std::runtime_error& refusal) {
        return refusal.what();
    }
}

TEST(DesktopFiles, TheDesktopEntryIsValid) {
    EXPECT_EQ(verdict({"desktop-file-validate", desktopEntry}), "");
}

// What it may miss is the owner's to choose: a licence and, for later versions of the tool, a page.
TEST(DesktopFiles, TheMetainfoLacksNothingButALicenceAndAPage) {
    const std::string said = verdict({"appstreamcli", "validate", "--no-net", metainfo});

    EXPECT_THAT(said, HasSubstr("metadata-license-missing"));
    EXPECT_THAT(said, HasSubstr("errors: 1,"));
    if (said.find("url-homepage-missing") == std::string::npos) {
        EXPECT_THAT(said, Not(HasSubstr("warnings:")));
    } else {
        EXPECT_THAT(said, HasSubstr("warnings: 1,"));
    }
}

TEST(DesktopFiles, EveryFileNamesTheSameIdentifier) {
    const std::string text = textOf(metainfo);

    EXPECT_THAT(text, HasSubstr("<id>app.velmora.Velmora</id>"));
    EXPECT_THAT(text, HasSubstr("<launchable type=\"desktop-id\">app.velmora.Velmora.desktop<"));
    EXPECT_THAT(textOf(desktopEntry), HasSubstr("\nIcon=app.velmora.Velmora\n"));
}

} // namespace
} // namespace velmora
