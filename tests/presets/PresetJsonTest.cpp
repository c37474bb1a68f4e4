#include "presets/PresetJson.h"

#include "presets/RandomPreset.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <string>
#include <vector>

namespace velmora {
namespace {

using Json = nlohmann::json;

constexpr std::string_view exampleID = "F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6";

/// One preset of one device channel pair, with every field.
Json exampleJson() {
    return Json::parse(R"([{
        "id": "F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6",
        "name": "Podcast",
        "sources": [{
            "kind": "deviceChannels", "name": "Interface", "bundleID": "org.example.player",
            "deviceUID": "usb-1", "first": 3, "count": 2, "gain": 0.5,
            "fx": {"lowcut": 1, "tilt": -0.25, "comp": 2, "autoGain": false, "manualDB": 3.5,
                   "reverbChar": 1, "reverbMix": 0.125, "plosive": true, "denoise": true}
        }],
        "headphoneVolume": 0.75,
        "streamVolume": 1.5
    }])");
}

Preset examplePreset() {
    return {.id = *Uuid::parse(exampleID),
            .name = "Podcast",
            .sources = {{.kind = PresetSource::Kind::deviceChannels,
                         .name = "Interface",
                         .bundleID = "org.example.player",
                         .deviceUID = "usb-1",
                         .first = 3,
                         .count = 2,
                         .gain = 0.5F,
                         .fx = FXParams{.lowcut = 1,
                                        .tilt = -0.25F,
                                        .comp = 2,
                                        .autoGain = false,
                                        .manualDB = 3.5F,
                                        .reverbChar = 1,
                                        .reverbMix = 0.125F,
                                        .plosive = true,
                                        .denoise = true}}},
            .headphoneVolume = 0.75F,
            .streamVolume = 1.5F};
}

std::optional<std::vector<Preset>> decode(const Json& json) {
    return decodePresets(json.dump());
}

/// The example with one value of its source replaced.
std::optional<std::vector<Preset>> decodeWithSource(const std::string& key, const Json& value) {
    auto json = exampleJson();
    json[0]["sources"][0][key] = value;
    return decode(json);
}

std::optional<std::vector<Preset>> decodeWithPreset(const std::string& key, const Json& value) {
    auto json = exampleJson();
    json[0][key] = value;
    return decode(json);
}

// -- writing --

TEST(PresetJson, WritesEveryFieldUnderItsKey) {
    const auto text = encodePresets(std::vector{examplePreset()});

    ASSERT_TRUE(text);
    EXPECT_EQ(Json::parse(*text), exampleJson());
}

TEST(PresetJson, LeavesOutOptionalFieldsWithoutAValue) {
    const Preset preset{.id = *Uuid::parse(exampleID),
                        .name = "Voix",
                        .sources = {{.kind = PresetSource::Kind::device, .name = "Mic"}}};

    EXPECT_EQ(encodePresets(std::vector{preset}),
              R"([{"id":"F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6","name":"Voix",)"
              R"("sources":[{"kind":"device","name":"Mic","gain":1.0}],)"
              R"("headphoneVolume":1.0,"streamVolume":1.0}])");
}

TEST(PresetJson, WritesTheThreeKindsAndNoPresets) {
    using Kind = PresetSource::Kind;
    Preset preset;
    for (const auto kind : {Kind::app, Kind::device, Kind::deviceChannels}) {
        preset.sources.push_back({.kind = kind});
    }

    const auto json = Json::parse(encodePresets(std::vector{preset}).value());

    EXPECT_EQ(json[0]["sources"][0]["kind"], "app");
    EXPECT_EQ(json[0]["sources"][1]["kind"], "device");
    EXPECT_EQ(json[0]["sources"][2]["kind"], "deviceChannels");
    EXPECT_EQ(encodePresets({}), "[]");
}

