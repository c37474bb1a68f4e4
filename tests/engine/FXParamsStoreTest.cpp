#include "engine/FXParamsStore.h"

#include <gtest/gtest.h>

#include <limits>
#include <string_view>

namespace velmora {
namespace {

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

const FXParams thin{.lowcut = 2};
const FXParams bright{.tilt = 0.5F};

TEST(FXParamsStore, KeepsEveryEntryThroughItsBytes) {
    FXParamsStore store;
    store.set("dev-1", thin);
    store.set("app-\"quoted\" é-7", bright);

    const FXParamsStore read(store.encoded().value());

    EXPECT_EQ(read.params(), store.params());
    EXPECT_EQ(read.encoded(), store.encoded());
}

TEST(FXParamsStore, EncodesAnEntryAsItWasLastSet) {
    FXParamsStore store(bytesOf(R"({"dev-1": {"lowcut": 1}, "dev-2": {"lowcut": 1}})"));

    store.set("dev-1", bright);

    EXPECT_EQ(FXParamsStore(store.encoded().value()).params(),
              (std::map<std::string, FXParams>{{"dev-1", bright}, {"dev-2", {.lowcut = 1}}}));
}

TEST(FXParamsStore, RemovesAnEntryThatIsSetToNeutral) {
    FXParamsStore store;
    store.set("dev-1", thin);
    store.set("dev-1", {});

    EXPECT_TRUE(store.params().empty());
    EXPECT_EQ(store.encoded(), bytesOf("{}"));
}

TEST(FXParamsStore, CannotBeWrittenWhileAnEntryCannot) {
    FXParamsStore store;
    store.set("dev-1", thin);
    store.set("dev-2", {.tilt = std::numeric_limits<float>::infinity()});
    store.set("dev-\xFF", thin);
    EXPECT_EQ(store.encoded(), std::nullopt);

    store.set("dev-2", {});
    EXPECT_EQ(store.encoded(), std::nullopt);
    store.set("dev-\xFF", {});

    EXPECT_TRUE(store.encoded().has_value());
}

TEST(FXParamsStore, IsEmptyUnlessTheWholeCanBeRead) {
    EXPECT_TRUE(FXParamsStore(bytesOf("")).params().empty());
    EXPECT_TRUE(FXParamsStore(bytesOf("[]")).params().empty());
    EXPECT_TRUE(FXParamsStore(bytesOf(R"({"dev-1": {"lowcut": 1}, "dev-2": 7})")).params().empty());
}

} // namespace
} // namespace velmora
