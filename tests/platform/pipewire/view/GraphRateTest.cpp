#include "platform/pipewire/view/GraphRate.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

TEST(GraphRate, IsTheDaemonsUsualOneBeforeAnythingIsKnown) {
    const GraphRate rate;

    EXPECT_EQ(rate.hz(), 48000);
}

TEST(GraphRate, IsWhatTheSettingsNameBeforeTheFirstCycle) {
    GraphRate rate;
    rate.configure(44100);
    rate.measure(0);
    rate.measure(0);

    EXPECT_EQ(rate.hz(), 44100);
}

TEST(GraphRate, IsWhatCyclesSayOnceTheyAgree) {
    GraphRate rate;
    rate.configure(48000);
    rate.measure(96000);
    EXPECT_EQ(rate.hz(), 48000);

    rate.measure(96000);
    EXPECT_EQ(rate.hz(), 96000);

    rate.measure(48000);
    rate.measure(44100);
    EXPECT_EQ(rate.hz(), 96000);
}

TEST(GraphRate, HeedsTheSettingsNoMoreWhileThereAreCycles) {
    GraphRate rate;
    rate.measure(96000);
    rate.measure(96000);

    rate.configure(44100);

    EXPECT_EQ(rate.hz(), 96000);
}

TEST(GraphRate, StaysWhenTheCyclesEndUntilTheSettingsChange) {
    GraphRate rate;
    rate.configure(48000);
    rate.measure(96000);
    rate.measure(96000);

    rate.stopMeasuring();
    rate.configure(48000);
    EXPECT_EQ(rate.hz(), 96000);

    rate.configure(44100);
    EXPECT_EQ(rate.hz(), 44100);
}

} // namespace
} // namespace velmora::pipewire
