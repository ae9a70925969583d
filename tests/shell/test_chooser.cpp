// SPDX-License-Identifier: GPL-3.0-or-later
// The database chooser and the making of a new data file, driven offscreen with the scripted dialogs.
#include "support/TestEnv.h"

#include "base/Folders.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "shell/ChooserLogic.h"
#include "shell/Shell.h"
#include "shell/frmOpenFile.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QSettings>
#include <QScrollArea>
#include <QScrollBar>
#include <QSvgRenderer>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A data file with its tables, the given animal word and settings complete, and `animals` rows.
QString makeDataFile(const QString& folder, const QString& name, const QString& animal, int animals = 0)
{
    EXPECT_TRUE(CreateDataFile(name, folder)) << name.toStdString();
    const QString path = folder + name;
    Database db = OpenWithPassword(path);
    CheckDatabase(db, false, false);
    db.Execute(QStringLiteral("UPDATE cavyuser SET fldAnimal = '") + animal +
               QStringLiteral("', fldBreederName = 'Hill Top Stud', fldWeightMeasure = 'kg'"));
    for (int i = 0; i < animals; ++i)
        db.Execute(QStringLiteral("INSERT INTO tree (name, sex) VALUES ('Animal ") + QString::number(i) +
                   QStringLiteral("', 'Male')"));
    db.Close();
    return path;
}

QString defaultSetting()
{
    QSettings settings(QStringLiteral("tessorin"), QStringLiteral("tessorin"));
    return settings.contains(QStringLiteral("Options/Default Database"))
               ? settings.value(QStringLiteral("Options/Default Database")).toString()
               : QStringLiteral("<none>");
}

class ChooserTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        gAutoOpened = false;
        gDatabaseFile.clear();
        Chooser::RemoveDefault();
        Chooser::SetLoadOrderPending(true);
        Chooser::SetHandOvers({[this] { ++mainWindows; }, [this] { ++wizards; }, [this] { ++ends; }});
        SetSetupWizardHook([this](const QStringList& yellow) { yellowBoxes = yellow; });
    }

    void TearDown() override
    {
        reset();
        Chooser::SetHandOvers({});
        SetSetupWizardHook({});
    }
    // As at the start of a run: no window, no file, no default, nothing shown.
    void reset()
    {
        delete frmOpenFile::instance();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        CloseDatabase();
        Chooser::RemoveDefault();
        gAutoOpened = false;
        gDatabaseFile.clear();
        Chooser::SetLoadOrderPending(true);
        mainWindows = wizards = ends = 0;
        env.ui().clear();
    }

    // The chooser on screen with its list loaded, as ShowChooser leaves it once nothing opened by itself.
    frmOpenFile* showList()
    {
        ShowChooser();
        frmOpenFile* chooser = frmOpenFile::instance();
        EXPECT_NE(chooser, nullptr);
        return chooser;
    }

    QString rowText(frmOpenFile* chooser, const char* control, int index)
    {
        auto* label = chooser->findChild<QLabel*>(QString::fromLatin1(control) + QLatin1Char('(') +
                                                  QString::number(index) + QLatin1Char(')'));
        return label ? label->text() : QStringLiteral("<missing>");
    }

    void trigger(frmOpenFile* chooser, int row, const char* action)
    {
        chooser->setMenuRow(row);
        QAction* a = chooser->findChild<QAction*>(QString::fromLatin1(action));
        ASSERT_NE(a, nullptr) << action;
        a->trigger();
    }

    // The boxes and dialogs shown, without the status lines of the integrity check.
    QList<ScriptedUi::Call> dialogs()
    {
        QList<ScriptedUi::Call> shown;
        for (const ScriptedUi::Call& call : env.ui().calls())
            if (call.kind != ScriptedUi::Kind::Status)
                shown << call;
        return shown;
    }

    TestEnv env;
    int mainWindows = 0;
    int wizards = 0;
    int ends = 0;
    QStringList yellowBoxes;
};

