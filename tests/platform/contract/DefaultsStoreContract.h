// DefaultsStoreContract.h: what every DefaultsStore does, whoever keeps the values.
#pragma once

#include "platform/DefaultsStore.h"
#include "platform/Signal.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace velmora {

/// A rig has `store()`, `nextLaunch()` (from now on `store()` is what a later launch finds), and
/// `refuseWrites()` / `allowWrites()`.
template <typename Rig>
class DefaultsStoreContract : public testing::Test {
protected:
    DefaultsStore& store() { return rig.store(); }

    /// The value that a later launch reads.
    template <typename T>
    std::optional<T> afterRelaunch(const std::string& key) {
        rig.nextLaunch();
        return store().template read<T>(key);
    }

    Rig rig;
};

TYPED_TEST_SUITE_P(DefaultsStoreContract);

TYPED_TEST_P(DefaultsStoreContract, HasNothingUnderAKeyThatWasNeverSet) {
    EXPECT_EQ(this->store().get("absent"), std::nullopt);
}

TYPED_TEST_P(DefaultsStoreContract, KeepsEveryTypeForTheNextLaunch) {
    const std::vector<std::pair<std::string, DefaultsValue>> values{
        {"true", true},
        {"false", false},
        {"number", 0.1},
        {"string", std::string("Réglages…")},
        {"bytes", Bytes{0x00, 0xFF, 0x7F}},
        {"numbers", NumberMap{{"dev-7", 0.5}, {"app-org.player-12", 1e-300}}},
        {"booleans", BooleanMap{{"dev-7", true}, {"dev-8", false}}},
    };
    for (const auto& [key, value] : values) {
        EXPECT_EQ(this->store().set(key, value), statusOk) << key;
    }

    this->rig.nextLaunch();

    for (const auto& [key, value] : values) {
        EXPECT_EQ(this->store().get(key), value) << key;
    }
}

TYPED_TEST_P(DefaultsStoreContract, KeepsEmptyValuesApartFromAbsentOnes) {
    this->store().set("string", std::string{});
    this->store().set("bytes", Bytes{});
    this->store().set("map", NumberMap{});

    this->rig.nextLaunch();

    EXPECT_EQ(this->store().get("string"), DefaultsValue(std::string{}));
    EXPECT_EQ(this->store().get("bytes"), DefaultsValue(Bytes{}));
    EXPECT_EQ(this->store().get("map"), DefaultsValue(NumberMap{}));
}

TYPED_TEST_P(DefaultsStoreContract, KeepsNumbersThatAreNotFinite) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    this->store().set("infinite", -infinity);
    this->store().set("gains", NumberMap{{"a", std::nan("")}, {"b", infinity}});

    this->rig.nextLaunch();

    EXPECT_EQ(this->store().template read<double>("infinite"), -infinity);
    const auto gains = this->store().template read<NumberMap>("gains");
    ASSERT_TRUE(gains.has_value());
    EXPECT_TRUE(std::isnan(gains->at("a")));
    EXPECT_EQ(gains->at("b"), infinity);
}

TYPED_TEST_P(DefaultsStoreContract, KeepsKeysAndStringsOfAnyBytes) {
    const std::string odd("a\0b\xFF'\"%\n", 8);
    const std::string longKey(300, 'k');
    this->store().set(odd, odd);
    this->store().set(longKey, NumberMap{{odd, 1.0}});

    this->rig.nextLaunch();

    EXPECT_EQ(this->store().template read<std::string>(odd), odd);
    EXPECT_EQ(this->store().template read<NumberMap>(longKey), (NumberMap{{odd, 1.0}}));
}

TYPED_TEST_P(DefaultsStoreContract, KeepsAMebibyteOfBytes) {
    Bytes large(1U << 20U);
    for (std::size_t at = 0; at < large.size(); ++at) {
        large[at] = static_cast<std::uint8_t>(at * 31);
    }
    this->store().set("presets", large);

    EXPECT_EQ(this->template afterRelaunch<Bytes>("presets"), large);
}

TYPED_TEST_P(DefaultsStoreContract, ReadsAValueOfAnotherTypeAsAbsent) {
    this->store().set("volume", std::string("loud"));

    EXPECT_EQ(this->store().template read<double>("volume"), std::nullopt);
    EXPECT_EQ(this->store().template read<std::string>("volume"), "loud");
}

TYPED_TEST_P(DefaultsStoreContract, ReplacesAValueWhateverTypeItHad) {
    this->store().set("volume", 1.0);
    this->store().set("volume", true);

    EXPECT_EQ(this->template afterRelaunch<bool>("volume"), true);
}

TYPED_TEST_P(DefaultsStoreContract, ForgetsARemovedKeyForGood) {
    this->store().set("monitoringSelection", std::string("headset#3"));

    EXPECT_EQ(this->store().remove("monitoringSelection"), statusOk);

    EXPECT_EQ(this->store().get("monitoringSelection"), std::nullopt);
    this->rig.nextLaunch();
    EXPECT_EQ(this->store().get("monitoringSelection"), std::nullopt);
}

TYPED_TEST_P(DefaultsStoreContract, RemovingAnAbsentKeySucceeds) {
    EXPECT_EQ(this->store().remove("absent"), statusOk);
}

TYPED_TEST_P(DefaultsStoreContract, ReturnsAValueThatCouldNotBeWritten) {
    this->rig.refuseWrites();

    EXPECT_NE(this->store().set("volume", 0.25), statusOk);

    EXPECT_EQ(this->store().template read<double>("volume"), 0.25);
}

