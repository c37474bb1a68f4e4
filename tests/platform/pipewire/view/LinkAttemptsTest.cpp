#include "platform/pipewire/view/LinkAttempts.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

class LinkAttemptsTest : public testing::Test {
protected:
    LinkAttempts::Clock::time_point now{1h};
    LinkAttempts attempts;

    /// Asks as often as it may, each time as soon as it may, and is refused each time. Returns the
    /// time from the first request to the last.
    LinkAttempts::Clock::duration refuseAll(int& requests) {
        const auto begin = now;
        for (auto due = attempts.next(); due && requests < 1000; due = attempts.next()) {
            now = std::max(now, *due);
            attempts.made(now);
            ++requests;
        }
        return now - begin;
    }
};

TEST_F(LinkAttemptsTest, FirstIsDueAtOnce) {
    ASSERT_TRUE(attempts.next().has_value());
    EXPECT_LE(*attempts.next(), now);
}

TEST_F(LinkAttemptsTest, SecondComesSoon) {
    attempts.made(now);

    EXPECT_EQ(attempts.next(), now + 20ms);
}

TEST_F(LinkAttemptsTest, EndAfterAFewRequestsOverSomeSeconds) {
    int requests = 0;

    const auto took = refuseAll(requests);

    EXPECT_EQ(requests, 7);
    EXPECT_EQ(took, 14400ms); // 20 + 80 + 300 + 1000 + 3000 + 10000
    EXPECT_FALSE(attempts.next().has_value());
}

TEST_F(LinkAttemptsTest, BeginAnewOnceALinkHasLasted) {
    attempts.made(now);
    attempts.made(now + 20ms);
    attempts.lasts(now + 5s);
    EXPECT_EQ(attempts.next(), now + 100ms) << "not long enough";

    attempts.lasts(now + 5020ms);

    EXPECT_LE(*attempts.next(), now);
}

} // namespace
} // namespace velmora::pipewire