const QString kNoDatabases =
    QStringLiteral("No databases were found in default locations. Would you like to create a new database file?\n"
                   "Note: If this is the first time you have run the program click OK to create a data file. "
                   "If you want to browse for a file somewhere else click Cancel.");
const QString kDeleteError = QStringLiteral("This file may be currently opened or may have been installed with the "
                                            "original program.\nWindows Vista may not allow it to be deleted.");
const QString kRenameError = QStringLiteral("The file may be in use or you may need Administrator rights.");

TEST_F(ChooserTest, FirstRunLeadsFromTheEmptyListThroughTheNamePromptToTheWizard)
{
    env.ui().queueAnswer(Ui::Answer::Ok);
    env.ui().queueInput(QStringLiteral("My Rabbits"));

    ShowChooser();

    const auto calls = dialogs();
    ASSERT_GE(calls.size(), 3);
    EXPECT_EQ(calls[0].title, QStringLiteral("Create new data file?"));
    EXPECT_EQ(calls[0].text, kNoDatabases);
    EXPECT_EQ(calls[0].buttons, Ui::Buttons::OkCancel);
    EXPECT_EQ(calls[1].kind, ScriptedUi::Kind::Input);
    EXPECT_EQ(calls[1].title, QStringLiteral("Create Database"));
    EXPECT_EQ(calls[1].text, QStringLiteral("Please enter a unique name for your new data file:\n"
                                            "(example - Rabbits or Poodles or My Cavies etc.)"));

    const QString path = env.dataFolder() + QStringLiteral("My_Rabbits.cav");
    EXPECT_EQ(ClassifyDataFile(path), DataFileKind::Tessorin);
    EXPECT_EQ(gDatabaseFile, path);
    EXPECT_TRUE(gDatabase.isOpen());
    EXPECT_TRUE(gDatabase.hasTable(QStringLiteral("tree")));
    // A new file has no breeder name and no weight measure: the wizard opens with those boxes yellow.
    EXPECT_TRUE(yellowBoxes.contains(QStringLiteral("txtBreeder")));
    EXPECT_TRUE(yellowBoxes.contains(QStringLiteral("cboWeightMeasure")));
    EXPECT_TRUE(env.ui().messages().contains(
        QStringLiteral("Tessorin needs some information to function properly.\n"
                       "Fill in all the yellow boxes on the Program Setup Wizard and save.")));
    EXPECT_EQ(mainWindows, 1);
    EXPECT_EQ(wizards, 1);
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(env.ui().allUsed());
}

TEST_F(ChooserTest, AnEmptyNameSaysSoAndLeavesTheChooserUp)
{
    env.ui().queueAnswer(Ui::Answer::Ok);
    env.ui().queueInput(QString());

    ShowChooser();

    const QStringList messages = env.ui().messages();
    ASSERT_EQ(messages.size(), 2);
    EXPECT_EQ(messages[1], QStringLiteral("You must enter a name for your new database file or use the FIND button "
                                          "to open an existing file."));
    ASSERT_NE(frmOpenFile::instance(), nullptr);
    EXPECT_TRUE(frmOpenFile::instance()->isVisible());
    EXPECT_EQ(frmOpenFile::instance()->findChild<QLabel*>(QStringLiteral("lblFileDisplayMessage"))->text(),
              QStringLiteral("No Databases found in default locations.\n"
                             "Create a new database or click FIND to find a file."));
    EXPECT_TRUE(QDir(env.dataFolder()).entryList({QStringLiteral("*.cav")}, QDir::Files).isEmpty());
    EXPECT_EQ(mainWindows, 0);
}

