#include "ui/control/SourceStripsModel.h"

#include "ui/control/SourceStripModel.h"
#include "ui/support/ModelFixture.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>
#include <vector>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class SourceStripsModelTest : public ModelFixture {
protected:
    static AudioSource app(std::int32_t pid) {
        return AppSource{pid, "App " + std::to_string(pid), "app"};
    }
    void forget() {
        for (auto* spy : {&inserted, &removed, &moved, &resets, &data, &counts}) {
            spy->clear();
        }
    }
    std::vector<AudioSource> shown() const {
        std::vector<AudioSource> result;
        for (int row = 0; row < model.rowCount(); ++row) {
            result.push_back(model.strip(row)->source());
        }
        return result;
    }
    std::vector<SourceStripModel*> strips() const {
        std::vector<SourceStripModel*> result;
        for (int row = 0; row < model.rowCount(); ++row) {
            result.push_back(model.strip(row));
        }
        return result;
    }

    SourceStripsModel model{machine.platform(), engine};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    QSignalSpy data{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy counts{&model, &SourceStripsModel::countChanged};
    const AudioSource a = app(1);
    const AudioSource b = app(2);
    const AudioSource c = app(3);
    const AudioSource d = app(4);
};

TEST_F(SourceStripsModelTest, ShowsTheSourcesInTheirOrder) {
    engine.replaceSources({b, a});
    EXPECT_EQ(shown(), (std::vector{b, a}));
    EXPECT_EQ(model.data(model.index(0), SourceStripsModel::StripRole).value<SourceStripModel*>(),
              model.strip(0));
    EXPECT_EQ(model.roleNames().value(SourceStripsModel::StripRole), "strip");
}

TEST_F(SourceStripsModelTest, ShowsWhatIsThereWhenItIsMade) {
    engine.replaceSources({a, b});
    const SourceStripsModel later(machine.platform(), engine);
    EXPECT_EQ(later.count(), 2);
}

TEST_F(SourceStripsModelTest, AGainChangeMovesOneFaderAndMakesNothingAnew) {
    engine.replaceSources({a, b, c});
    const auto before = strips();
    forget();
    QSignalSpy first(model.strip(0), &SourceStripModel::gainChanged);
    QSignalSpy second(model.strip(1), &SourceStripModel::gainChanged);

    engine.setGain(0.5F, b);

    EXPECT_EQ(first.count(), 0);
    EXPECT_EQ(second.count(), 1);
    EXPECT_EQ(strips(), before);
    EXPECT_EQ(inserted.count() + removed.count() + moved.count() + resets.count() + data.count(),
              0);
}

TEST_F(SourceStripsModelTest, MeterTicksTouchNoRow) {
    machine.sound.play(4711, constant(0.5F));
    engine.replaceSources({player, browser});
    model.setFollowsLevels(true);
    engine.start();
    const auto before = strips();
    forget();
    QSignalSpy levels(model.strip(0), &SourceStripModel::levelChanged);

    machine.advance(1s);

    EXPECT_GT(levels.count(), 0);
    EXPECT_EQ(strips(), before);
    EXPECT_EQ(inserted.count() + removed.count() + moved.count() + resets.count() + data.count(),
              0);
}

TEST_F(SourceStripsModelTest, LevelsAreFollowedByStripsThatCameLater) {
    machine.sound.play(4711, constant(0.5F));
    model.setFollowsLevels(true);
    engine.add(player);
    engine.start();
    machine.advance(200ms);
    EXPECT_GT(model.strip(0)->level(), 0.0);
}

TEST_F(SourceStripsModelTest, NobodyFollowsLevelsThatAreNotWanted) {
    machine.sound.play(4711, constant(0.5F));
    engine.add(player);
    engine.start();
    QSignalSpy levels(model.strip(0), &SourceStripModel::levelChanged);
    machine.advance(1s);
    EXPECT_EQ(levels.count(), 0);
}

TEST_F(SourceStripsModelTest, AnAddedSourceIsOneNewRow) {
    engine.replaceSources({a, b});
    auto expected = strips();
    forget();
    engine.add(c);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(removed.count() + moved.count() + resets.count(), 0);
    EXPECT_EQ(counts.count(), 1);
    expected.push_back(model.strip(2));
    EXPECT_EQ(strips(), expected);
}

