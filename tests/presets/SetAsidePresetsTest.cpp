#include "presets/SetAsidePresets.h"

#include "platform/simulated/SimulatedDefaultsStore.h"
#include "presets/PresetJson.h"
#include "presets/PresetStore.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <string>
#include <vector>

namespace velmora {
namespace {

constexpr std::string_view unknownKind =
    R"({"id":"F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6","name":"Later",)"
    R"("sources":[{"kind":"stream","name":"Radio","gain":1}],)"
    R"("headphoneVolume":1,"streamVolume":1})";

class SetAside : public testing::Test {
protected:
    static Bytes asBytes(std::string_view text) { return {text.begin(), text.end()}; }
    static Preset namedPreset(const std::string& name) {
        return {.id = Uuid::random(), .name = name};
    }
    /// A list in which one preset cannot be read.
    static Bytes withUnknownKind(const std::vector<Preset>& readable) {
        const auto text = encodePresets(readable).value();
        return asBytes(text.substr(0, text.size() - 1) + (readable.empty() ? "" : ",") +
                       std::string(unknownKind) + "]");
    }
    /// The order of keys is nobody's business.
    [[nodiscard]] nlohmann::json lying(const std::string& key) const {
        return nlohmann::json::parse(defaults.read<Bytes>(key).value_or(Bytes{}));
    }
    void keep(const Bytes& list) { defaults.set("presets", list); }
    [[nodiscard]] std::vector<std::string> names(const PresetStore& store) const {
        std::vector<std::string> result;
        for (const Preset& preset : store.presets()) {
            result.push_back(preset.name);
        }
        return result;
    }