TEST_F(ChooserTest, BlanksOfTheNameBecomeUnderscoresAndATakenNameIsRefused)
{
    EXPECT_EQ(Chooser::NewDataFileName(QStringLiteral(" Show  Stock ")), QStringLiteral("_Show__Stock_"));
    makeDataFile(env.dataFolder(), QStringLiteral("Cavies.cav"), QStringLiteral("Cavy"));
    env.ui().queueInput(QStringLiteral("Cavies"));

    CreateNewDatabase();

    ASSERT_EQ(env.ui().messages().size(), 1);
    EXPECT_TRUE(env.ui().messages()[0].contains(QStringLiteral("could not be made")));
    EXPECT_FALSE(gDatabase.isOpen());
    EXPECT_EQ(mainWindows, 0);
}

TEST_F(ChooserTest, TheStartOpensTheDefaultOrTheCommandLinesFileOrShowsTheList)
{
    const QString good = makeDataFile(env.dataFolder(), "Rabbits.cav", "Rabbit");
    const QString goats = makeDataFile(env.root(), "Goats.cav", "Goat");
    const QString missing = env.root() + "stick/Goats.cav";
    const struct {
        const char* name;
        QString defaultFile;
        QString commandLine;
        QString opened; // empty: the list shows, with the data folder's one file
        QString error;  // the one box shown, if any
        QString defaultAfter;
    } cases[] = {
        {"a stale default is removed silently", env.root() + "moved away.cav", "", "", "", "<none>"},
        {"a working default opens", good, "", good, "", good},
        {"a command-line file opens", "", goats, goats, "", "<none>"},
        {"a command-line file that does not open", "", missing, "", "Error launching " + missing, "<none>"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        reset();
        if (!c.defaultFile.isEmpty())
            Chooser::SetDefaultDatabase(c.defaultFile);
        ShowChooser(c.commandLine);
        if (c.opened.isEmpty()) {
            ASSERT_NE(frmOpenFile::instance(), nullptr);
            ASSERT_EQ(frmOpenFile::instance()->rows().size(), 1);
            EXPECT_EQ(frmOpenFile::instance()->rows()[0].path, good);
        } else {
            EXPECT_EQ(frmOpenFile::instance(), nullptr);
            EXPECT_EQ(gDatabaseFile, c.opened);
        }
        EXPECT_EQ(gAutoOpened, !c.opened.isEmpty());
        EXPECT_EQ(mainWindows, c.opened.isEmpty() ? 0 : 1);
        const auto shown = dialogs();
        ASSERT_EQ(shown.size(), c.error.isEmpty() ? 0 : 1);
        if (!shown.isEmpty()) {
            EXPECT_EQ(shown[0].text, c.error);
            EXPECT_EQ(shown[0].title, "Error");
            EXPECT_EQ(shown[0].icon, Ui::Icon::Exclamation);
        }
        EXPECT_EQ(defaultSetting(), c.defaultAfter);
    }
    // Open from the main window shows the list even with a default.
    reset();
    Chooser::SetDefaultDatabase(good);
    ShowChooser();
    ASSERT_EQ(mainWindows, 1);
    CloseDatabase();
    ShowChooser();
    ASSERT_NE(frmOpenFile::instance(), nullptr);
    EXPECT_EQ(frmOpenFile::instance()->rows().size(), 1);
    EXPECT_EQ(mainWindows, 1);
}

TEST_F(ChooserTest, RowsShowNameCountDateAndTheOpenFile)
{
    // Names of 31 characters or more are cut.
    const QString thirty = QString(26, 'a') + ".cav";
    makeDataFile(env.dataFolder(), thirty, "Rabbit");
    makeDataFile(env.dataFolder(), QString(27, 'b') + ".cav", "Rabbit");
    const QString sheep = makeDataFile(env.dataFolder(), "Flock.cav", "Sheep", 3);
    const QString pigs = makeDataFile(env.dataFolder(), "Sties.cav", "Pig", 5);
    ASSERT_TRUE(OpenDataFile(pigs));

    frmOpenFile* chooser = showList();

    ASSERT_EQ(chooser->rows().size(), 4);
    EXPECT_EQ(rowText(chooser, "lblFolder", 0), thirty);
    EXPECT_EQ(rowText(chooser, "lblFolder", 1), QString(27, 'b') + "...");
    EXPECT_EQ(rowText(chooser, "lblRecords", 2), "3 records");
    EXPECT_EQ(rowText(chooser, "lblRecords", 3), "FILE OPENED");
    EXPECT_EQ(chooser->rows()[2].icon, Chooser::IconSheep);
    EXPECT_EQ(chooser->rows()[3].records, 5);
    EXPECT_EQ(chooser->rows()[2].modified.date(), QFileInfo(sheep).lastModified().date());
    EXPECT_FALSE(rowText(chooser, "lblModified", 2).isEmpty());
}

TEST_F(ChooserTest, DeleteAsksAndTakesAClosedFileWithItsJournalRecentListAndDefaultButNeverTheOpenFile)
{
    const QString keep = makeDataFile(env.dataFolder(), "Aviary.cav", "Parrot");
    const QString open = makeDataFile(env.dataFolder(), "Herd.cav", "Cow", 2);
    const QString gone = makeDataFile(env.dataFolder(), "Loft.cav", "Pigeon", 3);
    ASSERT_TRUE(OpenDataFile(open));
    Chooser::SetDefaultDatabase(gone);
    gAutoOpened = true; // as after the start: the default has had its turn
    frmOpenFile* chooser = showList();
    env.ui().clear();

    env.ui().queueAnswer(Ui::Answer::Yes);
    trigger(chooser, 1, "mnuDelete");
    const auto calls = dialogs();
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls[0].title, "Delete File");
    EXPECT_EQ(calls[0].text, "Are you sure you want to delete Herd.cav?");
    EXPECT_EQ(calls[1].title, "Delete Error");
    EXPECT_EQ(calls[1].text, kDeleteError);
    EXPECT_TRUE(QFileInfo::exists(open));
    EXPECT_TRUE(gDatabase.isOpen());

    env.ui().queueAnswer(Ui::Answer::No);
    trigger(chooser, 2, "mnuDelete");
    EXPECT_TRUE(QFileInfo::exists(gone));

    // The journal and the recent list go too, so a new file of that name starts clean.
    TestEnv::writeText(gone + "-journal", "pages of the deleted file");
    TestEnv::writeText(env.settingsFolder() + "Loft.cav.txt", "Blue Bar\n");
    env.ui().queueAnswer(Ui::Answer::Yes);
    trigger(chooser, 2, "mnuDelete");
    EXPECT_FALSE(QFileInfo::exists(gone));
    EXPECT_FALSE(QFileInfo::exists(gone + "-journal"));
    EXPECT_FALSE(QFileInfo::exists(env.settingsFolder() + "Loft.cav.txt"));
    EXPECT_EQ(defaultSetting(), "<none>");
    ASSERT_EQ(chooser->rows().size(), 2);
    EXPECT_EQ(chooser->rows()[0].path, keep);
}

