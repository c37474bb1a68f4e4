#include "ui/control/PresetFilesModel.h"

#include "presets/PresetJson.h"
#include "ui/control/ControlWindowFixture.h"
#include "ui/support/FakeFileChooser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>

namespace velmora {
namespace {

const QString importing = QStringLiteral("Importer des presets…");
const QString exporting = QStringLiteral("Exporter");
const QString all = QStringLiteral("Tous les presets…");
const QString bringingBack = QStringLiteral("Reprendre les presets mis de côté");

class PresetFiles : public ControlWindowFixture {
protected:
    void keep(const std::string& name, float streamVolume = 1.0F) {
        presets.save({.id = Uuid::random(), .name = name, .streamVolume = streamVolume});
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const Preset& preset : presets.presets()) {
            result.push_back(preset.name);
        }
        return result;
    }
    GumMenuModel& menu() { return *window.presetFiles()->openMenu(); }
    void chooseExport(const QString& title) {
        GumMenuModel& items = menu();
        choose(items, exporting);
        choose(items, title);
    }
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }
    void write(const QString& name, const QByteArray& text) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    [[nodiscard]] QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void importFrom(const QString& name) {
        choose(menu(), importing);
        files.choose(path(name));
    }
    /// All presets as a file.
    void exportAll(const QString& name) {
        chooseExport(all);
        files.choose(path(name));
    }

    const QTemporaryDir folder;
    FakeFileChooser files;
    ControlWindowModel window{
        {machine.platform(), engine, sources, presets, recall, settings, talk}, &files};
};

TEST_F(PresetFiles, TheMenuOffersToImportAndToExportOneOrAll) {
    keep("Podcast");
    keep("Radio");
    GumMenuModel& items = menu();
    EXPECT_EQ(titles(items), (std::vector<QString>{importing, exporting}));
    choose(items, exporting);
    EXPECT_EQ(titles(items), (std::vector<QString>{importing, exporting, all, "Podcast", "Radio"}));
}

TEST_F(PresetFiles, WithoutPresetsThereIsNothingToExport) {
    EXPECT_TRUE(menu().isChoosable(0));
    EXPECT_FALSE(menu().isChoosable(1));
}

TEST_F(PresetFiles, WithoutFilesThereIsNothingToChoose) {
    keep("Podcast");
    const GumMenuModel& items = *model.presetFiles()->openMenu();
    EXPECT_FALSE(items.isChoosable(0));
    EXPECT_FALSE(items.isChoosable(1));
}

TEST_F(PresetFiles, OneIsExportedUnderItsName) {
    keep("Podcast", 0.5F);
    keep("Radio");
    chooseExport("Podcast");
    EXPECT_EQ(files.asked, QStringList{"save: Exporter: Podcast.json"});
    files.choose(path("one.json"));
    EXPECT_EQ(window.problemText(), "");

    importFrom("one.json");

    EXPECT_EQ(names(), (std::vector<std::string>{"Podcast", "Radio", "Podcast (2)"}));
    EXPECT_EQ(presets.presets()[2].streamVolume, 0.5F);
}

TEST_F(PresetFiles, AFilesNameIsOneWhateverThePresetsNameIs) {
    keep("../a/b");
    keep("line\nbreak");
    keep(std::string(300, 'x'));
    for (const auto* const name : {"../a/b", "line\nbreak"}) {
        chooseExport(name);
    }
    chooseExport(QString(300, 'x'));
    EXPECT_EQ(files.asked,
              (QStringList{"save: Exporter: -.-a-b.json",
                           "save: Exporter: line-break.json",
                           "save: Exporter: " + QString(60, 'x') + ".json"}));
}

TEST_F(PresetFiles, AllOfOneMachineComeToAnother) {
    keep("Podcast");
    keep("Radio", 0.25F);
    const auto carried = presets.presets();
    exportAll("all.json");
    EXPECT_EQ(files.asked, QStringList{"save: Exporter: Presets Velmora.json"});
    for (const Preset& preset : carried) {
        presets.remove(preset.id);
    }

    importFrom("all.json");

    EXPECT_EQ(names(), (std::vector<std::string>{"Podcast", "Radio"}));
    EXPECT_EQ(presets.presets()[1].streamVolume, 0.25F);
    EXPECT_EQ(PresetStore(machine.defaults).presets(), presets.presets());
}

TEST_F(PresetFiles, AnImportCanBeUndone) {
    keep("Podcast");
    exportAll("all.json");
    importFrom("all.json");
    EXPECT_EQ(window.undo()->text(), QString::fromUtf8("Presets importés : Podcast (2)"));

    window.undo()->undo();

    EXPECT_EQ(names(), std::vector<std::string>{"Podcast"});
}

TEST_F(PresetFiles, AForeignOrDamagedFileIsRefusedAndChangesNothing) {
    keep("Podcast");
    exportAll("all.json");
    write("cut.json", read("all.json").chopped(20));
    write("foreign.json", "{\"tracks\":[]}");
    write("empty.json", "");
    for (const auto* const name : {"cut.json", "foreign.json", "empty.json"}) {
        importFrom(name);
        EXPECT_EQ(window.problemText(),
                  name + QString::fromUtf8(
                             " n'est pas un fichier de presets Velmora, ou il est endommagé. "
                             "Aucun preset n'a été importé."));
        EXPECT_EQ(names(), std::vector<std::string>{"Podcast"});
        EXPECT_FALSE(window.undo()->offered());
    }
}

