// LoginItemContract.h: what every LoginItem does, wherever the desktop keeps it.
#pragma once

#include "platform/LoginItem.h"

#include <gtest/gtest.h>

namespace velmora {

/// A rig is a desktop that does not start the program at login and has `item()`; `refuse()` and
/// `allow()`, between which changes fail; and `changeElsewhere(enabled)`, by which somebody else
/// sets the item.
template <typename Rig>
class LoginItemContract : public testing::Test {
protected:
    LoginItem& item() { return rig.item(); }

    Rig rig;
};

TYPED_TEST_SUITE_P(LoginItemContract);

TYPED_TEST_P(LoginItemContract, IsOffUntilItIsRegistered) {
    EXPECT_FALSE(this->item().isEnabled());

    EXPECT_TRUE(this->item().registerItem().has_value());

    EXPECT_TRUE(this->item().isEnabled());
}

TYPED_TEST_P(LoginItemContract, IsOffOnceItIsUnregistered) {
    ASSERT_TRUE(this->item().registerItem().has_value());

    EXPECT_TRUE(this->item().unregisterItem().has_value());

    EXPECT_FALSE(this->item().isEnabled());
}

TYPED_TEST_P(LoginItemContract, TakesEachRequestTwice) {
    EXPECT_TRUE(this->item().unregisterItem().has_value());
    EXPECT_TRUE(this->item().registerItem().has_value());
    EXPECT_TRUE(this->item().registerItem().has_value());
    EXPECT_TRUE(this->item().isEnabled());

    EXPECT_TRUE(this->item().unregisterItem().has_value());
    EXPECT_TRUE(this->item().unregisterItem().has_value());
    EXPECT_FALSE(this->item().isEnabled());
}

TYPED_TEST_P(LoginItemContract, ShowsWhatSomebodyElseChanged) {
    this->rig.changeElsewhere(true);
    EXPECT_TRUE(this->item().isEnabled());

    this->rig.changeElsewhere(false);
    EXPECT_FALSE(this->item().isEnabled());
}

TYPED_TEST_P(LoginItemContract, SaysWhyItCannotBeRegisteredAndStaysOff) {
    this->rig.refuse();

    const auto outcome = this->item().registerItem();

    ASSERT_FALSE(outcome.has_value());
    EXPECT_FALSE(outcome.error().empty());
    EXPECT_FALSE(this->item().isEnabled());
    this->rig.allow();
    EXPECT_TRUE(this->item().registerItem().has_value());
}

TYPED_TEST_P(LoginItemContract, SaysWhyItCannotBeUnregisteredAndStaysOn) {
    ASSERT_TRUE(this->item().registerItem().has_value());
    this->rig.refuse();

    const auto outcome = this->item().unregisterItem();

    ASSERT_FALSE(outcome.has_value());
    EXPECT_FALSE(outcome.error().empty());
    EXPECT_TRUE(this->item().isEnabled());
    this->rig.allow();
    EXPECT_TRUE(this->item().unregisterItem().has_value());
}

REGISTER_TYPED_TEST_SUITE_P(LoginItemContract,
                            IsOffUntilItIsRegistered,
                            IsOffOnceItIsUnregistered,
                            TakesEachRequestTwice,
                            ShowsWhatSomebodyElseChanged,
                            SaysWhyItCannotBeRegisteredAndStaysOff,
                            SaysWhyItCannotBeUnregisteredAndStaysOn);

} // namespace velmora