TEST_F(SourceStripsModelTest, ARemovedSourceIsOneRowLess) {
    engine.replaceSources({a, b, c});
    auto expected = strips();
    expected.erase(expected.begin() + 1);
    forget();
    engine.remove(b);
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(inserted.count() + moved.count() + resets.count(), 0);
    EXPECT_EQ(strips(), expected);
}

TEST_F(SourceStripsModelTest, ARemovedStripLivesUntilTheViewsHaveLetGo) {
    engine.replaceSources({a});
    const QPointer<SourceStripModel> strip = model.strip(0);
    engine.remove(a);
    ASSERT_FALSE(strip.isNull());
    EXPECT_EQ(strip->name(), "App 1");
    settle();
    EXPECT_TRUE(strip.isNull());
}

TEST_F(SourceStripsModelTest, AStripCanRemoveItself) {
    engine.replaceSources({a, b});
    model.strip(0)->remove();
    settle();
    EXPECT_EQ(shown(), std::vector{b});
}

TEST_F(SourceStripsModelTest, ANewPrimarySourceLeavesTheOthersAlone) {
    engine.replaceSources({a, b, c});
    const auto before = strips();
    forget();
    engine.setPrimary(d);
    EXPECT_EQ(shown(), (std::vector{d, b, c}));
    EXPECT_EQ(model.strip(1), before[1]);
    EXPECT_EQ(model.strip(2), before[2]);
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(counts.count(), 0);
}

TEST_F(SourceStripsModelTest, APrimarySourceThatIsFurtherDownAsWellHasTwoStrips) {
    engine.replaceSources({a, b});
    const auto before = strips();
    engine.setPrimary(b);
    EXPECT_EQ(shown(), (std::vector{b, b}));
    EXPECT_EQ(model.strip(1), before[1]);
    EXPECT_NE(model.strip(0), model.strip(1));
}

TEST_F(SourceStripsModelTest, BothStripsOfOneSourceShowItsSettings) {
    engine.replaceSources({b, a, b});
    model.strip(2)->setGain(0.5);
    EXPECT_EQ(model.strip(0)->gain(), 0.5);
    EXPECT_EQ(model.strip(1)->gain(), 1.0);
}

TEST_F(SourceStripsModelTest, OfTwoEqualSourcesTheReplacedOneGoes) {
    engine.replaceSources({b, a, b});
    const auto before = strips();
    engine.setPrimary(c);
    EXPECT_EQ(shown(), (std::vector{c, a, b}));
    EXPECT_EQ(model.strip(2), before[2]);
}

TEST_F(SourceStripsModelTest, RemovingASourceThatIsThereTwiceRemovesBothStrips) {
    engine.replaceSources({b, a, b});
    engine.remove(b);
    EXPECT_EQ(shown(), std::vector{a});
}

TEST_F(SourceStripsModelTest, AnotherOrderMovesTheStrips) {
    engine.replaceSources({a, b, c, d});
    const auto before = strips();
    forget();
    engine.replaceSources({d, b, a, c});
    EXPECT_EQ(strips(), (std::vector{before[3], before[1], before[0], before[2]}));
    EXPECT_EQ(inserted.count() + removed.count() + resets.count(), 0);
}

TEST_F(SourceStripsModelTest, ARecallKeepsTheStripsThatStay) {
    engine.replaceSources({a, b, c});
    const auto before = strips();
    forget();
    engine.replaceSources({d, c, a});
    EXPECT_EQ(shown(), (std::vector{d, c, a}));
    EXPECT_EQ(model.strip(1), before[2]);
    EXPECT_EQ(model.strip(2), before[0]);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(SourceStripsModelTest, AnyListFollowsAnyOther) {
    // Every list of up to three of three sources, repeats included, after every other.
    std::vector<std::vector<AudioSource>> lists{{}};
    for (std::size_t start = 0; start < lists.size() && lists[start].size() < 3; ++start) {
        for (const AudioSource& next : {a, b, c}) {
            auto longer = lists[start];
            longer.push_back(next);
            lists.push_back(std::move(longer));
        }
    }
    ASSERT_EQ(lists.size(), 1U + 3U + 9U + 27U);
    for (const auto& from : lists) {
        for (const auto& to : lists) {
            engine.replaceSources(from);
            engine.replaceSources(to);
            ASSERT_EQ(shown(), to);
        }
        settle();
    }
    EXPECT_EQ(resets.count(), 0);
}

} // namespace
} // namespace velmora
