#include "house/IncludeRules.h"

#include "support/TemporaryFolder.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class IncludeRulesTest : public testing::Test {
protected:
    void write(const std::string& file, const std::string& content) {
        const auto path = folder.path() / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << content;
    }

    [[nodiscard]] std::vector<std::string> forbidden() const {
        return forbiddenIncludes(folder.path(), parts);
    }

    support::TemporaryFolder folder{"velmora-house"};
    std::vector<Part> parts{
        {"cellar"},
        {"ground", {"cellar"}, {Library{"wood/", "stone.h"}}},
        {"roof", {"ground"}},
    };
};

TEST_F(IncludeRulesTest, LetAFolderIncludeItselfAndEverythingBelow) {
    write("cellar/Barrel.h", "");
    write("ground/Door.h", "#include \"cellar/Barrel.h\"\n");
    write("roof/Tile.h", "#include \"cellar/Barrel.h\"\n#include \"ground/Door.h\"\n");
    write("roof/Tile.cpp", "#include \"roof/Tile.h\"\n");

    EXPECT_THAT(forbidden(), IsEmpty());
}

TEST_F(IncludeRulesTest, TellFileAndLineOfAnIncludeUpwards) {
    write("ground/Door.h", "");
    write("cellar/Barrel.h", "// Barrel.h\n\n#include \"ground/Door.h\"\n#include <vector>\n");

    EXPECT_THAT(forbidden(),
                ElementsAre("cellar/Barrel.h:3: cellar may not include \"ground/Door.h\""));
}

TEST_F(IncludeRulesTest, LetEveryFolderIncludeTheStandardLibrary) {
    write("cellar/Barrel.cpp", "#include <vector>\n#include <cstdint>\n#include <stop_token>\n");

    EXPECT_THAT(forbidden(), IsEmpty());
}

TEST_F(IncludeRulesTest, LetOnlyTheFolderThatNamesALibraryIncludeIt) {
    const std::string content = "#include <wood/oak.h>\n#include <stone.h>\n";
    write("ground/Door.cpp", content);
    write("roof/Tile.cpp", content);

    EXPECT_THAT(forbidden(),
                ElementsAre("roof/Tile.cpp:1: roof may not include <wood/oak.h>",
                            "roof/Tile.cpp:2: roof may not include <stone.h>"));
}

TEST_F(IncludeRulesTest, ForbidALibraryThatNobodyNames) {
    write("ground/Door.cpp", "#include <QString>\n#include <math.h>\n");

    EXPECT_THAT(forbidden(),
                ElementsAre("ground/Door.cpp:1: ground may not include <QString>",
                            "ground/Door.cpp:2: ground may not include <math.h>"));
}

TEST_F(IncludeRulesTest, HoldForFoldersInFolders) {
    write("ground/hall/Door.h", "");
    write("cellar/wine/Barrel.h", "#include \"ground/hall/Door.h\"\n");

    EXPECT_THAT(
        forbidden(),
        ElementsAre("cellar/wine/Barrel.h:1: cellar may not include \"ground/hall/Door.h\""));
}

TEST_F(IncludeRulesTest, LetAFolderInAFolderHaveItsOwnPlace) {
    parts.insert(parts.begin(), {"ground/stairs", {}, {}});
    write("ground/stairs/Step.h", "#include <wood/oak.h>\n");
    write("ground/Door.h", "#include \"ground/stairs/Step.h\"\n");

    EXPECT_THAT(forbidden(),
                ElementsAre("ground/Door.h:1: ground may not include \"ground/stairs/Step.h\"",
                            "ground/stairs/Step.h:1: ground/stairs may not include <wood/oak.h>"));
}

TEST_F(IncludeRulesTest, LetTheFilesOfOneNameHaveTheirOwnPlace) {
    parts = {{"ground/Key"}, {"cellar", {"ground/Key"}}, {"ground", {"cellar"}}};
    write("ground/Key.h", "");
    write("ground/Key.cpp", "#include \"cellar/Barrel.h\"\n");
    write("ground/KeyRing.h", "");
    write("cellar/Barrel.h", "#include \"ground/Key.h\"\n#include \"ground/KeyRing.h\"\n");

    EXPECT_THAT(forbidden(),
                ElementsAre("cellar/Barrel.h:2: cellar may not include \"ground/KeyRing.h\"",
                            "ground/Key.cpp:1: ground/Key may not include \"cellar/Barrel.h\""));
}

TEST_F(IncludeRulesTest, WantEveryIncludeWrittenFromTheRoot) {
    write("roof/Tile.h", "");
    write("roof/Tile.cpp", "#include \"Tile.h\"\n#include \"roof/../roof/Tile.h\"\n");
    write("roof/Nail.cpp", "#include \"roof/Hammer.h\"\n");

    EXPECT_THAT(forbidden(),
                ElementsAre("roof/Nail.cpp:1: \"roof/Hammer.h\" is no file from the root",
                            "roof/Tile.cpp:1: \"Tile.h\" is no file from the root",
                            "roof/Tile.cpp:2: \"roof/../roof/Tile.h\" is no file from the root"));
}

TEST_F(IncludeRulesTest, TellAFolderThatHasNoPlace) {
    write("garden/Tree.h", "#include <wood/oak.h>\n");
    write("garden/Tree.qml", "Item {}\n");

    EXPECT_THAT(forbidden(), ElementsAre("garden/Tree.h: belongs to no part"));
}

TEST_F(IncludeRulesTest, ReadIncludesHoweverTheyAreSpaced) {
    write("cellar/Barrel.h",
          "// #include <QString>\n  #  include  <QString> // why\n#include<QObject>");

    EXPECT_THAT(forbidden(),
                ElementsAre("cellar/Barrel.h:2: cellar may not include <QString>",
                            "cellar/Barrel.h:3: cellar may not include <QObject>"));
}

TEST_F(IncludeRulesTest, RefuseAHouseThatStandsOnItsRoof) {
    parts = {{"cellar", {"roof"}}, {"roof", {}}};

    EXPECT_THROW(static_cast<void>(forbidden()), std::invalid_argument);
}

} // namespace
} // namespace velmora
