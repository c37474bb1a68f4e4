// A store that cannot be written, read or trusted is told once, and the mix goes on sounding
// exactly as it does on a store without trouble.
#include "durability/Change.h"

#include "durability/SmallDisk.h"
#include "platform/simulated/SimulatedDefaultsStore.h"
#include "platform/sqlite/StoreFixture.h"
#include "platform/sqlite/StoreSchema.h"
#include "platform/sqlite/Unprivileged.h"

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <map>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// What a launch was like for the user.
struct Session {
    std::vector<float> heard{}; ///< at the virtual microphone and the speakers
    KeptSettings settings{};    ///< at its end
};

std::map<fs::path, std::string> filesIn(const fs::path& folder) {
    std::map<fs::path, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        files[entry.path()] = contentOf(entry.path());
    }
    return files;
}

class StoreTrouble : public testing::Test {
protected:
    StoreTrouble() {
        disk.now = std::chrono::sys_days{std::chrono::year{2025} / 3 / 14} + std::chrono::hours{12};
    }

    /// Mixes through a hundred changes. `atChange` runs before each, with its place in the session.
    Session session(
        DefaultsStore& store, const std::function<void(int place)>& atChange = [](int) {}) {
        Studio studio;
        Mixer mixer(studio, store);
        perform(Launch{}, mixer);
        Session session;
        for (int place = 0; place < changes; ++place) {
            atChange(place);
            perform(randomChange(nextChange + static_cast<std::uint64_t>(place)), mixer);
            for (int block = 0; block < 3; ++block) {
                std::ranges::copy(studio.nextBlock(), std::back_inserter(session.heard));
            }
        }
        session.settings = mixer.kept();
        return session;
    }

    /// A session that went well leaves the same in both stores.
    void earlierSession() {
        session(untroubled);
        session(disk.store());
        disk.quit();
        nextChange += changes;
        ASSERT_THAT(told(), IsEmpty());
    }

    /// Expects the troubled session to sound and end as one without trouble does.
    void expectTheSameAsWithoutTrouble(const std::function<void(int place)>& atChange = [](int) {
    }) {
        const Session expected = session(untroubled);

        const Session troubled = session(disk.store(), atChange);

        EXPECT_TRUE(troubled.heard == expected.heard);
        EXPECT_TRUE(troubled.settings == expected.settings);
        EXPECT_GT(*std::ranges::max_element(expected.heard), 0.1F) << "nothing was heard at all";
    }

    /// Every sentence that the user was told.
    [[nodiscard]] std::vector<std::string> told() const {
        std::vector<std::string> sentences;
        for (const StoreProblem& problem : disk.problems) {
            sentences.push_back(frenchSentence(problemOf(problem)));
        }
        return sentences;
    }
    void expectToldAndOver(const auto& sentence) {
        EXPECT_THAT(told(), ElementsAre(sentence));
        EXPECT_THAT(disk.store().problems(), IsEmpty());
        EXPECT_TRUE(nextLaunchFinds() == everything());
        EXPECT_EQ(disk.problems.size(), 1U);
    }

    KeptSettings nextLaunchFinds() {
        disk.nextLaunch();
        Studio studio;
        return Mixer(studio, disk.store()).kept();
    }
    /// What a launch finds in a store that has had no trouble.
    KeptSettings everything() {
        Studio studio;
        return Mixer(studio, untroubled).kept();
    }

    [[nodiscard]] std::string path() const { return disk.path(); }
    [[nodiscard]] fs::path folder() const { return disk.path().parent_path(); }
    /// Beginnings of sentences: what follows is a number of the system's, and advice.
    [[nodiscard]] auto cannotWrite() const {
        return StartsWith("Impossible d'écrire les réglages dans " + path() + " (err ");
    }
    [[nodiscard]] auto noSpace() const {
        return StartsWith("Plus de place pour les réglages dans " + path() + " (err ");
    }
    [[nodiscard]] std::string damagedAndKeptAs(const fs::path& place) const {
        return "Le fichier des réglages " + path() +
               " était endommagé. Il a été mis de côté sous " + place.string() +
               " et ce qui pouvait encore en être lu est dans un nouveau fichier.";
    }

    static constexpr int changes = 100;
    static constexpr int half = changes / 2;
    static constexpr int threeQuarters = 3 * changes / 4;

    std::uint64_t nextChange = 1;
    SimulatedDefaultsStore untroubled;
    StoreOnDisk disk;
};

// -- no permission --

TEST_F(StoreTrouble, InAFolderThatRefusesWritingLeavesTheSoundAndTheEarlierSettings) {
    earlierSession();
    const KeptSettings earlier = everything();
    const Unprivileged user(disk.folder());
    fs::permissions(folder(), fs::perms::owner_read | fs::perms::owner_exec);

    expectTheSameAsWithoutTrouble();

    EXPECT_THAT(told(), ElementsAre(cannotWrite()));
    EXPECT_TRUE(nextLaunchFinds() == earlier);
    fs::permissions(folder(), fs::perms::owner_all);
}