TEST(PresetJson, ANumberThatIsNotFiniteCannotBeWritten) {
    for (const auto bad : {std::numeric_limits<float>::quiet_NaN(),
                           std::numeric_limits<float>::infinity(),
                           -std::numeric_limits<float>::infinity()}) {
        std::vector<Preset> presets(6, examplePreset());
        presets[0].headphoneVolume = bad;
        presets[1].streamVolume = bad;
        presets[2].sources[0].gain = bad;
        presets[3].sources[0].fx->tilt = bad;
        presets[4].sources[0].fx->manualDB = bad;
        presets[5].sources[0].fx->reverbMix = bad;

        for (const auto& preset : presets) {
            EXPECT_EQ(encodePresets(std::vector{examplePreset(), preset}), std::nullopt);
        }
    }
}

TEST(PresetJson, AnInvalidByteInANameBecomesTheReplacementCharacter) {
    auto preset = examplePreset();
    preset.name = "a\xFFz";

    const auto decoded = decodePresets(encodePresets(std::vector{preset}).value());

    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->front().name, "a\uFFFDz");
}

TEST(PresetJson, RandomPresetsComeBackFieldByField) {
    Random random(1);
    for (int round = 0; round < 1000; ++round) {
        const std::vector presets{randomPreset(random), randomPreset(random)};

        const auto decoded = decodePresets(encodePresets(presets).value());

        ASSERT_EQ(decoded, presets) << "round " << round;
    }
}

// -- reading --

TEST(PresetJson, ReadsEveryField) {
    EXPECT_EQ(decode(exampleJson()), std::vector{examplePreset()});
}

TEST(PresetJson, ReadsAnEmptyList) {
    EXPECT_EQ(decodePresets("[]"), std::vector<Preset>{});
}

TEST(PresetJson, OnlyAListOfObjectsIsRead) {
    for (const auto* const text : {"",
                                   " ",
                                   "{}",
                                   "null",
                                   "1",
                                   "\"presets\"",
                                   "[1]",
                                   "[null]",
                                   "[[]]",
                                   "[{}]",
                                   "[] []",
                                   "[,]"}) {
        EXPECT_EQ(decodePresets(text), std::nullopt) << text;
    }
    EXPECT_EQ(decode(exampleJson()[0]), std::nullopt);
}

TEST(PresetJson, EachKeyOfAPresetIsRequired) {
    for (const auto* const key : {"id", "name", "sources", "headphoneVolume", "streamVolume"}) {
        auto json = exampleJson();
        json[0].erase(key);

        EXPECT_EQ(decode(json), std::nullopt) << key;
        EXPECT_EQ(decodeWithPreset(key, nullptr), std::nullopt) << key;
    }
}

TEST(PresetJson, KindNameAndGainOfASourceAreRequired) {
    for (const auto* const key : {"kind", "name", "gain"}) {
        auto json = exampleJson();
        json[0]["sources"][0].erase(key);

        EXPECT_EQ(decode(json), std::nullopt) << key;
        EXPECT_EQ(decodeWithSource(key, nullptr), std::nullopt) << key;
    }
}

TEST(PresetJson, OptionalFieldsOfASourceMayBeMissingOrNull) {
    auto missing = exampleJson();
    auto null = exampleJson();
    for (const auto* const key : {"bundleID", "deviceUID", "first", "count", "fx"}) {
        missing[0]["sources"][0].erase(key);
        null[0]["sources"][0][key] = nullptr;
    }
    const PresetSource expected{
        .kind = PresetSource::Kind::deviceChannels, .name = "Interface", .gain = 0.5F};

    ASSERT_TRUE(decode(missing));
    EXPECT_EQ(decode(missing)->front().sources, std::vector{expected});
    EXPECT_EQ(decode(null), decode(missing));
}

TEST(PresetJson, UnknownKeysAreIgnored) {
    auto json = exampleJson();
    json[0]["colour"] = {{"deep", {1, 2, 3}}};
    json[0]["sources"][0]["pan"] = -1;
    json[0]["sources"][0]["fx"]["chorus"] = true;

    EXPECT_EQ(decode(json), std::vector{examplePreset()});
}