// A save cut short by a crash: the file holds half of a change and its journal the pages before it.
void crashMidSave(const QString& path)
{
    const pid_t child = fork();
    if (child == 0) {
        sqlite3* db = nullptr;
        sqlite3_open(path.toUtf8().constData(), &db);
        sqlite3_exec(db, "BEGIN; DELETE FROM tree;", nullptr, nullptr, nullptr);
        sqlite3_db_cacheflush(db); // the half change reaches the file, as a large save spills it
        _exit(0); // no commit, no rollback: as if the power went
    }
    int status = 0;
    waitpid(child, &status, 0);
}

TEST_F(ChooserTest, AFileLeftByACrashIsRecoveredBeforeItIsCounted)
{
    const QString file = makeDataFile(env.dataFolder(), QStringLiteral("Crashed.cav"), QStringLiteral("Goat"), 300);
    crashMidSave(file);
    ASSERT_TRUE(NeedsRecovery(file));

    frmOpenFile* chooser = showList();
    ASSERT_EQ(chooser->rows().size(), 1);
    EXPECT_EQ(rowText(chooser, "lblRecords", 0), QStringLiteral("300 records"));
    EXPECT_EQ(chooser->rows()[0].icon, Chooser::IconGoat);
    EXPECT_FALSE(QFileInfo::exists(file + QStringLiteral("-journal")));
}

