#include "platform/pipewire/view/DefaultOutputWatch.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

TEST(DefaultOutputWatch, TellsAnotherDevice) {
    DefaultOutputWatch watch;
    watch.start("speakers");

    EXPECT_FALSE(watch.update("speakers"));
    EXPECT_TRUE(watch.update("headset"));
    EXPECT_FALSE(watch.update("headset"));
}

TEST(DefaultOutputWatch, TellsTheFirstDeviceWhenThereWasNone) {
    DefaultOutputWatch watch;
    watch.start(std::nullopt);

    EXPECT_TRUE(watch.update("speakers"));
}

TEST(DefaultOutputWatch, TellsThatTheDeviceIsBackButNotThatThereIsNone) {
    DefaultOutputWatch watch;
    watch.start("speakers");

    EXPECT_FALSE(watch.update(std::nullopt));
    EXPECT_TRUE(watch.update("speakers"));
    EXPECT_FALSE(watch.update("speakers"));
}

TEST(DefaultOutputWatch, TellsTheSameDeviceAfterALoss) {
    DefaultOutputWatch watch;
    watch.start("speakers");

    watch.lose();

    EXPECT_FALSE(watch.update(std::nullopt));
    EXPECT_TRUE(watch.update("speakers"));
    EXPECT_FALSE(watch.update("speakers"));
}

} // namespace
} // namespace velmora::pipewire
