#include "presets/PresetStore.h"

#include "platform/simulated/SimulatedDefaultsStore.h"
#include "presets/PresetJson.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace velmora {
namespace {

Preset namedPreset(const std::string& name, float streamVolume = 1.0F) {
    return {.id = Uuid::random(), .name = name, .streamVolume = streamVolume};
}

Bytes asBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

class PresetStoreTest : public testing::Test {
protected:
    [[nodiscard]] std::optional<std::vector<Preset>> keptPresets() const {
        const auto bytes = defaults_.read<Bytes>("presets").value_or(Bytes{});
        return decodePresets(std::string(bytes.begin(), bytes.end()));
    }
    [[nodiscard]] std::optional<std::string> keptActiveID() const {
        return defaults_.read<std::string>("activePresetID");
    }

    SimulatedDefaultsStore defaults_;
};

// -- construction --

TEST_F(PresetStoreTest, StartsEmptyWithoutKeptPresets) {
    const PresetStore store(defaults_);

    EXPECT_TRUE(store.presets().empty());
    EXPECT_EQ(store.activeID(), std::nullopt);
    EXPECT_EQ(store.active(), nullptr);
    EXPECT_FALSE(store.didRestore());
    EXPECT_EQ(defaults_.get("presets"), std::nullopt);
}

TEST_F(PresetStoreTest, TakesUpTheKeptListAndTheActivePreset) {
    PresetStore first(defaults_);
    first.save(namedPreset("Podcast", 0.5F));
    first.save(namedPreset("Concert", 0.25F));
    first.setActive(first.presets()[0].id);

    const PresetStore second(defaults_);

    EXPECT_EQ(second.presets(), first.presets());
    EXPECT_EQ(second.activeID(), first.presets()[0].id);
    EXPECT_EQ(second.active(), &second.presets()[0]);
}

TEST_F(PresetStoreTest, AnActiveIdOfNoPresetYieldsNone) {
    PresetStore first(defaults_);
    first.save(namedPreset("Podcast"));
    for (const auto& id : {Uuid::random().string(), std::string("podcast"), std::string()}) {
        defaults_.set("activePresetID", id);

        EXPECT_EQ(PresetStore(defaults_).activeID(), std::nullopt) << id;
    }
    defaults_.set("activePresetID", 7.0);
    EXPECT_EQ(PresetStore(defaults_).activeID(), std::nullopt);
}

TEST_F(PresetStoreTest, AnActiveIdIsReadInLowerCaseToo) {
    PresetStore first(defaults_);
    first.save({.id = *Uuid::parse("f81d4fae-7dec-41d0-a765-00a0c91e6bf6"), .name = "Podcast"});
    defaults_.set("activePresetID", std::string("f81d4fae-7dec-41d0-a765-00a0c91e6bf6"));

    EXPECT_EQ(PresetStore(defaults_).activeID(), first.presets()[0].id);
}

// -- saving --

TEST_F(PresetStoreTest, SavingAppendsMakesActiveAndKeeps) {
    PresetStore store(defaults_);
    const auto podcast = namedPreset("Podcast");
    const auto concert = namedPreset("Concert");

    store.save(podcast);
    store.save(concert);

    EXPECT_EQ(store.presets(), (std::vector{podcast, concert}));
    EXPECT_EQ(store.activeID(), concert.id);
    EXPECT_EQ(keptPresets(), store.presets());
    EXPECT_EQ(keptActiveID(), concert.id.string());
}

TEST_F(PresetStoreTest, SavingUnderAUsedNameKeepsIdAndPlaceAndTakesTheContents) {
    PresetStore store(defaults_);
    const auto first = namedPreset("Podcast", 0.5F);
    store.save(first);
    store.save(namedPreset("Concert"));

    store.save(namedPreset("Podcast", 0.25F));

    ASSERT_EQ(store.presets().size(), 2U);
    EXPECT_EQ(store.presets()[0].id, first.id);
    EXPECT_EQ(store.presets()[0].name, "Podcast");
    EXPECT_EQ(store.presets()[0].streamVolume, 0.25F);
    EXPECT_EQ(store.activeID(), first.id);
    EXPECT_EQ(keptPresets(), store.presets());
}

TEST_F(PresetStoreTest, NamesCompareByCase) {
    PresetStore store(defaults_);

    store.save(namedPreset("Podcast"));
    store.save(namedPreset("podcast"));

    EXPECT_EQ(store.presets().size(), 2U);
}

TEST_F(PresetStoreTest, EveryChangeIsTold) {
    PresetStore store(defaults_);
    int told = 0;
    const auto view = store.changed().connect([&] { ++told; });

    store.save(namedPreset("Podcast"));
    EXPECT_EQ(told, 1);
    store.setActive(store.presets()[0].id);
    EXPECT_EQ(told, 2);
    store.remove(store.presets()[0].id);
    EXPECT_EQ(told, 3);
}

// -- removing --

TEST_F(PresetStoreTest, RemovingTheActivePresetLeavesNoneActiveAndRemovesTheKey) {
    PresetStore store(defaults_);
    store.save(namedPreset("Podcast"));
    ASSERT_NE(keptActiveID(), std::nullopt);

    store.remove(store.presets()[0].id);

    EXPECT_EQ(store.activeID(), std::nullopt);
    EXPECT_EQ(defaults_.get("activePresetID"), std::nullopt);
    EXPECT_EQ(keptPresets(), std::vector<Preset>{});
}

TEST_F(PresetStoreTest, RemovingAnotherPresetKeepsOrderAndTheActiveOne) {
    PresetStore store(defaults_);
    const std::vector presets{namedPreset("a"), namedPreset("b"), namedPreset("c")};
    for (const auto& preset : presets) {
        store.save(preset);
    }

    store.remove(presets[1].id);

    EXPECT_EQ(store.presets(), (std::vector{presets[0], presets[2]}));
    EXPECT_EQ(store.activeID(), presets[2].id);
    EXPECT_EQ(keptPresets(), store.presets());
}

TEST_F(PresetStoreTest, RemovingTakesEveryPresetOfThatId) {
    const auto twin = namedPreset("a");
    auto other = twin;
    other.name = "b";
    defaults_.set("presets", asBytes(encodePresets(std::vector{twin, other}).value()));
    PresetStore store(defaults_);
    ASSERT_EQ(store.presets().size(), 2U);

    store.remove(twin.id);

    EXPECT_TRUE(store.presets().empty());
}

// -- what cannot be read or written --

TEST_F(PresetStoreTest, AnUnknownKindLeavesTheListEmpty) {
    defaults_.set("presets", asBytes(R"([{"id":"f81d4fae-7dec-41d0-a765-00a0c91e6bf6",
        "name":"Podcast","sources":[{"kind":"stream","name":"Radio","gain":1}],
        "headphoneVolume":1,"streamVolume":1}])"));