TEST_F(ChooserTest, CloseAfterOpenFromTheMainWindowGoesBackToTheOpenFile)
{
    const QString current = makeDataFile(env.dataFolder(), QStringLiteral("Rabbits.cav"), QStringLiteral("Rabbit"));
    const QString broken = env.dataFolder() + QStringLiteral("Broken.cav");
    TestEnv::writeText(broken, QStringLiteral("no data file"));
    ASSERT_TRUE(OpenDataFile(current));
    Chooser::SetLoadOrderPending(false);

    frmOpenFile* chooser = showList();
    ASSERT_EQ(chooser->rows().size(), 2);
    EXPECT_FALSE(chooser->openRow(0, QStringLiteral("Error #IMC001"))); // Broken.cav
    EXPECT_TRUE(gDatabase.isOpen());
    EXPECT_EQ(gDatabaseFile, current);

    chooser->findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(mainWindows, 0);
    EXPECT_TRUE(gDatabase.isOpen());
    EXPECT_EQ(gDatabaseFile, current);
}

TEST_F(ChooserTest, HeadersStayOverTheirColumnsWhenTheListScrolls)
{
    for (int i = 0; i < 30; ++i)
        makeDataFile(env.dataFolder(), QStringLiteral("Stud%1.cav").arg(i, 2, 10, QLatin1Char('0')), QStringLiteral("Cat"));
    frmOpenFile* chooser = showList();
    chooser->resize(700, 400);
    QCoreApplication::processEvents();
    auto* scroll = chooser->findChild<QScrollArea*>(QStringLiteral("scrFiles"));
    ASSERT_TRUE(scroll->verticalScrollBar()->isVisible());
    scroll->verticalScrollBar()->setValue(scroll->verticalScrollBar()->maximum());
    QCoreApplication::processEvents();

    const struct {
        const char* header;
        const char* column;
    } columns[] = {{"lblHeaderModified", "lblModified(29)"}, {"lblHeaderRecords", "lblRecords(29)"}};
    for (const auto& c : columns) {
        auto* header = chooser->findChild<QLabel*>(QString::fromLatin1(c.header));
        auto* cell = chooser->findChild<QLabel*>(QString::fromLatin1(c.column));
        ASSERT_TRUE(header && cell) << c.header;
        EXPECT_EQ(header->mapTo(chooser, QPoint(0, 0)).x(), cell->mapTo(chooser, QPoint(0, 0)).x()) << c.header;
        EXPECT_TRUE(header->isVisible());
    }
}