TEST(PresetJson, AnUnknownKindMakesTheWholeListUnreadable) {
    auto json = exampleJson();
    json.push_back(json[0]);
    json[1]["sources"][0]["kind"] = "stream";

    EXPECT_EQ(decode(json), std::nullopt);
    for (const auto* const kind : {"App", "", "app ", "device_channels"}) {
        EXPECT_EQ(decodeWithSource("kind", kind), std::nullopt) << kind;
    }
}

TEST(PresetJson, AValueOfTheWrongTypeMakesTheWholeListUnreadable) {
    const auto object = Json::object();
    const auto list = Json::array();
    for (const auto& wrong : {Json(1), Json(true), object, list}) {
        EXPECT_EQ(decodeWithPreset("id", wrong), std::nullopt) << wrong;
        EXPECT_EQ(decodeWithPreset("name", wrong), std::nullopt) << wrong;
        for (const auto* const key : {"kind", "name", "bundleID", "deviceUID"}) {
            EXPECT_EQ(decodeWithSource(key, wrong), std::nullopt) << key << " " << wrong;
        }
    }
    for (const auto& wrong : {Json("1"), Json(true), object, list}) {
        EXPECT_EQ(decodeWithPreset("headphoneVolume", wrong), std::nullopt) << wrong;
        EXPECT_EQ(decodeWithPreset("streamVolume", wrong), std::nullopt) << wrong;
        for (const auto* const key : {"gain", "first", "count"}) {
            EXPECT_EQ(decodeWithSource(key, wrong), std::nullopt) << key << " " << wrong;
        }
    }
    for (const auto& wrong : {Json("x"), Json(1), Json(true), object}) {
        EXPECT_EQ(decodeWithPreset("sources", wrong), std::nullopt) << wrong;
    }
    for (const auto& wrong : {Json("x"), Json(1), Json(true), list, Json{{"comp", "x"}}}) {
        EXPECT_EQ(decodeWithSource("fx", wrong), std::nullopt) << wrong;
    }
}

TEST(PresetJson, EffectSettingsMayBePartOfTheirKeys) {
    EXPECT_EQ(decodeWithSource("fx", Json::object())->front().sources[0].fx, FXParams{});
    EXPECT_EQ(decodeWithSource("fx", {{"comp", 2}})->front().sources[0].fx, FXParams{.comp = 2});
}

TEST(PresetJson, AnIdIsReadInEitherCaseAndWrittenInOne) {
    const auto lower = decodeWithPreset("id", "f81d4fae-7dec-41d0-a765-00a0c91e6bf6").value();

    EXPECT_EQ(lower.front().id, examplePreset().id);
    EXPECT_EQ(Json::parse(encodePresets(lower).value())[0]["id"], exampleID);
    EXPECT_EQ(decodeWithPreset("id", "f81d4fae"), std::nullopt);
}

TEST(PresetJson, AWholeNumberMayBeWrittenWithAPoint) {
    EXPECT_EQ(decodeWithSource("first", 3.0), std::vector{examplePreset()});
    EXPECT_EQ(decodeWithSource("gain", 2)->front().sources[0].gain, 2.0F);
    EXPECT_EQ(decodeWithSource("first", 2.5), std::nullopt);
}

