#include "operations/Numbers.h"

#include "support/NotNumbers.h"

#include <cmath>
#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr double infiniteDb = infinity;

TEST(Numbers, AreWholeWords) {
    EXPECT_EQ(numberFrom("-6.5"), -6.5);
    EXPECT_EQ(numberFrom("+3"), 3.0);
    EXPECT_EQ(numberFrom("-inf"), -infiniteDb);
    EXPECT_TRUE(std::isnan(numberFrom("nan").value_or(0)));
    for (const char* word : {"", "+", "-", "+-3", "6dB", "6 ", " 6", "0x10", "1,5"}) {
        EXPECT_EQ(numberFrom(word), std::nullopt) << word;
    }
}

TEST(Numbers, AreWrittenWithoutWhatSaysNothing) {
    EXPECT_EQ(numberText(20, 0), "20");
    EXPECT_EQ(numberText(-1.46, 1), "-1.5");
    EXPECT_EQ(numberText(-0.01, 1), "0");
    EXPECT_EQ(numberText(-infiniteDb, 1), "-inf");
}

TEST(Numbers, AFaderTakesItsRangeAndSilence) {
    EXPECT_EQ(gainFromDb(0), 1.0F);
    EXPECT_EQ(gainFromDb(-infiniteDb), 0.0F);
    EXPECT_TRUE(gainFromDb(6).has_value());
    EXPECT_TRUE(gainFromDb(-60).has_value());
    for (const double db : {6.01, -60.01, infiniteDb, std::nan("")}) {
        EXPECT_EQ(gainFromDb(db), std::nullopt) << db;
    }
}

TEST(Numbers, ALevelReadsAsItWasWritten) {
    for (const double db : {-59.9, -12.5, -6.0, 0.0, 3.7, 6.0}) {
        EXPECT_EQ(dbFromGain(*gainFromDb(db)), db);
    }
    EXPECT_EQ(dbFromGain(0), -infiniteDb);
}

TEST(Numbers, ALevelIsShownWithOneDecimal) {
    EXPECT_EQ(dbText(1.0F), "0.0 dB");
    EXPECT_EQ(dbText(*gainFromDb(-6)), "-6.0 dB");
    EXPECT_EQ(dbText(0.0F), "-inf dB");
}

} // namespace
} // namespace velmora
