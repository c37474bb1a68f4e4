#include "presets/PresetFile.h"

#include "presets/PresetStore.h"
#include "presets/RandomPreset.h"

#include "platform/simulated/SimulatedDefaultsStore.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <random>
#include <string>
#include <vector>

namespace velmora {
namespace {

Preset podcast() {
    return {.id = Uuid::random(),
            .name = "Podcast",
            .sources = {{.kind = PresetSource::Kind::app,
                         .name = "Player",
                         .bundleID = "org.player",
                         .gain = 0.5F,
                         .fx = FXParams{.lowcut = 1}}},
            .streamVolume = 0.25F};
}

std::string written(const std::vector<Preset>& presets) {
    return encodePresetFile(presets).value();
}

PresetFileFault faultOf(std::string_view text) {
    const auto presets = decodePresetFile(text);
    EXPECT_FALSE(presets.has_value()) << text;
    return presets.has_value() ? PresetFileFault{} : presets.error();
}

/// A file of one preset with something else in the place of `key`.
std::string fileWith(const char* key, const nlohmann::json& value) {
    auto file = nlohmann::json::parse(written({podcast()}));
    file[key] = value;
    return file.dump();
}

TEST(PresetFile, GivesBackWhatWasWritten) {
    const std::vector presets{podcast(), Preset{.id = Uuid::random(), .name = "Empty"}};

    EXPECT_EQ(decodePresetFile(written(presets)), presets);
}

TEST(PresetFile, IsReadableJsonWithAFormatAndAVersion) {
    const auto text = written({podcast()});
    const auto file = nlohmann::json::parse(text);

    EXPECT_EQ(file.at("format"), "Velmora presets");
    EXPECT_EQ(file.at("version"), 1);
    EXPECT_EQ(file.at("presets").at(0).at("name"), "Podcast");
    EXPECT_NE(text.find("\n      \"name\": \"Podcast\",\n"), text.npos) << text;
    EXPECT_TRUE(text.ends_with("}\n"));
}

TEST(PresetFile, WhatALaterVersionOfThisFormatAddsIsPassedOver) {
    EXPECT_TRUE(decodePresetFile(fileWith("comment", "by hand")).has_value());
}

TEST(PresetFile, ANewerVersionIsToldApart) {
    EXPECT_EQ(faultOf(fileWith("version", 2)), PresetFileFault::newer);
}

TEST(PresetFile, AForeignFileIsRefused) {
    for (const auto* const text : {"",
                                   "Hello",
                                   "{}",
                                   "[]",
                                   "null",
                                   "7",
                                   "\"Velmora presets\"",
                                   "\xff\xfe",
                                   R"({"format":"Velmora presets"})",
                                   R"({"format":"Velmora presets","version":1})"}) {
        EXPECT_EQ(faultOf(text), PresetFileFault::unreadable);
    }
    EXPECT_EQ(faultOf(fileWith("format", "Other")), PresetFileFault::unreadable);
    EXPECT_EQ(faultOf(fileWith("format", 1)), PresetFileFault::unreadable);
    for (const nlohmann::json& version : {nlohmann::json("1"),
                                          nlohmann::json(0),
                                          nlohmann::json(-1),
                                          nlohmann::json(1.5),
                                          nlohmann::json(nullptr)}) {
        EXPECT_EQ(faultOf(fileWith("version", version)), PresetFileFault::unreadable) << version;
    }
}

TEST(PresetFile, AFileWithoutPresetsIsRefused) {
    EXPECT_EQ(faultOf(fileWith("presets", nlohmann::json::array())), PresetFileFault::unreadable);
    EXPECT_EQ(faultOf(fileWith("presets", nlohmann::json::object())), PresetFileFault::unreadable);
}

TEST(PresetFile, EveryTruncationIsRefused) {
    const auto text = written({podcast()});

    for (std::size_t size = 0; size + 2 < text.size(); ++size) {
        EXPECT_EQ(faultOf(text.substr(0, size)), PresetFileFault::unreadable) << size;
    }
}

TEST(PresetFile, OneBadPresetRefusesTheFile) {
    auto file = nlohmann::json::parse(written({podcast(), podcast()}));
    file["presets"][1].erase("name");

    EXPECT_EQ(faultOf(file.dump()), PresetFileFault::unreadable);
}

TEST(PresetFile, AFileOfEndlessDepthOrSizeIsRefused) {
    EXPECT_EQ(faultOf(std::string(1'000'000, '[')), PresetFileFault::unreadable);
    EXPECT_EQ(faultOf(written({podcast()}) + std::string(largestPresetFile, ' ')),
              PresetFileFault::unreadable);
}

TEST(PresetFile, ANumberThatIsNotFiniteCannotBeWritten) {
    auto loud = podcast();
    loud.streamVolume = std::numeric_limits<float>::infinity();

    EXPECT_EQ(encodePresetFile(std::vector{loud}), std::nullopt);
}

TEST(PresetFile, AnythingThatCanBeKeptCanBeCarried) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const std::vector presets{randomPreset(random), randomPreset(random)};

        EXPECT_EQ(decodePresetFile(written(presets)), presets);
    }
}

// -- taken into the store --

class CarriedPresets : public testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const Preset& preset : store.presets()) {
            result.push_back(preset.name);
        }
        return result;
    }

    SimulatedDefaultsStore defaults;
    PresetStore store{defaults};
};

TEST_F(CarriedPresets, ComeLastUnderNamesThatAreKeptApart) {
    store.save(podcast());
    const auto active = store.activeID();

    const auto ids = store.add({podcast(), podcast(), {.name = "Radio"}});

    EXPECT_EQ(names(),
              (std::vector<std::string>{"Podcast", "Podcast (2)", "Podcast (3)", "Radio"}));
    EXPECT_EQ(store.activeID(), active);
    ASSERT_EQ(ids.size(), 3U);
    EXPECT_EQ(store.presets()[3].id, ids[2]);
    EXPECT_EQ(PresetStore(defaults).presets(), store.presets());
}

TEST_F(CarriedPresets, OfOurOwnGetIdsOfTheirOwn) {
    store.save(podcast());

    store.add(decodePresetFile(encodePresetFile(store.presets()).value()).value());

    ASSERT_EQ(store.presets().size(), 2U);
    EXPECT_NE(store.presets()[0].id, store.presets()[1].id);
    EXPECT_EQ(store.presets()[0].sources, store.presets()[1].sources);
}

TEST_F(CarriedPresets, AreRemovedTogether) {
    store.save(podcast());
    const auto before = store.presets();
    const auto ids = store.add({podcast(), podcast()});
    store.setActive(ids[1]);

    store.removeAll(ids);

    EXPECT_EQ(store.presets(), before);
    EXPECT_EQ(store.activeID(), std::nullopt);
    EXPECT_EQ(PresetStore(defaults).presets(), before);
}

} // namespace
} // namespace velmora