TYPED_TEST_P(DefaultsStoreContract, WritesWhatWasRefusedWithTheNextSuccess) {
    this->store().set("old", true);
    this->rig.refuseWrites();
    this->store().set("volume", 0.25);
    this->store().remove("old");
    this->rig.allowWrites();

    EXPECT_EQ(this->store().set("language", std::string("en")), statusOk);

    this->rig.nextLaunch();
    EXPECT_EQ(this->store().template read<double>("volume"), 0.25);
    EXPECT_EQ(this->store().template read<std::string>("language"), "en");
    EXPECT_EQ(this->store().get("old"), std::nullopt);
}

TYPED_TEST_P(DefaultsStoreContract, TriesARefusedValueAgainWhenItIsSetAgain) {
    this->rig.refuseWrites();
    this->store().set("volume", 0.25);
    EXPECT_NE(this->store().set("volume", 0.25), statusOk);
    this->rig.allowWrites();

    EXPECT_EQ(this->store().set("volume", 0.25), statusOk);

    EXPECT_TRUE(this->store().problems().empty());
    EXPECT_EQ(this->template afterRelaunch<double>("volume"), 0.25);
}

TYPED_TEST_P(DefaultsStoreContract, TriesARefusedRemovalAgainWhenItIsRepeated) {
    this->store().set("volume", 0.25);
    this->rig.refuseWrites();
    this->store().remove("volume");
    EXPECT_NE(this->store().remove("volume"), statusOk);
    this->rig.allowWrites();

    EXPECT_EQ(this->store().remove("volume"), statusOk);

    EXPECT_TRUE(this->store().problems().empty());
    EXPECT_EQ(this->template afterRelaunch<double>("volume"), std::nullopt);
}

TYPED_TEST_P(DefaultsStoreContract, HasNoProblemWhenAllIsWell) {
    EXPECT_EQ(this->store().set("volume", 0.25), statusOk);

    EXPECT_TRUE(this->store().problems().empty());
}

TYPED_TEST_P(DefaultsStoreContract, ListsARepeatedRefusalOnceUntilAWriteSucceeds) {
    int told = 0;
    const auto connection = this->store().problemsChanged().connect([&] { ++told; });
    this->rig.refuseWrites();
    this->store().set("volume", 0.1);
    this->store().set("volume", 0.2);
    EXPECT_EQ(this->store().problems().size(), 1U);
    EXPECT_EQ(told, 1);

    this->rig.allowWrites();
    this->store().set("volume", 0.3);
    this->store().set("volume", 0.4);
    EXPECT_TRUE(this->store().problems().empty());
    EXPECT_EQ(told, 2);

    this->rig.refuseWrites();
    this->store().set("volume", 0.5);
    EXPECT_EQ(this->store().problems().size(), 1U);
    EXPECT_EQ(told, 3);
    this->rig.allowWrites();
}

TYPED_TEST_P(DefaultsStoreContract, ListsAProblemForWhoeverAsksLater) {
    this->rig.refuseWrites();
    const Status refused = this->store().set("volume", 0.1);
    this->rig.allowWrites();

    bool told = false;
    const auto connection = this->store().problemsChanged().connect([&] { told = true; });

    ASSERT_EQ(this->store().problems().size(), 1U);
    EXPECT_EQ(this->store().problems()[0].status, refused);
    EXPECT_FALSE(told);
}

TYPED_TEST_P(DefaultsStoreContract, HasFinishedAWriteWhenItTells) {
    this->rig.refuseWrites();
    this->store().set("volume", 0.25);
    this->rig.allowWrites();
    Status written = -1;
    const auto connection =
        this->store().problemsChanged().connect([&] { written = this->store().set("told", true); });

    this->store().set("language", std::string("en"));

    EXPECT_EQ(written, statusOk);
    this->rig.nextLaunch();
    EXPECT_EQ(this->store().template read<double>("volume"), 0.25);
    EXPECT_EQ(this->store().template read<std::string>("language"), "en");
    EXPECT_EQ(this->store().template read<bool>("told"), true);
}

TYPED_TEST_P(DefaultsStoreContract, TellsNobodyWhileItEnds) {
    this->rig.refuseWrites();
    this->store().set("volume", 0.25);
    this->rig.allowWrites();
    bool told = false;
    const auto connection = this->store().problemsChanged().connect([&] { told = true; });

    this->rig.nextLaunch();

    EXPECT_FALSE(told);
}

REGISTER_TYPED_TEST_SUITE_P(DefaultsStoreContract,
                            HasNothingUnderAKeyThatWasNeverSet,
                            KeepsEveryTypeForTheNextLaunch,
                            KeepsEmptyValuesApartFromAbsentOnes,
                            KeepsNumbersThatAreNotFinite,
                            KeepsKeysAndStringsOfAnyBytes,
                            KeepsAMebibyteOfBytes,
                            ReadsAValueOfAnotherTypeAsAbsent,
                            ReplacesAValueWhateverTypeItHad,
                            ForgetsARemovedKeyForGood,
                            RemovingAnAbsentKeySucceeds,
                            ReturnsAValueThatCouldNotBeWritten,
                            WritesWhatWasRefusedWithTheNextSuccess,
                            TriesARefusedValueAgainWhenItIsSetAgain,
                            TriesARefusedRemovalAgainWhenItIsRepeated,
                            HasNoProblemWhenAllIsWell,
                            ListsARepeatedRefusalOnceUntilAWriteSucceeds,
                            ListsAProblemForWhoeverAsksLater,
                            HasFinishedAWriteWhenItTells,
                            TellsNobodyWhileItEnds);

} // namespace velmora
