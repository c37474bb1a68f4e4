// ApplicationsContract.h: what every Applications does, whatever desktop it asks.
#pragma once

#include "platform/Applications.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace velmora {

/// A rig has `applications()`; `install(id, name)`, which installs an application that stays open,
/// with the icon "icon-" and its id; `installFailing(id)`, one that ends at once; `quit(pid)`,
/// which ends an application; and `runUntil(condition)`, which lets time pass until the condition
/// holds and gives up after long enough.
template <typename Rig>
class ApplicationsContract : public testing::Test {
protected:
    using Result = std::optional<RunningApplication>;

    Applications& applications() { return rig.applications(); }

    /// An identifier that no other test has: several may use one desktop at the same time.
    static std::string idOf(const std::string& name) {
        return "org.example." + name + "-" + std::to_string(getpid());
    }

    std::string locationOf(const std::string& id) {
        const auto installed = applications().installed(id);
        EXPECT_TRUE(installed.has_value()) << id;
        return installed ? installed->location : std::string{};
    }

    /// Launches and waits for the completion.
    Result launch(const std::string& location) {
        std::optional<Result> completed;
        applications().launch(location, [&](Result result) { completed = result; });
        EXPECT_FALSE(completed.has_value()) << "completed inside the call";
        EXPECT_TRUE(rig.runUntil([&] { return completed.has_value(); })) << "never completed";
        return completed.value_or(std::nullopt);
    }

    Rig rig;
};

TYPED_TEST_SUITE_P(ApplicationsContract);

TYPED_TEST_P(ApplicationsContract, KnowsNothingUnderAnUnknownIdentifier) {
    for (const std::string& id : {this->idOf("Nobody"), std::string()}) {
        EXPECT_EQ(this->applications().installed(id), std::nullopt);
        EXPECT_EQ(this->applications().icon(id), std::nullopt);
        EXPECT_TRUE(this->applications().byBundleID(id).empty());
    }
    EXPECT_EQ(this->applications().byPid(0), std::nullopt);
    EXPECT_EQ(this->applications().byPid(-1), std::nullopt);
}

TYPED_TEST_P(ApplicationsContract, KnowsAnInstalledApplicationWithItsIcon) {
    this->rig.install(this->idOf("Player"), "Player");

    const auto installed = this->applications().installed(this->idOf("Player"));

    ASSERT_TRUE(installed.has_value());
    EXPECT_EQ(installed->bundleID, this->idOf("Player"));
    EXPECT_EQ(installed->name, "Player");
    EXPECT_EQ(this->applications().icon(this->idOf("Player")), "icon-" + this->idOf("Player"));
    EXPECT_TRUE(this->applications().byBundleID(this->idOf("Player")).empty());
}

TYPED_TEST_P(ApplicationsContract, ListsEverythingThatIsInstalled) {
    this->rig.install(this->idOf("First"), "Mixer");
    this->rig.install(this->idOf("Second"), "Album");
    this->rig.install(this->idOf("Third"), "Zither");

    std::vector<std::string> names;
    for (const auto& application : this->applications().allInstalled()) {
        names.push_back(application.name);
    }

    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string>{"Album", "Mixer", "Zither"}));
}

TYPED_TEST_P(ApplicationsContract, BringsTheLaunchedApplicationAndFindsItAgain) {
    this->rig.install(this->idOf("Player"), "Player");

    const auto launched = this->launch(this->locationOf(this->idOf("Player")));

    ASSERT_TRUE(launched.has_value());
    EXPECT_GT(launched->pid, 0);
    EXPECT_EQ(launched->name, "Player");
    EXPECT_EQ(launched->bundleID, this->idOf("Player"));
    EXPECT_TRUE(launched->regular);
    EXPECT_EQ(this->applications().byPid(launched->pid), launched);
    EXPECT_EQ(this->applications().byBundleID(this->idOf("Player")), std::vector{*launched});
}

TYPED_TEST_P(ApplicationsContract, CompletesEachOfSeveralLaunchesOnce) {
    this->rig.install(this->idOf("One"), "One");
    this->rig.install(this->idOf("Two"), "Two");
    std::vector<std::string> completed;
    const auto note = [&](const std::optional<RunningApplication>& result) {
        completed.push_back(result ? result->name : "nothing");
    };

    this->applications().launch(this->locationOf(this->idOf("One")), note);
    this->applications().launch(this->locationOf(this->idOf("Two")), note);
    this->applications().launch("/nowhere/three.desktop", note);
    EXPECT_TRUE(this->rig.runUntil([&] { return completed.size() == 3; }));

    std::ranges::sort(completed);
    EXPECT_EQ(completed, (std::vector<std::string>{"One", "Two", "nothing"}));
}

TYPED_TEST_P(ApplicationsContract, ListsInstancesInTheOrderOfTheirStart) {
    this->rig.install(this->idOf("Player"), "Player");
    const auto first = this->launch(this->locationOf(this->idOf("Player")));
    const auto second = this->launch(this->locationOf(this->idOf("Player")));
    ASSERT_TRUE(first && second);

    EXPECT_NE(first->pid, second->pid);
    EXPECT_EQ(this->applications().byBundleID(this->idOf("Player")),
              (std::vector{*first, *second}));
}

TYPED_TEST_P(ApplicationsContract, BringsNothingForAnUnknownLocation) {
    EXPECT_EQ(this->launch("/nowhere/player.desktop"), std::nullopt);
    EXPECT_EQ(this->launch(""), std::nullopt);
}

TYPED_TEST_P(ApplicationsContract, BringsNothingForAnApplicationThatEndsAtOnce) {
    this->rig.installFailing(this->idOf("Failing"));

    EXPECT_EQ(this->launch(this->locationOf(this->idOf("Failing"))), std::nullopt);
}

TYPED_TEST_P(ApplicationsContract, ForgetsAnApplicationThatQuit) {
    this->rig.install(this->idOf("Player"), "Player");
    const auto launched = this->launch(this->locationOf(this->idOf("Player")));
    ASSERT_TRUE(launched.has_value());

    this->rig.quit(launched->pid);

    EXPECT_EQ(this->applications().byPid(launched->pid), std::nullopt);
    EXPECT_TRUE(this->applications().byBundleID(this->idOf("Player")).empty());
}

REGISTER_TYPED_TEST_SUITE_P(ApplicationsContract,
                            KnowsNothingUnderAnUnknownIdentifier,
                            KnowsAnInstalledApplicationWithItsIcon,
                            ListsEverythingThatIsInstalled,
                            BringsTheLaunchedApplicationAndFindsItAgain,
                            CompletesEachOfSeveralLaunchesOnce,
                            ListsInstancesInTheOrderOfTheirStart,
                            BringsNothingForAnUnknownLocation,
                            BringsNothingForAnApplicationThatEndsAtOnce,
                            ForgetsAnApplicationThatQuit);

} // namespace velmora