    SimulatedDefaultsStore defaults;
};

TEST_F(SetAside, IsNothingAsLongAsEverythingCanBeRead) {
    PresetStore(defaults).save(namedPreset("a"));
    const PresetStore store(defaults);

    EXPECT_TRUE(store.setAside().readable().empty());
    EXPECT_FALSE(store.setAside().hasUnreadable());
    EXPECT_FALSE(store.setAside().isNews());
}

TEST_F(SetAside, OneUnreadablePresetDoesNotCostTheOthers) {
    const std::vector readable{namedPreset("a"), namedPreset("b")};
    keep(withUnknownKind(readable));
    PresetStore store(defaults);
    EXPECT_TRUE(store.presets().empty());
    EXPECT_EQ(store.setAside().readable(), readable);
    EXPECT_TRUE(store.setAside().hasUnreadable());

    store.bringBackSetAside();

    EXPECT_EQ(store.presets(), readable);
    EXPECT_TRUE(store.setAside().readable().empty());
    EXPECT_TRUE(store.setAside().hasUnreadable());
    EXPECT_EQ(PresetStore(defaults).presets(), readable);
    EXPECT_EQ(lying("presets.unreadable"), nlohmann::json::parse(withUnknownKind({})));
}

TEST_F(SetAside, AListThatCanBeReadAgainComesBackWhole) {
    const std::vector list{namedPreset("a"), namedPreset("b")};
    defaults.set("presets.unreadable", asBytes(encodePresets(list).value()));
    PresetStore store(defaults);
    store.save(namedPreset("c"));

    store.bringBackSetAside();

    EXPECT_EQ(names(store), (std::vector<std::string>{"c", "a", "b"}));
    EXPECT_EQ(defaults.get("presets.unreadable"), std::nullopt);
    EXPECT_FALSE(store.setAside().hasUnreadable());
}

TEST_F(SetAside, AListUnderTheWrongTypeCanBeRead) {
    defaults.set("presets", encodePresets(std::vector{namedPreset("a")}).value());
    PresetStore store(defaults);
    ASSERT_TRUE(store.presets().empty());

    store.bringBackSetAside();

    EXPECT_EQ(names(store), std::vector<std::string>{"a"});
}

TEST_F(SetAside, NamesAndIdsThatAreTakenAreKeptApart) {
    const auto twin = namedPreset("a");
    defaults.set("presets.unreadable", asBytes(encodePresets(std::vector{twin}).value()));
    PresetStore store(defaults);
    auto changed = twin;
    changed.streamVolume = 0.5F;
    store.save(changed);

    store.bringBackSetAside();

    EXPECT_EQ(names(store), (std::vector<std::string>{"a", "a (2)"}));
    EXPECT_NE(store.presets()[0].id, store.presets()[1].id);
}

TEST_F(SetAside, WhatIsBackAlreadyDoesNotComeTwice) {
    const auto preset = namedPreset("a");
    defaults.set("presets.unreadable", asBytes(encodePresets(std::vector{preset}).value()));
    PresetStore store(defaults);
    store.save(preset); // as a launch leaves it that was killed in between

    store.bringBackSetAside();

    EXPECT_EQ(names(store), std::vector<std::string>{"a"});
    EXPECT_EQ(defaults.get("presets.unreadable"), std::nullopt);
}

TEST_F(SetAside, CopiesCloseUpWhenSomeAreEmptied) {
    const auto damaged = asBytes("[{\"id\":");
    defaults.set("presets.unreadable",
                 asBytes(encodePresets(std::vector{namedPreset("a")}).value()));
    defaults.set("presets.unreadable.2", damaged);
    defaults.set("presets.unreadable.3", withUnknownKind({namedPreset("b")}));
    PresetStore store(defaults);

    store.bringBackSetAside();

    EXPECT_EQ(names(store), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(defaults.read<Bytes>("presets.unreadable"), damaged);
    EXPECT_EQ(lying("presets.unreadable.2"), nlohmann::json::parse(withUnknownKind({})));
    EXPECT_EQ(defaults.get("presets.unreadable.3"), std::nullopt);
}

TEST_F(SetAside, WhatAStoreKeptBesideAListComesBackToo) {
    defaults.set("presets.unreadable", asBytes("damaged"));
    defaults.set("presets.unsaved", asBytes(encodePresets(std::vector{namedPreset("b")}).value()));
    defaults.set("presets.unsaved.2", withUnknownKind({namedPreset("c")}));
    PresetStore store(defaults);
    store.save(namedPreset("a"));
    EXPECT_TRUE(store.setAside().isNews());

    store.bringBackSetAside();

    EXPECT_EQ(names(store), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(defaults.read<Bytes>("presets.unreadable"), asBytes("damaged"));
    EXPECT_EQ(lying("presets.unreadable.2"), nlohmann::json::parse(withUnknownKind({})));
    EXPECT_EQ(defaults.get("presets.unsaved"), std::nullopt);
    EXPECT_EQ(defaults.get("presets.unsaved.2"), std::nullopt);
}

TEST_F(SetAside, NothingIsForgottenThatCouldNotBeWrittenBack) {
    const auto list = asBytes(encodePresets(std::vector{namedPreset("a")}).value());
    defaults.set("presets.unreadable", list);
    PresetStore store(defaults);
    auto endless = namedPreset("endless");
    endless.streamVolume = std::numeric_limits<float>::infinity();
    store.save(endless);

    store.bringBackSetAside();

    EXPECT_EQ(defaults.read<Bytes>("presets.unreadable"), list);
}

TEST_F(SetAside, IsNewsUntilTheUserHasBeenTold) {
    keep(asBytes("[{\"id\":"));
    PresetStore store(defaults);
    EXPECT_TRUE(store.setAside().isNews());
    EXPECT_TRUE(PresetStore(defaults).setAside().isNews());

    store.markSetAsideTold();

    EXPECT_FALSE(store.setAside().isNews());
    EXPECT_FALSE(PresetStore(defaults).setAside().isNews());
}

TEST_F(SetAside, MoreOfItIsNewsAgain) {
    keep(asBytes("first"));
    PresetStore(defaults).markSetAsideTold();
    keep(asBytes("second"));

    EXPECT_TRUE(PresetStore(defaults).setAside().isNews());
}

TEST_F(SetAside, ItIsNewsWhenMoreOfItCanBeRead) {
    keep(asBytes("damaged"));
    PresetStore(defaults).markSetAsideTold();
    defaults.set("presets.unreadable",
                 asBytes(encodePresets(std::vector{namedPreset("a")}).value()));

    EXPECT_TRUE(PresetStore(defaults).setAside().isNews());
}

TEST_F(SetAside, TheRestIsNoNewsAfterTheOthersHaveCome) {
    keep(withUnknownKind({namedPreset("a")}));
    PresetStore store(defaults);
    store.markSetAsideTold();

    store.bringBackSetAside();

    EXPECT_TRUE(store.setAside().hasUnreadable());
    EXPECT_FALSE(store.setAside().isNews());
}

TEST_F(SetAside, TheSameOnceMoreIsNewsWhenTheFirstHasGone) {
    const auto list = asBytes(encodePresets(std::vector{namedPreset("a")}).value());
    defaults.set("presets.unreadable", list);
    PresetStore store(defaults);
    store.markSetAsideTold();
    store.bringBackSetAside();
    defaults.set("presets.unreadable", list);

    EXPECT_TRUE(PresetStore(defaults).setAside().isNews());
}

} // namespace
} // namespace velmora