    EXPECT_TRUE(PresetStore(defaults_).presets().empty());
}

TEST_F(PresetStoreTest, AnUnreadableListIsOverwrittenByTheNextSaveButCopiedBefore) {
    const auto damaged = asBytes("[{\"id\":");
    defaults_.set("presets", damaged);

    PresetStore store(defaults_);
    EXPECT_EQ(defaults_.read<Bytes>("presets"), damaged);
    store.save(namedPreset("Podcast"));

    EXPECT_EQ(keptPresets(), store.presets());
    EXPECT_EQ(defaults_.read<Bytes>("presets.unreadable"), damaged);
}

TEST_F(PresetStoreTest, EachUnreadableListIsCopiedOnceAndNoneReplacesAnother) {
    defaults_.set("presets", asBytes("first"));
    const PresetStore first(defaults_);
    const PresetStore again(defaults_);
    defaults_.set("presets", asBytes("second"));
    const PresetStore second(defaults_);
    defaults_.set("presets", asBytes("third"));
    const PresetStore third(defaults_);

    EXPECT_EQ(defaults_.read<Bytes>("presets.unreadable"), asBytes("first"));
    EXPECT_EQ(defaults_.read<Bytes>("presets.unreadable.2"), asBytes("second"));
    EXPECT_EQ(defaults_.read<Bytes>("presets.unreadable.3"), asBytes("third"));
    EXPECT_EQ(defaults_.get("presets.unreadable.4"), std::nullopt);
}

TEST_F(PresetStoreTest, AValueThatIsNotBytesIsUnreadableToo) {
    defaults_.set("presets", std::string("[]"));

    const PresetStore store(defaults_);

    EXPECT_TRUE(store.presets().empty());
    EXPECT_EQ(defaults_.read<std::string>("presets.unreadable"), "[]");
}

TEST_F(PresetStoreTest, AListThatCannotBeEncodedLeavesTheKeptOneIntact) {
    PresetStore store(defaults_);
    store.save(namedPreset("Podcast"));
    const auto before = keptPresets();

    store.save(namedPreset("Concert", std::numeric_limits<float>::quiet_NaN()));
    EXPECT_EQ(store.presets().size(), 2U);
    EXPECT_EQ(keptPresets(), before);
    EXPECT_EQ(keptActiveID(), store.presets()[1].id.string());

    store.save(namedPreset("Concert", 0.5F));
    EXPECT_EQ(keptPresets(), store.presets());
}

TEST_F(PresetStoreTest, APresetThatCannotBeWrittenStaysUntilTheProgramEnds) {
    defaults_.refuseWrites({.kind = StoreProblem::Kind::full, .status = -28});
    PresetStore store(defaults_);

    store.save(namedPreset("Podcast"));

    EXPECT_EQ(store.presets().size(), 1U);
    EXPECT_EQ(PresetStore(defaults_).presets(), store.presets());
    EXPECT_FALSE(defaults_.kept().contains("presets"));
}

} // namespace
} // namespace velmora
