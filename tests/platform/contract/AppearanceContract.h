// AppearanceContract.h: what every Appearance does, whoever decides on it.
#pragma once

#include "platform/Appearance.h"

#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <utility>
#include <vector>

namespace velmora {

/// A rig is a desktop that starts with nothing special and has `appearance()`; `ask(look)`, which
/// makes it ask for that; and `runUntil(condition)`, which runs the main thread's work until the
/// condition holds and gives up after long enough.
template <typename Rig>
class AppearanceContract : public testing::Test {
protected:
    Appearance& appearance() { return rig.appearance(); }

    /// Returns when the change has arrived.
    void ask(const Appearance::Look& look) {
        rig.ask(look);
        EXPECT_TRUE(rig.runUntil([&] { return appearance().look() == look; }));
    }
    void turn(bool dark) { ask({.isDark = dark}); }

    Rig rig;
};

TYPED_TEST_SUITE_P(AppearanceContract);

TYPED_TEST_P(AppearanceContract, FollowsTheDesktopToDarkAndBack) {
    EXPECT_FALSE(this->appearance().isDark());

    this->turn(true);
    this->turn(false);
}

TYPED_TEST_P(AppearanceContract, FollowsWhatEyesAndMindsAskForAndTellsIt) {
    int told = 0;
    this->appearance().onChange([&] { ++told; });

    this->ask({.isHighContrast = true});
    this->ask({});
    this->ask({.isStill = true});
    this->ask({});
    this->ask({.textScale = 1.25});
    this->ask({});

    EXPECT_EQ(told, 6);
}

TYPED_TEST_P(AppearanceContract, TellsEachChangeOnceWhenItHasHappened) {
    std::vector<bool> told;
    this->appearance().onChange([&] { told.push_back(this->appearance().isDark()); });

    this->turn(true);
    this->turn(false);
    this->turn(true);

    EXPECT_EQ(told, (std::vector{true, false, true}));
}

TYPED_TEST_P(AppearanceContract, TellsOnTheMainThread) {
    std::vector<std::thread::id> tellers;
    this->appearance().onChange([&] { tellers.push_back(std::this_thread::get_id()); });

    this->turn(true);

    EXPECT_EQ(tellers, std::vector{std::this_thread::get_id()});
}

TYPED_TEST_P(AppearanceContract, TellsEveryListener) {
    int first = 0;
    int second = 0;
    int third = 0;
    for (int* told : {&first, &second, &third}) {
        this->appearance().onChange([told] { ++*told; });
    }

    this->turn(true);
    this->turn(false);

    EXPECT_EQ(first, 2);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(third, 2);
}

TYPED_TEST_P(AppearanceContract, TellsAListenerOnlyWhatChangesAfterItCame) {
    this->turn(true);
    int told = 0;
    this->appearance().onChange([&] { ++told; });
    EXPECT_EQ(told, 0);

    this->turn(false);

    EXPECT_EQ(told, 1);
}

TYPED_TEST_P(AppearanceContract, TellsAListenerThatAnotherAddedFromTheNextChangeOn) {
    int added = 0;
    bool isFirst = true;
    this->appearance().onChange([&] {
        if (std::exchange(isFirst, false)) {
            this->appearance().onChange([&] { ++added; });
        }
    });

    this->turn(true);
    EXPECT_EQ(added, 0);
    this->turn(false);

    EXPECT_EQ(added, 1);
}

TYPED_TEST_P(AppearanceContract, SaysNothingWhenNothingChanged) {
    this->turn(true);
    int told = 0;
    this->appearance().onChange([&] { ++told; });

    this->rig.ask({.isDark = true});
    this->turn(false); // changes keep their order: with this one, the other has come

    EXPECT_EQ(told, 1);
}

REGISTER_TYPED_TEST_SUITE_P(AppearanceContract,
                            FollowsTheDesktopToDarkAndBack,
                            FollowsWhatEyesAndMindsAskForAndTellsIt,
                            TellsEachChangeOnceWhenItHasHappened,
                            TellsOnTheMainThread,
                            TellsEveryListener,
                            TellsAListenerOnlyWhatChangesAfterItCame,
                            TellsAListenerThatAnotherAddedFromTheNextChangeOn,
                            SaysNothingWhenNothingChanged);

} // namespace velmora
