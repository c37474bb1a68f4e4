#include "operations/EffectWords.h"

#include "operations/OperationsFixture.h"

#include <gmock/gmock.h>
#include <set>

namespace velmora {
namespace {

using testing::HasSubstr;

class EffectWordsTest : public OperationsFixture {
protected:
    FXParams with(const std::string& name, const std::string& value) {
        return withEffect({}, name, value, settings).value();
    }
    std::string refusal(const std::string& name, const std::string& value) {
        const auto answer = withEffect({}, name, value, settings);
        return answer ? "taken" : answer.error().sentence;
    }
};

TEST_F(EffectWordsTest, EveryEffectIsSetByItsWord) {
    EXPECT_EQ(with("lowcut", "150").lowcut, 2);
    EXPECT_EQ(with("tone", "-50").tilt, -0.5F);
    EXPECT_EQ(with("compressor", "3").comp, 3);
    EXPECT_EQ(with("reverb", "25").reverbMix, 0.25F);
    EXPECT_EQ(with("room", "hall").reverbChar, 2);
    EXPECT_TRUE(with("plosives", "on").plosive);
    EXPECT_TRUE(with("noise", "on").denoise);
}

TEST_F(EffectWordsTest, ALevelOfOnesOwnEndsTheAutomaticOne) {
    const FXParams params = with("level", "-3.5");

    EXPECT_FALSE(params.autoGain);
    EXPECT_EQ(params.manualDB, -3.5F);
    EXPECT_TRUE(withEffect(params, "level", "auto", settings).value().autoGain);
}

TEST_F(EffectWordsTest, EveryValueReadsAsItIsWritten) {
    for (const auto& [name, value] :
         std::vector<std::pair<std::string, std::string>>{{"lowcut", "75"},
                                                          {"tone", "33"},
                                                          {"compressor", "2"},
                                                          {"reverb", "67"},
                                                          {"room", "plate"},
                                                          {"level", "-11.5"},
                                                          {"plosives", "on"},
                                                          {"noise", "on"}}) {
        EXPECT_THAT(effectValues(with(name, value)), testing::Contains(testing::Pair(name, value)));
    }
}

TEST_F(EffectWordsTest, WhatNoEffectTakesIsRefusedWithWhatItTakes) {
    for (const auto& [name, value] :
         std::vector<std::pair<std::string, std::string>>{{"lowcut", "80"},
                                                          {"tone", "101"},
                                                          {"tone", "nan"},
                                                          {"reverb", "-1"},
                                                          {"reverb", "inf"},
                                                          {"level", "12.5"},
                                                          {"noise", "yes"},
                                                          {"room", ""}}) {
        EXPECT_THAT(refusal(name, value), HasSubstr("no value of " + name)) << value;
    }
    EXPECT_THAT(refusal("lowcut", "80"), HasSubstr("off, 75, 150"));
}

TEST_F(EffectWordsTest, AnUnknownEffectIsAnsweredWithThoseThatThereAre) {
    const std::string sentence = refusal("echo", "on");

    EXPECT_THAT(sentence, HasSubstr("“echo”"));
    for (const EffectWord& word : effectWords()) {
        EXPECT_THAT(sentence, HasSubstr(std::string(word.name)));
    }
}

TEST_F(EffectWordsTest, StepsOutOfRangeReadAsTheStepThatIsHeard) {
    FXParams odd;
    odd.lowcut = 9;
    odd.comp = -1;

    const auto values = effectValues(odd);

    EXPECT_THAT(values, testing::Contains(testing::Pair("lowcut", "150")));
    EXPECT_THAT(values, testing::Contains(testing::Pair("compressor", "off")));
}

} // namespace
} // namespace velmora