TEST_F(PresetFiles, AFileOfALaterVersionIsRefusedInItsOwnWords) {
    write("later.json", R"({"format":"Velmora presets","version":2,"presets":[]})");
    importFrom("later.json");
    settings.setLanguage("en");
    EXPECT_EQ(window.problemText(),
              "later.json comes from a newer version of Velmora. No preset has been imported.");
}

TEST_F(PresetFiles, WhatIsNoFileOrNotThereIsRefused) {
    ASSERT_EQ(mkfifo(path("pipe").toLocal8Bit().constData(), 0600), 0);
    QDir(folder.path()).mkdir("folder");
    for (const auto* const name : {"pipe", "folder"}) {
        importFrom(name);
        EXPECT_TRUE(window.problemText().startsWith(name + QString(" n'est pas")));
    }
    importFrom("nowhere.json");
    EXPECT_TRUE(window.problemText().startsWith("Impossible de lire nowhere.json ("));
    EXPECT_TRUE(presets.presets().empty());
}

TEST_F(PresetFiles, AFileThatCannotBeWrittenIsTold) {
    keep("Podcast");
    chooseExport("Podcast");
    files.choose(path("nowhere/one.json"));
    EXPECT_TRUE(
        window.problemText().startsWith(QString::fromUtf8("Impossible d'écrire one.json (")))
        << window.problemText().toStdString();
}

TEST_F(PresetFiles, ARefusalGoesWithTheNextFileOrWhenItIsDismissed) {
    keep("Podcast");
    write("foreign.json", "Hello");
    importFrom("foreign.json");
    EXPECT_TRUE(window.canDismissProblems());
    exportAll("all.json");
    EXPECT_EQ(window.problemText(), "");
    EXPECT_FALSE(window.canDismissProblems());

    importFrom("foreign.json");
    window.dismissProblems();
    EXPECT_EQ(window.problemText(), "");
}

TEST_F(PresetFiles, ARefusalFollowsTheLanguage) {
    write("foreign.json", "Hello");
    importFrom("foreign.json");
    settings.setLanguage("en");
    EXPECT_EQ(window.problemText(),
              "foreign.json is no file of Velmora presets, or it is damaged. "
              "No preset has been imported.");
}

// -- what could not be read at a start --

class UnreadablePresets : public ControlWindowFixture {
protected:
    /// The next launch, which finds this list.
    struct Launch {
        PresetStore presets;
        ControlWindowModel window;
        explicit Launch(UnreadablePresets& of)
            : presets(of.machine.defaults), window({of.machine.platform(),
                                                    of.engine,
                                                    of.sources,
                                                    presets,
                                                    of.recall,
                                                    of.settings,
                                                    of.talk}) {}
    };
    void keep(const std::string& list) {
        machine.defaults.set("presets", Bytes(list.begin(), list.end()));
    }
    /// A list of two, of which one cannot be read.
    static std::string halfReadable() {
        const auto list = encodePresets(std::vector{Preset{.name = "Podcast"}}).value();
        return list.substr(0, list.size() - 1) + ",{}]";
    }
    const QString unreadable = QString::fromUtf8(
        "Des presets enregistrés sont illisibles. Rien n'en est perdu : ils sont mis de "
        "côté et pourront être repris quand Velmora saura les lire.");
    const QString readable = QString::fromUtf8(
        "Des presets mis de côté peuvent être repris, dans le menu à côté du preset.");
};

TEST_F(UnreadablePresets, AreToldUntilTheyAreDismissed) {
    keep("damaged");
    {
        Launch launch(*this);
        EXPECT_EQ(launch.window.problemText(), unreadable);
        EXPECT_TRUE(launch.window.canDismissProblems());
    }
    Launch second(*this);
    EXPECT_EQ(second.window.problemText(), unreadable);
    second.window.dismissProblems();
    EXPECT_EQ(second.window.problemText(), "");

    EXPECT_EQ(Launch(*this).window.problemText(), "");
}

TEST_F(UnreadablePresets, ThatCanBeReadAreBroughtBackFromTheMenu) {
    keep(halfReadable());
    Launch launch(*this);
    EXPECT_EQ(launch.window.problemText(), unreadable + "\n" + readable);
    GumMenuModel& menu = *launch.window.presetFiles()->openMenu();

    choose(menu, bringingBack);

    ASSERT_EQ(launch.presets.presets().size(), 1U);
    EXPECT_EQ(launch.presets.presets()[0].name, "Podcast");
    EXPECT_EQ(launch.window.problemText(), unreadable);
    EXPECT_EQ(rowOf(*launch.window.presetFiles()->openMenu(), bringingBack), -1);
}

TEST_F(UnreadablePresets, CanStillBeBroughtBackAfterTheyWereDismissed) {
    keep(halfReadable());
    Launch(*this).window.dismissProblems();
    Launch later(*this);
    EXPECT_EQ(later.window.problemText(), "");

    choose(*later.window.presetFiles()->openMenu(), bringingBack);

    EXPECT_EQ(later.presets.presets().size(), 1U);
    EXPECT_EQ(later.window.problemText(), "");
}

} // namespace
} // namespace velmora
