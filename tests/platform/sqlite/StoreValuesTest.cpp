#include "platform/sqlite/StoreValues.h"

#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace velmora {
namespace {

class StoreValuesTest : public testing::Test {
protected:
    /// What the rows hold after everything pending was written to them.
    StoredValues written(StoredValues rows) {
        EXPECT_EQ(values.writeTo([&](std::string_view row, const DefaultsValue* value) {
            rows.erase(std::string(row));
            if (value != nullptr) {
                rows.emplace(row, *value);
            }
            return statusOk;
        }),
                  statusOk);
        values.written();
        return rows;
    }

    StoreValues values;
};

TEST_F(StoreValuesTest, ThatWereReadAreReplacedInTheirRows) {
    values.begin({{"volume", 0.5}, {"language", std::string("en")}});
    EXPECT_TRUE(values.set("volume", 0.25));
    EXPECT_TRUE(values.remove("language"));

    EXPECT_FALSE(values.meet({{"volume", 0.5}, {"language", std::string("en")}}));

    EXPECT_EQ(written({{"volume", 0.5}, {"language", std::string("en")}}),
              (StoredValues{{"volume", 0.25}}));
}

TEST_F(StoreValuesTest, ThatWereNotReadStayInTheirRows) {
    EXPECT_TRUE(values.set("presets", 1.0));

    EXPECT_TRUE(values.meet({{"presets", 7.0}, {"volume", 0.5}}));

    EXPECT_EQ(written({{"presets", 7.0}, {"volume", 0.5}}),
              (StoredValues{{"presets", 7.0}, {"presets.unsaved", 1.0}, {"volume", 0.5}}));
    EXPECT_EQ(values.get("presets"), DefaultsValue(1.0)) << "as it was set";
    EXPECT_EQ(values.get("volume"), DefaultsValue(0.5)) << "never set here";
}

TEST_F(StoreValuesTest, ThatWereNotReadStayHoweverOftenTheirKeyIsSet) {
    EXPECT_TRUE(values.meet({{"presets", 7.0}, {"presets.unsaved", 6.0}}));
    for (const double value : {1.0, 2.0}) {
        EXPECT_TRUE(values.set("presets", value));
        EXPECT_EQ(written({{"presets", 7.0}, {"presets.unsaved", 6.0}}),
                  (StoredValues{
                      {"presets", 7.0}, {"presets.unsaved", 6.0}, {"presets.unsaved.2", value}}));
    }

    EXPECT_TRUE(values.remove("presets"));
    EXPECT_EQ(written({{"presets", 7.0}, {"presets.unsaved.2", 2.0}}),
              (StoredValues{{"presets", 7.0}}));
}

TEST_F(StoreValuesTest, ThatSomebodyElseChangedSinceStay) {
    values.begin({{"presets", 7.0}});
    EXPECT_TRUE(values.set("presets", 1.0));

    EXPECT_TRUE(values.meet({{"presets", 8.0}}));

    EXPECT_EQ(written({{"presets", 8.0}}),
              (StoredValues{{"presets", 8.0}, {"presets.unsaved", 1.0}}));
}

TEST_F(StoreValuesTest, AreNotKeptApartWhenSomebodyElseHasSetTheSame) {
    EXPECT_TRUE(values.set("volume", 0.5));

    EXPECT_FALSE(values.meet({{"volume", 0.5}}));

    EXPECT_FALSE(values.isPending());
    EXPECT_TRUE(values.set("volume", 0.25));
    EXPECT_EQ(written({{"volume", 0.5}}), (StoredValues{{"volume", 0.25}}));
}

TEST_F(StoreValuesTest, AreAllPendingWhereTheFileHoldsNothing) {
    values.begin({{"presets", 7.0}, {"volume", 0.5}});

    EXPECT_FALSE(values.meet({}));

    EXPECT_EQ(written({}), (StoredValues{{"presets", 7.0}, {"volume", 0.5}}));
}

TEST_F(StoreValuesTest, AreAllInTheSuccessorOfADamagedFileAndWhatWasRemovedIsNot) {
    values.begin({{"volume", 0.5}, {"removed", true}});
    EXPECT_TRUE(values.meet({{"volume", 0.5}, {"removed", true}, {"presets", 7.0}}));
    EXPECT_TRUE(values.set("presets", 1.0));
    EXPECT_TRUE(values.set("volume", 0.25));
    EXPECT_TRUE(values.remove("removed"));
    const auto number = [](const char* key, std::uint8_t last) {
        return StoredRow{.key = key, .type = 2, .value = {0, 0, 0, 0, 0, 0, last, 0x40}};
    };

    const auto rows = values.rowsOfSuccessor({number("presets", 1),
                                              number("presets.unsaved", 2),
                                              number("removed", 3),
                                              number("volume", 4),
                                              {.key = "future", .type = 99, .value = {1}}});

    std::set<std::string> keys;
    for (const StoredRow& row : rows) {
        keys.insert(row.key);
    }
    EXPECT_EQ(rows.size(), keys.size());
    EXPECT_EQ(keys, (std::set<std::string>{"future", "presets", "presets.unsaved", "volume"}));
    EXPECT_EQ(rows.front().value, number("presets", 1).value) << "what was not read stays";
}

TEST_F(StoreValuesTest, ThatAreNoNumbersCountAsTheSame) {
    values.begin({{"volume", std::nan("")}});

    EXPECT_FALSE(values.meet({{"volume", std::nan("")}}));
}

TEST_F(StoreValuesTest, StayPendingUntilTheyWereWritten) {
    EXPECT_TRUE(values.set("volume", 0.5));
    EXPECT_TRUE(values.set("volume", 0.5));
    EXPECT_TRUE(values.remove("volume"));
    EXPECT_TRUE(values.remove("volume"));
    EXPECT_NE(values.writeTo([](auto, auto) { return Status{13}; }), statusOk);
    EXPECT_TRUE(values.isPending());

    values.written();

    EXPECT_FALSE(values.remove("volume"));
    EXPECT_FALSE(values.isPending());
}

} // namespace
} // namespace velmora
