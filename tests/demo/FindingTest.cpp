#include "Report.h"

#include <gtest/gtest.h>

namespace velmora::demo {
namespace {

Finding finding(double predictedDb, double foundDb) {
    return {.recording = "microphone.wav",
            .source = "player",
            .hz = 440,
            .predictedDb = predictedDb,
            .foundDb = foundDb};
}

TEST(Finding, MayDifferByHalfADecibelInEitherDirection) {
    EXPECT_TRUE(finding(-20, -20.5).isAsPredicted());
    EXPECT_TRUE(finding(-20, -19.5).isAsPredicted());
    EXPECT_FALSE(finding(-20, -20.6).isAsPredicted());
    EXPECT_FALSE(finding(-20, -19.4).isAsPredicted());
}

TEST(Finding, OfAMutedSourceMustBeNothing) {
    EXPECT_TRUE(finding(Finding::absent, -200).isAsPredicted());
    EXPECT_FALSE(finding(Finding::absent, -59).isAsPredicted());
}

TEST(Finding, OneThatIsWrongMakesTheWholeWrong) {
    EXPECT_TRUE(allAsPredicted({finding(-20, -20), finding(-30, -30)}));
    EXPECT_FALSE(allAsPredicted({finding(-20, -20), finding(-30, -200)}));
}

} // namespace
} // namespace velmora::demo
