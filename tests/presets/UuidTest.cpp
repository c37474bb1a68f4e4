#include "presets/Uuid.h"

#include <gtest/gtest.h>

#include <set>

namespace velmora {
namespace {

constexpr Uuid example{{0xF8,
                        0x1D,
                        0x4F,
                        0xAE,
                        0x7D,
                        0xEC,
                        0x41,
                        0xD0,
                        0xA7,
                        0x65,
                        0x00,
                        0xA0,
                        0xC9,
                        0x1E,
                        0x6B,
                        0xF6}};

TEST(Uuid, IsWrittenInUpperCaseWithDashes) {
    EXPECT_EQ(example.string(), "F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6");
    EXPECT_EQ(Uuid{}.string(), "00000000-0000-0000-0000-000000000000");
}

TEST(Uuid, IsReadInEitherCase) {
    EXPECT_EQ(Uuid::parse("f81d4fae-7dec-41d0-a765-00a0c91e6bf6"), example);
    EXPECT_EQ(Uuid::parse("F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6"), example);
    EXPECT_EQ(Uuid::parse("F81d4FAE-7dec-41D0-a765-00A0c91e6BF6"), example);
}

TEST(Uuid, AnythingElseIsNone) {
    for (const auto* const text : {"",
                                   "f81d4fae",
                                   "f81d4fae7dec41d0a76500a0c91e6bf6",
                                   "f81d4fae-7dec-41d0-a765-00a0c91e6bf",
                                   "f81d4fae-7dec-41d0-a765-00a0c91e6bf60",
                                   "f81d4fa-e7dec-41d0-a765-00a0c91e6bf6",
                                   "g81d4fae-7dec-41d0-a765-00a0c91e6bf6",
                                   " 81d4fae-7dec-41d0-a765-00a0c91e6bf6",
                                   "{f81d4fae-7dec-41d0-a765-00a0c91e6b}"}) {
        EXPECT_EQ(Uuid::parse(text), std::nullopt) << text;
    }
}

TEST(Uuid, ARandomOneIsNewAndOfVersionFour) {
    std::set<Uuid> seen;
    for (int count = 0; count < 1000; ++count) {
        const auto uuid = Uuid::random();
        const auto text = uuid.string();

        EXPECT_TRUE(seen.insert(uuid).second);
        EXPECT_EQ(text[14], '4');
        EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos) << text;
        EXPECT_EQ(Uuid::parse(text), uuid);
    }
}

} // namespace
} // namespace velmora