TEST_F(ChooserTest, RenameAppendsTheEndingAndNeverWritesOverAnotherFile)
{
    const QString first = makeDataFile(env.dataFolder(), QStringLiteral("Old Name.cav"), QStringLiteral("Dog"));
    const QString second = makeDataFile(env.dataFolder(), QStringLiteral("Kennel.cav"), QStringLiteral("Dog"), 4);
    frmOpenFile* chooser = showList();
    ASSERT_EQ(chooser->rows()[1].path, first);

    env.ui().queueInput(QStringLiteral("Kennel"));
    trigger(chooser, 1, "mnuRename");
    ASSERT_EQ(dialogs().size(), 2);
    EXPECT_EQ(dialogs()[0].title, QStringLiteral("Rename File"));
    EXPECT_EQ(dialogs()[0].text, QStringLiteral("Please enter a new name for this file?"));
    EXPECT_EQ(dialogs()[1].title, QStringLiteral("Rename Error"));
    EXPECT_EQ(dialogs()[1].text, kRenameError);
    EXPECT_EQ(Chooser::getRecordNumber(second), 4);

    // Blanks become underscores as for a new file; the journal and the recent list go along.
    TestEnv::writeText(first + QStringLiteral("-journal"), QString());
    TestEnv::writeText(env.settingsFolder() + QStringLiteral("Old Name.cav.txt"), QStringLiteral("Rex\n"));
    env.ui().queueInput(QStringLiteral("Show Dogs"));
    trigger(chooser, 1, "mnuRename");
    EXPECT_FALSE(QFileInfo::exists(first));
    EXPECT_FALSE(QFileInfo::exists(first + QStringLiteral("-journal")));
    EXPECT_TRUE(QFileInfo::exists(env.dataFolder() + QStringLiteral("Show_Dogs.cav")));
    EXPECT_TRUE(QFileInfo::exists(env.dataFolder() + QStringLiteral("Show_Dogs.cav-journal")));
    EXPECT_EQ(TestEnv::readText(env.settingsFolder() + QStringLiteral("Show_Dogs.cav.txt")), QStringLiteral("Rex\n"));
    EXPECT_FALSE(QFileInfo::exists(env.settingsFolder() + QStringLiteral("Old Name.cav.txt")));
    EXPECT_EQ(chooser->rows().size(), 2);
}

TEST_F(ChooserTest, DefaultAndRemoveDefaultWriteTheSetting)
{
    const QString path = makeDataFile(env.dataFolder(), QStringLiteral("Stable.cav"), QStringLiteral("Horse"));
    frmOpenFile* chooser = showList();

    trigger(chooser, 0, "mnuDefault");
    EXPECT_EQ(defaultSetting(), path);
    trigger(chooser, 0, "mnuRemoveDefault");
    EXPECT_EQ(defaultSetting(), QStringLiteral("<none>"));
}

TEST_F(ChooserTest, RestoringOverTheOpenFileAsksAndWritesASharedCopy)
{
    const QString open = makeDataFile(env.dataFolder(), QStringLiteral("Hutch.cav"), QStringLiteral("Rabbit"), 1);
    QDir(env.dataFolder()).mkpath(QStringLiteral("DataBk"));
    const QString backup = makeDataFile(env.dataFolder() + QStringLiteral("DataBk/"), QStringLiteral("Hutch (old).cav"),
                                        QStringLiteral("Rabbit"), 6);
    ASSERT_TRUE(OpenDataFile(open));
    frmOpenFile* chooser = showList();
    env.ui().clear();
    env.ui().queueAnswer(Ui::Answer::Yes);
    env.ui().queueFile(backup);

    trigger(chooser, 0, "mnuRestore");

    ASSERT_FALSE(dialogs().isEmpty());
    EXPECT_EQ(dialogs()[0].title, QStringLiteral("Database Open"));
    EXPECT_EQ(dialogs()[0].text,
              QStringLiteral("If you want to replace the 'Hutch.cav' database you should close and re-open the "
                             "program to break database connections first. \nDo you want to continue?"));
    EXPECT_EQ(Chooser::getRecordNumber(open), 1);
    EXPECT_EQ(Chooser::getRecordNumber(env.dataFolder() + QStringLiteral("Hutch(shared).cav")), 6);
    EXPECT_TRUE(env.ui().allUsed());
}