TEST_F(StoreTrouble, WithAReadOnlyFileIsOverOnceTheFileMayBeWritten) {
    earlierSession();
    const Unprivileged user(disk.folder());
    fs::permissions(disk.path(), fs::perms::owner_read);

    expectTheSameAsWithoutTrouble([&](int place) {
        if (place == half) {
            fs::permissions(disk.path(), fs::perms::owner_read | fs::perms::owner_write);
        }
    });

    expectToldAndOver(cannotWrite());
}

TEST_F(StoreTrouble, WhereNoFolderCanBeMadeLeavesTheSound) {
    write(folder(), "in the way");

    expectTheSameAsWithoutTrouble();

    EXPECT_THAT(told(), ElementsAre(cannotWrite()));
    EXPECT_EQ(contentOf(folder()), "in the way");
}

// -- no space --

TEST_F(StoreTrouble, ForWantOfSpaceIsOverOnceThereIsSpace) {
    earlierSession();

    expectTheSameAsWithoutTrouble([&](int place) {
        if (place == half) {
            disk.refuseWrites();
        } else if (place == threeQuarters) {
            disk.allowWrites();
        }
    });

    expectToldAndOver(noSpace());
}

// -- a file that cannot be trusted --

TEST_F(StoreTrouble, WithADamagedFileSetsItAsideAndBeginsAnew) {
    const std::string damage(10'000, '\xA5');
    write(disk.path(), damage);
    const fs::path aside = folder() / "settings-damaged-2025-03-14.sqlite";

    expectTheSameAsWithoutTrouble();

    EXPECT_THAT(told(), ElementsAre(damagedAndKeptAs(aside)));
    EXPECT_TRUE(contentOf(aside) == damage);
    EXPECT_TRUE(nextLaunchFinds() == everything());
    EXPECT_EQ(disk.problems.size(), 1U);
}

TEST_F(StoreTrouble, WithASecondDamageOnTheSameDayKeepsBothFiles) {
    for (const char* damage : {"first", "second"}) {
        untroubled = SimulatedDefaultsStore();
        disk.quit();
        write(disk.path(), damage);
        expectTheSameAsWithoutTrouble();
    }

    const fs::path first = folder() / "settings-damaged-2025-03-14.sqlite";
    const fs::path second = folder() / "settings-damaged-2025-03-14-2.sqlite";
    EXPECT_THAT(told(), ElementsAre(damagedAndKeptAs(first), damagedAndKeptAs(second)));
    EXPECT_EQ(contentOf(first), "first");
    EXPECT_EQ(contentOf(second), "second");
}

TEST_F(StoreTrouble, WithTheFileOfALaterVersionLeavesItUntouched) {
    earlierSession();
    runSql(disk.path(), "PRAGMA user_version=" + std::to_string(newestStoreVersion() + 1));
    const auto before = filesIn(folder());
    // Its values are used as far as this version understands them: all of them here.

    expectTheSameAsWithoutTrouble();
    disk.quit();

    EXPECT_THAT(told(),
                ElementsAre("Le fichier des réglages " + path() +
                            " vient d'une version plus récente de Velmora. Il reste intact ; rien "
                            "ne sera enregistré cette fois."));
    EXPECT_TRUE(filesIn(folder()) == before);
}

/// The same with the store's folder on a disk of its own.
class StoreTroubleOnSmallDisk : public StoreTrouble {
protected:
    void SetUp() override {
        if (!small.isMounted()) {
            GTEST_SKIP() << "this system lets the user mount nothing; StoreTrouble's tests bring "
                            "the same trouble about in other ways";
        }
    }

    SmallDisk small{disk.folder()};
};

TEST_F(StoreTroubleOnSmallDisk, FilledUpMeanwhileIsOverOnceThereIsSpace) {
    earlierSession();

    expectTheSameAsWithoutTrouble([&](int place) {
        if (place == half) {
            small.fill();
        } else if (place == threeQuarters) {
            small.free();
        }
    });

    expectToldAndOver(noSpace());
}

TEST_F(StoreTroubleOnSmallDisk, FullToTheEndLeavesTheEarlierSettings) {
    earlierSession();
    const KeptSettings earlier = everything();
    small.fill();

    expectTheSameAsWithoutTrouble();

    EXPECT_THAT(told(), ElementsAre(noSpace()));
    EXPECT_TRUE(nextLaunchFinds() == earlier);
}

TEST_F(StoreTroubleOnSmallDisk, ReadOnlyForEveryUserIsOverOnceItMayBeWritten) {
    earlierSession();
    small.setReadOnly(true);

    expectTheSameAsWithoutTrouble([&](int place) {
        if (place == half) {
            small.setReadOnly(false);
        }
    });

    expectToldAndOver(cannotWrite());
}

} // namespace
} // namespace velmora
