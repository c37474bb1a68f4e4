#include "effects/Mailbox.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <thread>

namespace velmora {
namespace {

TEST(Mailbox, IsEmptyAtFirst) {
    Mailbox<int> mailbox;

    EXPECT_EQ(mailbox.take(), nullptr);
}

TEST(Mailbox, GivesAValueOnce) {
    Mailbox<int> mailbox;
    mailbox.post(5);

    const int* taken = mailbox.take();

    ASSERT_NE(taken, nullptr);
    EXPECT_EQ(*taken, 5);
    EXPECT_EQ(mailbox.take(), nullptr);
}

TEST(Mailbox, GivesOnlyTheNewestValue) {
    Mailbox<int> mailbox;
    for (int value = 1; value <= 10; ++value) {
        mailbox.post(value);
    }

    EXPECT_EQ(*mailbox.take(), 10);
    EXPECT_EQ(mailbox.take(), nullptr);
}

TEST(Mailbox, KeepsWhatWasTakenWhileNewValuesArrive) {
    Mailbox<int> mailbox;
    mailbox.post(1);
    const int* taken = mailbox.take();

    mailbox.post(2);
    mailbox.post(3);

    EXPECT_EQ(*taken, 1);
    EXPECT_EQ(*mailbox.take(), 3);
}

TEST(Mailbox, NeverTearsAValueBetweenTwoThreads) {
    using Large = std::array<std::uint64_t, 64>; // far more than one copy instruction
    constexpr std::uint64_t last = 20'000;
    Mailbox<Large> mailbox;

    const std::jthread poster([&] {
        for (std::uint64_t value = 1; value <= last; ++value) {
            Large large;
            large.fill(value);
            mailbox.post(large);
        }
    });
    std::uint64_t previous = 0;
    while (previous < last) {
        if (const Large* taken = mailbox.take()) {
            const Large expected = [&] {
                Large filled;
                filled.fill(taken->front());
                return filled;
            }();
            ASSERT_EQ(*taken, expected);
            ASSERT_GT(taken->front(), previous);
            previous = taken->front();
        }
    }
}

} // namespace
} // namespace velmora
