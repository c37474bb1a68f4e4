#include "platform/sqlite/DefaultsCoding.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using Type = CodedValue::Type;

// Users' files hold these bytes: a change here needs a step of the store's schema.
TEST(DefaultsCoding, LaysNumbersOutLeastSignificantByteFirst) {
    const auto coded = encode(1.0); // 0x3FF0000000000000

    EXPECT_EQ(coded.type, Type::number);
    EXPECT_EQ(coded.bytes, (Bytes{0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
}

TEST(DefaultsCoding, LaysAMapOutAsLengthKeyAndValuePerEntry) {
    const auto coded = encode(BooleanMap{{"ab", true}, {"c", false}});

    EXPECT_EQ(coded.type, Type::booleanMap);
    EXPECT_EQ(coded.bytes, (Bytes{2, 0, 0, 0, 'a', 'b', 1, 1, 0, 0, 0, 'c', 0}));
}

TEST(DefaultsCoding, TellsStringsAndBytesApart) {
    EXPECT_EQ(encode(std::string("a")).type, Type::string);
    EXPECT_EQ(encode(Bytes{'a'}).type, Type::bytes);
    EXPECT_EQ(encode(std::string("a")).bytes, encode(Bytes{'a'}).bytes);
}

TEST(DefaultsCoding, ReadsABooleanFromOneByteOfZeroOrOneOnly) {
    EXPECT_EQ(decode(Type::boolean, Bytes{1}), DefaultsValue(true));
    EXPECT_EQ(decode(Type::boolean, Bytes{2}), std::nullopt);
    EXPECT_EQ(decode(Type::boolean, Bytes{}), std::nullopt);
    EXPECT_EQ(decode(Type::boolean, Bytes{1, 1}), std::nullopt);
}

TEST(DefaultsCoding, ReadsANumberFromEightBytesOnly) {
    EXPECT_EQ(decode(Type::number, Bytes{0, 0, 0, 0, 0, 0, 0, 0x40}), DefaultsValue(2.0));
    EXPECT_EQ(decode(Type::number, Bytes(7)), std::nullopt);
    EXPECT_EQ(decode(Type::number, Bytes(9)), std::nullopt);
}

TEST(DefaultsCoding, ReadsNothingFromAMapCutOffAtAnyByte) {
    const auto whole = encode(NumberMap{{"first", 1.0}, {"second", 2.0}}).bytes;
    const std::size_t firstEntry = 4 + 5 + 8; // a map of the first entry alone is whole, too

    for (std::size_t length = 1; length < whole.size(); ++length) {
        const std::span cut(whole.data(), length);
        EXPECT_EQ(decode(Type::numberMap, cut).has_value(), length == firstEntry) << length;
    }
}

TEST(DefaultsCoding, ReadsNothingFromAKeyLongerThanTheBytes) {
    EXPECT_EQ(decode(Type::booleanMap, Bytes{0xFF, 0xFF, 0xFF, 0xFF, 'a', 1}), std::nullopt);
}

TEST(DefaultsCoding, ReadsNothingFromATypeItDoesNotKnow) {
    EXPECT_EQ(decode(static_cast<Type>(0), Bytes{1}), std::nullopt);
    EXPECT_EQ(decode(static_cast<Type>(7), Bytes{1}), std::nullopt);
}

} // namespace
} // namespace velmora
