#include "effects/FXParamsJson.h"

#include "effects/Signals.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <random>
#include <string>

namespace velmora {
namespace {

std::string nested(std::size_t depth) {
    return R"({"x":)" + std::string(depth, '[') + std::string(depth, ']') + "}";
}

TEST(FXParamsJson, WritesAllNineKeysInOrderEvenAtTheirDefaults) {
    EXPECT_EQ(encodeFXParams({}),
              R"({"lowcut":0,"tilt":0.0,"comp":0,"autoGain":true,"manualDB":0.0,)"
              R"("reverbChar":0,"reverbMix":0.0,"plosive":false,"denoise":false})");
}

TEST(FXParamsJson, ReadsBackWhatItWrote) {
    EXPECT_EQ(decodeFXParams(encodeFXParams(everyEffect)), everyEffect);
}

TEST(FXParamsJson, KeepsEveryFiniteNumberExactly) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        const auto numbers = arbitraryBits(random, 1);
        FXParams params{.lowcut = static_cast<std::int64_t>(random()) << 31U};
        params.tilt = std::isfinite(numbers[0]) ? numbers[0] : 0.1F;
        params.reverbMix = std::isfinite(numbers[1]) ? numbers[1] : 0.2F;
        EXPECT_EQ(decodeFXParams(encodeFXParams(params)), params);
    }
}

TEST(FXParamsJson, RefusesToWriteANumberThatJsonDoesNotHave) {
    EXPECT_THROW((void)encodeFXParams({.tilt = notANumber}), FXParamsError);
    EXPECT_THROW((void)encodeFXParams({.manualDB = infinity}), FXParamsError);
    EXPECT_THROW((void)encodeFXParams({.reverbMix = -infinity}), FXParamsError);
}

TEST(FXParamsJson, ReadsAnEmptyObjectAsTheDefault) {
    EXPECT_EQ(decodeFXParams("{}"), FXParams{});
    EXPECT_TRUE(decodeFXParams("{}").autoGain);
}

TEST(FXParamsJson, ReadsNullAsTheFieldsDefault) {
    EXPECT_EQ(decodeFXParams(R"({"lowcut":null,"tilt":null,"comp":null,"autoGain":null,
                                 "manualDB":null,"reverbChar":null,"reverbMix":null,
                                 "plosive":null,"denoise":null})"),
              FXParams{});
}

TEST(FXParamsJson, ReadsSingleFieldsThatAreNotNeutral) {
    EXPECT_FALSE(decodeFXParams(R"({"autoGain": false})").isNeutral());
    EXPECT_FALSE(decodeFXParams(R"({"reverbChar": 2})").isNeutral());
}

TEST(FXParamsJson, IgnoresUnknownKeys) {
    EXPECT_EQ(decodeFXParams(R"({"comp": 2, "extra": 1, "Comp": "x"})"), FXParams{.comp = 2});
}

TEST(FXParamsJson, TakesTheLastOfRepeatedKeys) {
    EXPECT_EQ(decodeFXParams(R"({"comp": 1, "comp": 3})").comp, 3);
}

TEST(FXParamsJson, ReadsWholeNumbersWrittenWithAFraction) {
    EXPECT_EQ(decodeFXParams(R"({"comp": 2.0})").comp, 2);
    EXPECT_EQ(decodeFXParams(R"({"lowcut": -1e2})").lowcut, -100);
}

TEST(FXParamsJson, ReadsIntegersAsFloats) {
    EXPECT_EQ(decodeFXParams(R"({"manualDB": -6})").manualDB, -6.0F);
}

TEST(FXParamsJson, ReadsTheWholeRangeOfIntegers) {
    using Limits = std::numeric_limits<std::int64_t>;
    EXPECT_EQ(decodeFXParams(R"({"comp": 9223372036854775807})").comp, Limits::max());
    EXPECT_EQ(decodeFXParams(R"({"comp": -9223372036854775808})").comp, Limits::min());
}

class FXParamsJsonRefuses : public testing::TestWithParam<std::string> {};

TEST_P(FXParamsJsonRefuses, WithItsOwnError) {
    EXPECT_THROW((void)decodeFXParams(GetParam()), FXParamsError);
}

INSTANTIATE_TEST_SUITE_P(WrongKinds,
                         FXParamsJsonRefuses,
                         testing::Values(R"({"comp": "x"})",
                                         R"({"comp": 2.5})",
                                         R"({"comp": true})",
                                         R"({"comp": [1]})",
                                         R"({"comp": {}})",
                                         R"({"tilt": "0"})",
                                         R"({"tilt": false})",
                                         R"({"autoGain": 1})",
                                         R"({"plosive": "true"})",
                                         R"({"denoise": 0.0})"));

INSTANTIATE_TEST_SUITE_P(NumbersOutOfRange,
                         FXParamsJsonRefuses,
                         testing::Values(R"({"comp": 9223372036854775808})",
                                         R"({"comp": -9223372036854775809})",
                                         R"({"comp": 9223372036854775808.0})",
                                         R"({"comp": 1e19})",
                                         R"({"comp": -1e19})",
                                         R"({"tilt": 1e39})",
                                         R"({"tilt": 1e999})"));

INSTANTIATE_TEST_SUITE_P(WhatIsNoObject,
                         FXParamsJsonRefuses,
                         testing::Values("",
                                         " ",
                                         "null",
                                         "[]",
                                         "3",
                                         "\"lowcut\"",
                                         "{",
                                         "{\"comp\":}",
                                         "{} {}",
                                         "{\"tilt\": NaN}",
                                         "{\"comp\": 1,}",
                                         "{\"\xff\": 1}",
                                         "{\"comp\": \"\xc3\"}",
                                         std::string(100'000, '['),
                                         std::string(100'000, '{')));

TEST(FXParamsJson, SurvivesDeepNesting) {
    EXPECT_EQ(decodeFXParams(nested(200'000)), FXParams{});
}

TEST(FXParamsJson, SurvivesAnyDamageToAText) {
    std::mt19937 random(11);
    const std::string whole = encodeFXParams(everyEffect);
    for (int round = 0; round < 5000; ++round) {
        std::string damaged = whole;
        damaged[random() % damaged.size()] = static_cast<char>(random());
        damaged.resize(random() % (damaged.size() + 1));
        try {
            (void)decodeFXParams(damaged);
        } catch (const FXParamsError&) {
            // Most damage is told; some only changes a value.
        }
    }
    EXPECT_EQ(decodeFXParams(whole), everyEffect);
}

TEST(FXParamsJson, IsPartOfALargerDocument) {
    const nlohmann::ordered_json document{{"effects", toJson(everyEffect)}};

    EXPECT_EQ(fxParamsFromJson(document.at("effects")), everyEffect);
    EXPECT_THROW((void)fxParamsFromJson(nlohmann::ordered_json::array()), FXParamsError);
}

} // namespace
} // namespace velmora