TEST_F(ChooserTest, ClickingARowOpensItAndAFailedOpenSaysWhich)
{
    const QString bad = env.dataFolder() + QStringLiteral("Broken.cav");
    ASSERT_TRUE(TestEnv::writeText(bad, QStringLiteral("not a data file")));
    const QString good = makeDataFile(env.dataFolder(), QStringLiteral("Coop.cav"), QStringLiteral("Chicken"), 2);
    frmOpenFile* chooser = showList();
    ASSERT_EQ(chooser->rows().size(), 2);
    EXPECT_EQ(chooser->rows()[0].icon, Chooser::IconUnreadable);
    EXPECT_EQ(rowText(chooser, "lblRecords", 0), QStringLiteral("0 records"));

    auto click = [&](int row) {
        auto* label = chooser->findChild<QLabel*>(QStringLiteral("lblFolder(%1)").arg(row));
        ASSERT_NE(label, nullptr);
        QMouseEvent press(QEvent::MouseButtonRelease, QPointF(5, 5), label->mapToGlobal(QPointF(5, 5)),
                          Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(label, &press);
    };
    click(0);
    ASSERT_EQ(dialogs().size(), 1);
    EXPECT_EQ(dialogs()[0].title, QStringLiteral("Error #IMC001"));
    EXPECT_EQ(dialogs()[0].text, QStringLiteral("Error opening ") + bad);
    EXPECT_EQ(mainWindows, 0);

    click(1);
    EXPECT_EQ(mainWindows, 1);
    EXPECT_EQ(gDatabaseFile, good);
    EXPECT_EQ(frmOpenFile::instance(), nullptr);
    EXPECT_EQ(ends, 0);
}

TEST_F(ChooserTest, AFileFromElsewhereIsCopiedInAndTheProgramEnds)
{
    makeDataFile(env.dataFolder(), QStringLiteral("Home.cav"), QStringLiteral("Cat"));
    QDir(env.root()).mkpath(QStringLiteral("stick"));
    const QString outside = makeDataFile(env.root() + QStringLiteral("stick/"), QStringLiteral("Cattery.bak"),
                                         QStringLiteral("Cat"), 2);
    frmOpenFile* chooser = showList();
    env.ui().queueFile(outside);
    env.ui().queueAnswer(Ui::Answer::Yes);

    chooser->findChild<QPushButton*>(QStringLiteral("cmdBrowse"))->click();

    const auto calls = dialogs();
    ASSERT_EQ(calls.size(), 3);
    EXPECT_EQ(calls[0].title, QStringLiteral("Open File"));
    EXPECT_EQ(calls[0].filter, QStringLiteral("Database Files (*.cav, *.bak)|*.cav;*.bak|All Files (*.*)|*.*"));
    EXPECT_EQ(calls[1].title, QStringLiteral("Copy file"));
    EXPECT_EQ(calls[1].text, QStringLiteral("Tessorin will need to copy the file to your Documents folder so you can "
                                            "open it from the OPEN FILE window. Do you want to continue?"));
    EXPECT_EQ(calls[2].title, QStringLiteral("Restart Required"));
    EXPECT_EQ(calls[2].text, QStringLiteral("Tessorin will now close to register a new database.\n"
                                            "Restart the program and choose your database from the Open File window."));
    EXPECT_EQ(Chooser::getRecordNumber(env.dataFolder() + QStringLiteral("Cattery.cav")), 2);
    EXPECT_TRUE(QFileInfo::exists(outside));
    EXPECT_EQ(ends, 1);
}

TEST_F(ChooserTest, AFileOfTheDataFolderPickedByFindOpensWhereItLies)
{
    const QString path = makeDataFile(env.dataFolder(), QStringLiteral("Warren.cav"), QStringLiteral("Rabbit"));
    frmOpenFile* chooser = showList();
    env.ui().queueFile(path);

    chooser->findChild<QPushButton*>(QStringLiteral("cmdBrowse"))->click();

    EXPECT_EQ(dialogs().size(), 1);
    EXPECT_EQ(gDatabaseFile, path);
    EXPECT_EQ(mainWindows, 1);
}

TEST_F(ChooserTest, ClosingTheChooserWithoutAFileEndsTheProgram)
{
    makeDataFile(env.dataFolder(), QStringLiteral("Barn.cav"), QStringLiteral("Donkey"));
    frmOpenFile* chooser = showList();
    chooser->findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(frmOpenFile::instance(), nullptr);
}

class ChooserLogicTest : public EnvTest {};

TEST_F(ChooserLogicTest, EachSpeciesGroupHasItsIcon)
{
    struct Case {
        const char* word;
        int icon;
    };
    const Case cases[] = {
        {"Guinea Pig", Chooser::IconCavy}, {"cavy", Chooser::IconCavy},         {"Gerbil", Chooser::IconChinchilla},
        {"Weasel", Chooser::IconFerret},   {"RAT", Chooser::IconMouse},         {"Hedgehog", Chooser::IconHedgehog},
        {"pigeon", Chooser::IconPigeon},   {"pig", Chooser::IconPig},           {"Llama", Chooser::IconGeneral},
        {"", Chooser::IconGeneral},        {" Sheep ", Chooser::IconSheep},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Chooser::IconForAnimal(QString::fromLatin1(c.word)), c.icon) << c.word;

    makeDataFile(env.dataFolder(), QStringLiteral("Pens.cav"), QStringLiteral("Chinchilla"));
    EXPECT_EQ(Chooser::getIcon(env.dataFolder() + QStringLiteral("Pens.cav")), Chooser::IconChinchilla);
}

TEST_F(ChooserLogicTest, EveryIconIsDrawn)
{
    for (int icon = 0; icon < Chooser::IconCount; ++icon) {
        QSvgRenderer renderer(Chooser::IconPath(icon));
        EXPECT_TRUE(renderer.isValid()) << Chooser::IconPath(icon).toStdString();
    }
}

TEST_F(ChooserLogicTest, AFileThatIsNoDataFileIsLoggedAndCountsNothing)
{
    const QString junk = env.dataFolder() + QStringLiteral("Notes.cav");
    ASSERT_TRUE(TestEnv::writeText(junk, QStringLiteral("shopping list")));
    QDir(env.dataFolder()).mkpath(QStringLiteral("folder.cav"));

    const QVector<Chooser::FileRow> rows =
        Chooser::findFilenames(env.dataFolder(), QStringLiteral("*.cav"), false);

    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].icon, Chooser::IconUnreadable);
    EXPECT_EQ(rows[0].records, 0);
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).contains(QStringLiteral("Open icon error 3343 - ")));
    EXPECT_EQ(TestEnv::readText(junk), QStringLiteral("shopping list"));
}

