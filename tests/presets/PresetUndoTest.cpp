// Edits of the list of presets that are taken back.

#include "presets/PresetStore.h"

#include "platform/simulated/SimulatedDefaultsStore.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmora {
namespace {

class PresetUndo : public testing::Test {
protected:
    PresetUndo() {
        for (const auto* const name : {"a", "b", "c"}) {
            save(name, 1.0F);
        }
    }
    DisplacedPresets save(const std::string& name, float streamVolume) {
        return store.save({.id = Uuid::random(), .name = name, .streamVolume = streamVolume});
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const Preset& preset : store.presets()) {
            result.push_back(preset.name);
        }
        return result;
    }
    [[nodiscard]] Uuid idOf(std::size_t index) const { return store.presets()[index].id; }
    void expectKept() {
        const PresetStore later(defaults);
        EXPECT_EQ(later.presets(), store.presets());
        EXPECT_EQ(later.activeID(), store.activeID());
    }

    SimulatedDefaultsStore defaults;
    PresetStore store{defaults};
};

TEST_F(PresetUndo, ADeletedPresetReturnsToItsPlace) {
    const auto before = store.presets();

    store.bringBack(store.remove(idOf(1)));

    EXPECT_EQ(store.presets(), before);
    expectKept();
}

TEST_F(PresetUndo, ADeletedActivePresetIsActiveAgain) {
    const auto id = idOf(2);
    const auto displaced = store.remove(id);
    ASSERT_EQ(store.activeID(), std::nullopt);

    store.bringBack(displaced);

    EXPECT_EQ(store.activeID(), id);
    expectKept();
}

TEST_F(PresetUndo, APresetThatBecameActiveMeanwhileStaysActive) {
    const auto displaced = store.remove(idOf(2));
    store.setActive(idOf(0));

    store.bringBack(displaced);

    EXPECT_EQ(store.activeID(), idOf(0));
}

TEST_F(PresetUndo, AReplacedPresetHasItsContentsAgain) {
    const auto before = store.presets();
    const auto active = store.activeID();

    store.bringBack(save("b", 0.5F));

    EXPECT_EQ(store.presets(), before);
    EXPECT_EQ(store.activeID(), active);
    expectKept();
}

TEST_F(PresetUndo, AFirstSaveTakesNothingAway) {
    EXPECT_TRUE(save("d", 1.0F).entries.empty());
}

TEST_F(PresetUndo, OtherEditsInBetweenStay) {
    const auto displaced = store.remove(idOf(1));
    save("d", 1.0F);
    store.remove(idOf(0));

    store.bringBack(displaced);

    EXPECT_EQ(names(), (std::vector<std::string>{"c", "b", "d"}));
    expectKept();
}

TEST_F(PresetUndo, APlaceBeyondTheEndIsTheEnd) {
    const auto displaced = store.remove(idOf(2));
    store.remove(idOf(1));
    store.remove(idOf(0));

    store.bringBack(displaced);

    EXPECT_EQ(names(), std::vector<std::string>{"c"});
}

TEST_F(PresetUndo, ANameTakenMeanwhileIsKeptApart) {
    const auto displaced = store.remove(idOf(1));
    save("b", 0.5F);

    store.bringBack(displaced);

    EXPECT_EQ(names(), (std::vector<std::string>{"a", "b (2)", "c", "b"}));
}

TEST_F(PresetUndo, AReplacedPresetReturnsEvenWhenItsSuccessorWasDeleted) {
    const auto replaced = save("b", 0.5F);
    store.remove(idOf(1));

    store.bringBack(replaced);

    EXPECT_EQ(names(), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(store.presets()[1].streamVolume, 1.0F);
    expectKept();
}

TEST_F(PresetUndo, TwoEditsAreUndoneInTurn) {
    const auto before = store.presets();
    const auto replaced = save("b", 0.5F);
    const auto deleted = store.remove(idOf(1));

    store.bringBack(deleted);
    store.bringBack(replaced);

    EXPECT_EQ(store.presets(), before);
}

} // namespace
} // namespace velmora
