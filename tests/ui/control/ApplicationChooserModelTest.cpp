#include "ui/control/ApplicationChooserModel.h"

#include "ui/support/ModelFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <vector>

namespace velmora {
namespace {

class ApplicationChooserModelTest : public ModelFixture {
protected:
    ApplicationChooserModelTest() {
        for (const auto* name : {"Sonar", "Écran", "Cinnamon", "radio", "Cinéma"}) {
            install(name);
        }
        machine.applications.setIcon("radio", "radio");
        open();
    }
    void install(const std::string& name) {
        machine.applications.install(
            {.bundleID = name, .name = name, .location = "/applications/" + name});
    }
    void open() {
        model.open([this](const InstalledApplication& application) {
            chosen.push_back(application.name);
        });
    }
    std::vector<QString> names() const {
        std::vector<QString> result;
        for (int row = 0; row < model.rowCount(); ++row) {
            result.push_back(
                model.data(model.index(row), ApplicationChooserModel::NameRole).toString());
        }
        return result;
    }
    std::vector<QString> filtered(const QString& filter) {
        model.setFilter(filter);
        return names();
    }
    using Names = std::vector<QString>;

    ApplicationChooserModel model{machine.applications};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    std::vector<std::string> chosen;
};

TEST_F(ApplicationChooserModelTest, ShowsEverythingThatIsInstalledAsAReaderSortsIt) {
    EXPECT_EQ(names(), (Names{"Cinéma", "Cinnamon", "Écran", "radio", "Sonar"}));
    EXPECT_EQ(model.roleNames().value(ApplicationChooserModel::NameRole), "name");
    EXPECT_EQ(model.roleNames().value(ApplicationChooserModel::IconRole), "icon");
}

TEST_F(ApplicationChooserModelTest, ShowsIcons) {
    const auto icon = [&](int row) {
        return model.data(model.index(row), ApplicationChooserModel::IconRole).toString();
    };
    EXPECT_EQ(icon(3), "image://application/radio");
    EXPECT_EQ(icon(0), "");
}

TEST_F(ApplicationChooserModelTest, FindsAnyPartOfAName) {
    EXPECT_EQ(filtered("adi"), Names{"radio"});
    EXPECT_EQ(filtered("xyz"), Names{});
}

TEST_F(ApplicationChooserModelTest, CaseAndAccentsDoNotMatter) {
    EXPECT_EQ(filtered("CINEMA"), Names{"Cinéma"});
    EXPECT_EQ(filtered("écr"), Names{"Écran"});
    EXPECT_EQ(filtered("ecr"), Names{"Écran"});
    EXPECT_EQ(filtered("rádio"), Names{"radio"});
}

TEST_F(ApplicationChooserModelTest, SpacesAroundTheFilterDoNotMatter) {
    EXPECT_EQ(filtered("  radio "), Names{"radio"});
    EXPECT_EQ(filtered("   ").size(), 5U);
}

TEST_F(ApplicationChooserModelTest, TypingTakesRowsAwayAndBringsThemBack) {
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy counts(&model, &ApplicationChooserModel::countChanged);
    EXPECT_EQ(filtered("c").size(), 3U);
    EXPECT_EQ(filtered("cin"), (Names{"Cinéma", "Cinnamon"}));
    EXPECT_EQ(filtered("r"), (Names{"Écran", "radio", "Sonar"}));
    EXPECT_EQ(filtered("").size(), 5U);
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(counts.count(), 4);
}

TEST_F(ApplicationChooserModelTest, ChoosesTheRowThatIsShown) {
    model.setFilter("cin");
    model.choose(1);
    EXPECT_EQ(chosen, std::vector<std::string>{"Cinnamon"});
}

TEST_F(ApplicationChooserModelTest, ChoosesOnce) {
    model.choose(0);
    model.choose(1);
    EXPECT_EQ(chosen.size(), 1U);
}

TEST_F(ApplicationChooserModelTest, ARowThatIsNotThereChoosesNothing) {
    model.choose(-1);
    model.choose(5);
    EXPECT_TRUE(chosen.empty());
}

TEST_F(ApplicationChooserModelTest, OpeningForgetsTheFilterAndReadsAnew) {
    model.setFilter("radio");
    install("Atelier");
    open();
    EXPECT_EQ(model.filter(), "");
    EXPECT_EQ(model.count(), 6);
}

} // namespace
} // namespace velmora