TEST(PresetJson, ANumberOutOfRangeMakesTheWholeListUnreadable) {
    const auto withGain = [](const std::string& number) {
        auto text = exampleJson().dump();
        text.replace(text.find("\"gain\":0.5"), 10, "\"gain\":" + number);
        return decodePresets(text);
    };

    EXPECT_EQ(withGain("3.4028234663852886e38")->front().sources[0].gain,
              std::numeric_limits<float>::max());
    EXPECT_EQ(withGain("1e-400")->front().sources[0].gain, 0.0F);
    EXPECT_EQ(withGain("3.5e38"), std::nullopt);
    EXPECT_EQ(withGain("-1e308"), std::nullopt);
    EXPECT_EQ(withGain("1e400"), std::nullopt);
    EXPECT_EQ(withGain(std::string(100'000, '9')), std::nullopt);
    EXPECT_EQ(withGain("NaN"), std::nullopt);
    EXPECT_EQ(decodeWithSource("count", std::numeric_limits<std::int64_t>::min())
                  ->front()
                  .sources[0]
                  .count,
              std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(decodeWithSource("count", 9223372036854775808U), std::nullopt);
    EXPECT_EQ(decodeWithSource("count", 1e19), std::nullopt);
    EXPECT_EQ(decodeWithSource("count", 0x1p63), std::nullopt); // one more than the largest
    EXPECT_EQ(decodeWithSource("count", 0x1.fffffffffffffp62)->front().sources[0].count,
              9223372036854774784);
}

TEST(PresetJson, InvalidUtf8IsNotRead) {
    for (const auto* const bytes :
         {"\xFF", "\xC3", "\xED\xA0\x80", "\xC0\xAF", "\xF5\x80\x80\x80"}) {
        auto text = exampleJson().dump();
        text.insert(text.find("Podcast"), bytes);

        EXPECT_EQ(decodePresets(text), std::nullopt);
    }
    EXPECT_EQ(decodePresets(R"([{"name": "\ud800"}])"), std::nullopt);
}

TEST(PresetJson, NamesOfThreeHundredCharactersAreKeptWhole) {
    std::string name;
    for (int count = 0; count < 300; ++count) {
        name += "é";
    }
    auto preset = examplePreset();
    preset.name = name;
    preset.sources[0].name = name;

    EXPECT_EQ(decodePresets(encodePresets(std::vector{preset}).value()), std::vector{preset});
}

// -- size and depth --

constexpr std::size_t tenMegabytes = 10'000'000;

std::string repeated(std::string_view piece, std::size_t bytes) {
    std::string text;
    text.reserve(bytes + piece.size());
    while (text.size() < bytes) {
        text += piece;
    }
    return text;
}

/// The example with an unknown key that holds `depth` nested lists.
std::string withNestedUnknownKey(std::size_t depth) {
    auto text = exampleJson().dump();
    text.insert(2, "\"unknown\":" + std::string(depth, '[') + std::string(depth, ']') + ",");
    return text;
}

TEST(PresetJson, TenMegabytesOfNestingAreNotRead) {
    EXPECT_EQ(decodePresets(std::string(tenMegabytes, '[')), std::nullopt);
    EXPECT_EQ(
        decodePresets(std::string(tenMegabytes / 2, '[') + std::string(tenMegabytes / 2, ']')),
        std::nullopt);
    EXPECT_EQ(decodePresets(repeated("[{\"sources\":", tenMegabytes)), std::nullopt);
    EXPECT_EQ(decodePresets(withNestedUnknownKey(tenMegabytes / 2)), std::nullopt);
}

TEST(PresetJson, NestingIsReadUpToALimit) {
    constexpr std::size_t deepest = 512;
    constexpr std::size_t around = 2; // the list and the preset

    EXPECT_EQ(decodePresets(withNestedUnknownKey(deepest - around)), std::vector{examplePreset()});
    EXPECT_EQ(decodePresets(withNestedUnknownKey(deepest - around + 1)), std::nullopt);
}

TEST(PresetJson, TenMegabytesInOneLevelAreRead) {
    auto json = exampleJson();
    json[0]["padding"] = repeated("0123456789", tenMegabytes);

    EXPECT_EQ(decode(json), std::vector{examplePreset()});
    EXPECT_EQ(decodePresets("[" + repeated("0,", tenMegabytes) + "0]"), std::nullopt);
}

TEST(PresetJson, AHundredThousandUnknownKeysAreIgnored) {
    auto json = exampleJson();
    for (int number = 0; number < 100'000; ++number) {
        const auto key = "unknown" + std::to_string(number);
        json[0][key] = number;
        json[0]["sources"][0]["fx"][key] = number;
    }

    EXPECT_EQ(decode(json), std::vector{examplePreset()});
}

} // namespace
} // namespace velmora
