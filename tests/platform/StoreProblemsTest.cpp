#include "platform/StoreProblems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using Kind = StoreProblem::Kind;
using testing::ElementsAre;

class StoreProblemsTest : public testing::Test {
protected:
    void add(Kind kind, Status status, const std::string& setAside = {}) {
        problems.add({.kind = kind, .file = "/s.db", .setAside = setAside, .status = status});
    }
    [[nodiscard]] std::vector<Status> statuses() const {
        std::vector<Status> all;
        for (const StoreProblem& problem : problems.all()) {
            all.push_back(problem.status);
        }
        return all;
    }

    StoreProblems problems;
    int told = 0;
    Signal::Connection connection = problems.changed().connect([this] { ++told; });
};

TEST_F(StoreProblemsTest, SayWhatTheLastAttemptToWriteMet) {
    add(Kind::unwritable, 8);
    add(Kind::full, 13);
    problems.tell();
    add(Kind::unwritable, 14);
    problems.tell();

    EXPECT_THAT(statuses(), ElementsAre(14, 13));
    EXPECT_EQ(told, 2);
}

TEST_F(StoreProblemsTest, AreToldOnceForSeveralChanges) {
    add(Kind::damaged, 11, "/first.db");
    add(Kind::damaged, 11, "/second.db");
    EXPECT_EQ(told, 0);

    problems.tell();
    problems.tell();

    EXPECT_EQ(told, 1);
    EXPECT_THAT(statuses(), ElementsAre(11, 11));
}

TEST_F(StoreProblemsTest, AreNotToldWhenTheyStayAsTheyWere) {
    add(Kind::newer, 24);
    add(Kind::full, 13);
    problems.tell();

    add(Kind::newer, 24);
    add(Kind::full, 13);
    problems.tell();

    EXPECT_EQ(told, 1);
    EXPECT_THAT(statuses(), ElementsAre(24, 13));
}

TEST_F(StoreProblemsTest, OfWritingAloneEndWithAWrite) {
    add(Kind::unwritable, 8);
    add(Kind::newer, 24);
    add(Kind::full, 13);
    add(Kind::damaged, 11);

    problems.endThoseOfWriting();

    EXPECT_THAT(statuses(), ElementsAre(24, 11));
}

} // namespace
} // namespace velmora
