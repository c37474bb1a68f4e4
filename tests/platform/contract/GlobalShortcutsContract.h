// GlobalShortcutsContract.h: what shortcuts of any desktop do.
#pragma once

#include "platform/GlobalShortcuts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velmora {

using ShortcutState = GlobalShortcuts::State;

/// A rig is a machine whose desktop has no shortcuts yet, and has `shortcuts()`; `appear()` and
/// `vanish()`, between which the desktop has some; `refuse()`, after which its user says no;
/// `press(id)` and `release(id)`; and `until(condition)`, which lets things happen until it holds.
template <typename Rig>
class GlobalShortcutsContract : public testing::Test {
protected:
    void bind() {
        rig.shortcuts().bind({{"talk", "Talk", "CTRL+LOGO+t"}, {"mute", "Mute", "CTRL+LOGO+m"}},
                             [this](const std::string& id, bool isPressed) {
                                 told.push_back(id + (isPressed ? " pressed" : " released"));
                             });
    }
    [[nodiscard]] bool becomes(ShortcutState state) {
        return rig.until([&] { return rig.shortcuts().state() == state; });
    }
    [[nodiscard]] bool tells(const std::vector<std::string>& expected) {
        return rig.until([&] { return told == expected; });
    }
    void makeBound() {
        rig.appear();
        ASSERT_TRUE(becomes(ShortcutState::unused));
        bind();
        ASSERT_TRUE(becomes(ShortcutState::bound));
    }

    std::vector<std::string> told;
    Rig rig;
};

TYPED_TEST_SUITE_P(GlobalShortcutsContract);

TYPED_TEST_P(GlobalShortcutsContract, AreBoundWithTheDesktopThatComes) {
    EXPECT_EQ(this->rig.shortcuts().state(), ShortcutState::unavailable);
    this->bind();
    EXPECT_EQ(this->rig.shortcuts().state(), ShortcutState::unavailable);
    EXPECT_TRUE(this->rig.shortcuts().triggers().empty());

    this->rig.appear();

    EXPECT_TRUE(this->becomes(ShortcutState::bound));
    EXPECT_EQ(this->rig.shortcuts().triggers().at("mute"), "CTRL+LOGO+m");
}

TYPED_TEST_P(GlobalShortcutsContract, TellAPressAndAReleaseOnce) {
    this->makeBound();

    this->rig.release("talk");
    this->rig.press("talk");
    this->rig.press("talk");
    this->rig.release("talk");
    this->rig.press("mute");

    EXPECT_TRUE(this->tells({"talk pressed", "talk released", "mute pressed"}));
}

TYPED_TEST_P(GlobalShortcutsContract, AHeldKeyIsReleasedBeforeTheDesktopIsTakenForGone) {
    this->makeBound();
    this->rig.press("talk");
    ASSERT_TRUE(this->tells({"talk pressed"}));

    this->rig.vanish();

    ASSERT_TRUE(this->becomes(ShortcutState::unavailable));
    EXPECT_THAT(this->told, testing::ElementsAre("talk pressed", "talk released"));
    EXPECT_TRUE(this->rig.shortcuts().triggers().empty());
    this->rig.appear();
    EXPECT_TRUE(this->becomes(ShortcutState::bound));
}

TYPED_TEST_P(GlobalShortcutsContract, AHeldKeyIsReleasedWhenTheyAreUnbound) {
    this->makeBound();
    this->rig.press("talk");
    ASSERT_TRUE(this->tells({"talk pressed"}));

    this->rig.shortcuts().unbind();

    EXPECT_EQ(this->rig.shortcuts().state(), ShortcutState::unused);
    EXPECT_THAT(this->told, testing::ElementsAre("talk pressed", "talk released"));
}

TYPED_TEST_P(GlobalShortcutsContract, ARefusalEndsTheAsking) {
    this->rig.appear();
    this->rig.refuse();
    this->bind();
    ASSERT_TRUE(this->becomes(ShortcutState::refused));

    this->rig.vanish();
    ASSERT_TRUE(this->becomes(ShortcutState::unavailable));
    this->rig.appear();

    EXPECT_TRUE(this->becomes(ShortcutState::unused));
}

TYPED_TEST_P(GlobalShortcutsContract, EveryChangeIsToldWhenItIsSo) {
    std::vector<ShortcutState> states;
    const auto connection = this->rig.shortcuts().changed().connect(
        [&] { states.push_back(this->rig.shortcuts().state()); });

    this->makeBound();
    this->rig.vanish();
    ASSERT_TRUE(this->becomes(ShortcutState::unavailable));

    EXPECT_EQ(states.front(), ShortcutState::unused);
    EXPECT_EQ(states.back(), ShortcutState::unavailable);
    EXPECT_THAT(states, testing::Contains(ShortcutState::bound));
}

REGISTER_TYPED_TEST_SUITE_P(GlobalShortcutsContract,
                            AreBoundWithTheDesktopThatComes,
                            TellAPressAndAReleaseOnce,
                            AHeldKeyIsReleasedBeforeTheDesktopIsTakenForGone,
                            AHeldKeyIsReleasedWhenTheyAreUnbound,
                            ARefusalEndsTheAsking,
                            EveryChangeIsToldWhenItIsSo);

} // namespace velmora