TEST_F(ChooserLogicTest, TipsCarryTheFilesWordsAndAMissingFileIsATipToo)
{
    EXPECT_EQ(Chooser::LoadTips(env.root() + QStringLiteral("TIPOFDAY.TXT"), QStringLiteral("Color"),
                                QStringLiteral("goats")),
              QStringList{QStringLiteral("That the TIPOFDAY.TXT file was not found?")});

    const QStringList tips =
        Chooser::LoadTips(Chooser::TipsFile(), QStringLiteral("Color"), Chooser::AnimalsWord(QStringLiteral("Mouse")));
    ASSERT_GE(tips.size(), 20);
    const QString all = tips.join(QLatin1Char('\n'));
    EXPECT_FALSE(all.contains(QStringLiteral("{animals}")));
    EXPECT_FALSE(all.contains(QStringLiteral("Colour")));
    EXPECT_TRUE(all.contains(QStringLiteral("mice")));
    EXPECT_TRUE(all.contains(QStringLiteral("Color box")));
    EXPECT_EQ(Chooser::AnimalsWord(QStringLiteral("Guinea Pig")), QStringLiteral("guinea pigs"));
    EXPECT_EQ(Chooser::AnimalsWord(QString()), QStringLiteral("animals"));
}

TEST_F(ChooserLogicTest, MainInfoNamesVersionPlatformAndUser)
{
    const QString info = Chooser::getMainInfo();
    EXPECT_TRUE(info.startsWith(QStringLiteral("Program Version: ") + ProgramVersionText() + QStringLiteral("\nPlatform: ")));
    EXPECT_TRUE(info.contains(QStringLiteral(" (Logged in: ")));
}

} // namespace
