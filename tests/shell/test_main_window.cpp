// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's frame: its tabs, menus and toolbar, its load steps and how it closes.
#include "support/TestEnv.h"
#include "records/Animal.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/RecentList.h"
#include "shell/Shell.h"
#include "shell/frmNewUser.h"
#include "shell/frmTree.h"
#include "session/globals.h"
#include "records/forms/SearchPane.h"
#include "base/Folders.h"
#include "store/DataFile.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QMenu>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>

namespace {

class MainWindowTest : public EnvTest {
protected:
    ~MainWindowTest() override
    {
        if (MainWindow())
            MainWindow()->Unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        CloseDatabase();
        gUser = User();
        gAnimal = Animal();
        gFormsLoaded = false;
    }

    // A data file of rabbits, open as the program opens it.
    void openRabbits()
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), env.dataFolder()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Rabbits.cav")));
        gUser.Animal = QStringLiteral("Rabbit");
        env.ui().clear();
    }
};

QAction* action(QWidget* window, const QString& name)
{
    return window->findChild<QAction*>(name);
}

} // namespace

TEST_F(MainWindowTest, TwelveTabsFoundByKeyWithTheSpeciesWordFirst)
{
    openRabbits();
    frmTree window;
    QTabWidget* tabs = window.tabStrip();
    ASSERT_EQ(tabs->count(), 12);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("Rabbit"));
    const QStringList keys = {"Individual", "Journal",  "Health",  "Family Tree", "Descendants", "Breeding",
                              "Births",     "Sold Stock", "Contacts", "Finance",    "Reminders",   "Shows"};
    for (int i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(tabs->tabBar()->tabData(i).toString(), keys[i]);
        EXPECT_EQ(window.tabIndex(keys[i]), i);
        if (i > 0) {
            EXPECT_EQ(tabs->tabText(i), keys[i]);
        }
    }
    EXPECT_EQ(window.selectedKey(), QStringLiteral("Individual"));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tessorin - Rabbits.cav"));

    // The key, not the caption, finds the page, and the title follows the page.
    gAnimal.name = QStringLiteral("Flopsy");
    window.SelectTab(QStringLiteral("Individual"));
    EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("lblTitle"))->text(), QStringLiteral("Flopsy"));
    window.SelectTab(QStringLiteral("Breeding"));
    EXPECT_EQ(window.selectedKey(), QStringLiteral("Breeding"));
    EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("lblTitle"))->text(), QStringLiteral("Flopsy - Mating records"));
    EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("lblPageTitle(5)"))->text(),
              QStringLiteral("Flopsy - Mating records"));
    EXPECT_EQ(window.tabIndex(QStringLiteral("Rabbit")), -1);
}

TEST_F(MainWindowTest, PageTitlesCarryTheNameOnlyOnTheAnimalsPages)
{
    EXPECT_EQ(frmTree::PageTitle(QStringLiteral("Individual"), QStringLiteral("Flopsy")), QStringLiteral("Flopsy"));
    EXPECT_EQ(frmTree::PageTitle(QStringLiteral("Journal"), QStringLiteral("Flopsy")), QStringLiteral("Flopsy - Journal"));
    EXPECT_EQ(frmTree::PageTitle(QStringLiteral("Health"), QStringLiteral("Flopsy")),
              QStringLiteral("Flopsy - Health records"));
    EXPECT_EQ(frmTree::PageTitle(QStringLiteral("Family Tree"), QStringLiteral("Flopsy")),
              QStringLiteral("Flopsy - Family tree"));
    EXPECT_EQ(frmTree::PageTitle(QStringLiteral("Sold Stock"), QStringLiteral("Flopsy")), QStringLiteral("Sold stock"));
    EXPECT_EQ(frmTree::PageTitle(QStringLiteral("Contacts"), QStringLiteral("Flopsy")), QStringLiteral("Contacts"));
    EXPECT_EQ(frmTree::PageTitle(QStringLiteral("Births"), QString()), QStringLiteral("Births"));
}

TEST_F(MainWindowTest, WhatComesLaterStandsDisabledWithItsTip)
{
    openRabbits();
    frmTree window;
    const QStringList working = {"Individual", "Family Tree", "Descendants"};
    for (const TreeTab& tab : frmTree::Tabs()) {
        const int i = window.tabIndex(tab.key);
        EXPECT_EQ(window.tabStrip()->isTabEnabled(i), working.contains(tab.key)) << i;
        EXPECT_EQ(window.tabStrip()->tabToolTip(i),
                  working.contains(tab.key) ? QString() : QStringLiteral("Not available yet")) << i;
    }

    for (const char* name : {"mnuJournal", "mnuHealth",
                             "mnuBreeding", "mnuSold", "mnuContact", "mnuInformation", "mnuCalendar",
                             "mnuCertificate", "mnu_HTML", "mnuIconFolder",
                             "mnuDefaultBackupFolder", "mnuCopyCD", "mnuCopyFloppy", "mnuCopyToOtherLocation",
                             "mnuArchive", "mnuRestoreFromHD", "mnuRestoreOnline", "mnuReplace",
                             "mnuImportPedigreeTemplates", "mnuImport", "mnuImportHTML", "mnuExportHTML", "mnuExport",
                             "mnuUsing", "mnuRecentAnswers", "mnuBackgrounds", "mnuNews", "mnuChkUpdates", "mnuAbout",
                             "mnuListAddNotes&Awards", "mnuListAddJournal", "mnuListAddWeight"}) {
        QAction* a = action(&window, QString::fromLatin1(name));
        ASSERT_NE(a, nullptr) << name;
        EXPECT_FALSE(a->isEnabled()) << name;
        EXPECT_EQ(a->toolTip(), QStringLiteral("Not available yet")) << name;
    }
    for (const char* name : {"mnuExit", "mnuOpen", "mnuNewDatabase", "mnuUser", "mnuPersonal_folder", "mnuViewLog",
                             "mnuDeleteLog", "mnuOpenError", "mnuClearRecent", "mnuUpdateDatabase", "mnuSearch",
                             "mnuAdd", "mnuSimilar", "mnuEdit", "mnuDelete", "mnuMyPics", "mnuEditRecord",
                             "mnuDeleteRecord", "mnuListEdit", "mnuListDelete", "mnuListAddPhoto", "mnuInbreeding",
                             "mnuCage"}) {
        QAction* a = action(&window, QString::fromLatin1(name));
        ASSERT_NE(a, nullptr) << name;
        EXPECT_TRUE(a->isEnabled()) << name;
    }
    EXPECT_EQ(window.findChild<QMenu*>(QStringLiteral("mnuCopyToDisk"))->title(), QStringLiteral("&Backup"));

    // Toolbar buttons run their menu entries and wait as they do.
    for (const char* key : {"Calendar", "Certificate", "Backup", "Update", "News", "Help"}) {
        QAction* button = window.toolbarButton(QString::fromLatin1(key));
        ASSERT_NE(button, nullptr) << key;
        EXPECT_FALSE(button->isEnabled()) << key;
        EXPECT_EQ(button->toolTip(), QStringLiteral("Not available yet")) << key;
    }
    for (const char* key : {"Open File", "Search", "Add", "Edit", "Inbreeding", "Cage"})
        EXPECT_TRUE(window.toolbarButton(QString::fromLatin1(key))->isEnabled()) << key;
    EXPECT_TRUE(window.toolbarButton(QStringLiteral("User Details"))->isEnabled());
    ASSERT_NE(window.toolbarButton(QStringLiteral("Backup"))->menu(), nullptr);
    EXPECT_EQ(window.toolbarButton(QStringLiteral("Backup"))->menu()->actions().size(), 4);
}

TEST_F(MainWindowTest, WithoutADataFileTheFilesEntriesWait)
{
    frmTree window;
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tessorin"));
    EXPECT_EQ(window.tabStrip()->tabText(0), QStringLiteral("Individual"));
    EXPECT_FALSE(action(&window, QStringLiteral("mnuUser"))->isEnabled());
    EXPECT_FALSE(window.toolbarButton(QStringLiteral("User Details"))->isEnabled());
    EXPECT_TRUE(action(&window, QStringLiteral("mnuOpen"))->isEnabled());
    EXPECT_TRUE(env.ui().calls().isEmpty());
}

TEST_F(MainWindowTest, TheLoadDeletesTheErrorLogAndTheLeftovers)
{
    LogError(QStringLiteral("Something of the last run"));
    ASSERT_TRUE(QFileInfo::exists(ErrorLogPath()));
    LogSave(QStringLiteral("Save Mating: Flopsy"));
    QDir().mkpath(env.dataFolder() + QStringLiteral("temp"));
    ASSERT_TRUE(TestEnv::writeText(env.dataFolder() + QStringLiteral("temp/update.exe"), QStringLiteral("MZ")));
    ASSERT_TRUE(TestEnv::writeText(env.dataFolder() + QStringLiteral("temp/temp.cav"), QStringLiteral("x")));
    gFormsLoaded = false;

    frmTree window;
    EXPECT_FALSE(QFileInfo::exists(ErrorLogPath()));
    EXPECT_FALSE(QFileInfo::exists(env.dataFolder() + QStringLiteral("temp/update.exe")));
    EXPECT_FALSE(QFileInfo::exists(env.dataFolder() + QStringLiteral("temp/temp.cav")));
    EXPECT_TRUE(QDir(env.dataFolder() + QStringLiteral("temp")).isEmpty());
    EXPECT_TRUE(QFileInfo::exists(SaveLogPath())); // the save log stays
    EXPECT_TRUE(gFormsLoaded);
}

TEST_F(MainWindowTest, TheLoadReadsTheRecentListOfTheOpenFile)
{
    openRabbits();
    ASSERT_TRUE(TestEnv::writeText(RecentFilePath(), QStringLiteral("Flopsy\nMopsy\n")));
    gRecentNames.fill(QString());
    frmTree window;
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Flopsy"));
    EXPECT_EQ(gRecentNames[1], QStringLiteral("Mopsy"));
}

TEST_F(MainWindowTest, ReloadingForAnotherFileKeepsTheProgramAndWritesTheRecentList)
{
    openRabbits();
    ShowMainWindow();
    QPointer<frmTree> first = MainWindow();
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->isVisible());
    AddRecent(QStringLiteral("Peter"));

    ShowMainWindow();
    QCoreApplication::processEvents(); // the old window goes once the command that asked has returned
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(first.isNull());
    ASSERT_NE(MainWindow(), nullptr);
    EXPECT_TRUE(MainWindow()->isVisible());
    EXPECT_TRUE(gDatabase.isOpen()); // no ExitProgram on a change of file
    EXPECT_TRUE(gFormsLoaded);
    EXPECT_TRUE(TestEnv::readText(RecentFilePath()).startsWith(QStringLiteral("Peter\n")));
}

TEST_F(MainWindowTest, TheCloseBoxEndsTheProgram)
{
    openRabbits();
    ShowMainWindow();
    frmTree* window = MainWindow();
    AddRecent(QStringLiteral("Benjamin"));
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(MainWindow(), nullptr);
    EXPECT_FALSE(gDatabase.isOpen());
    EXPECT_FALSE(gFormsLoaded);
    EXPECT_TRUE(TestEnv::readText(env.settingsFolder() + QStringLiteral("Rabbits.cav.txt"))
                    .startsWith(QStringLiteral("Benjamin\n")));
}

TEST_F(MainWindowTest, TheLogMenuOpensALogOrSaysThereIsNone)
{
    openRabbits();
    frmTree window;
    action(&window, QStringLiteral("mnuViewLog"))->trigger();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].kind, ScriptedUi::Kind::Message);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("No Log File"));

    env.ui().clear();
    LogSave(QStringLiteral("Save Weight: Flopsy"));
    action(&window, QStringLiteral("mnuViewLog"))->trigger();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].kind, ScriptedUi::Kind::ShowPath);
    EXPECT_EQ(env.ui().calls()[0].text, SaveLogPath());

    // Deleting asks first, as every delete does.
    env.ui().clear();
    env.ui().queueAnswer(Ui::Answer::No);
    action(&window, QStringLiteral("mnuDeleteLog"))->trigger();
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls()[0].title, QStringLiteral("Delete Save Log?"));
    EXPECT_EQ(env.ui().calls()[0].buttons, Ui::Buttons::YesNo);
    EXPECT_EQ(env.ui().calls()[0].text,
              QStringLiteral("Are you sure you want to permanently delete the save log?\n") + SaveLogPath());
    EXPECT_TRUE(QFileInfo::exists(SaveLogPath()));
    env.ui().queueAnswer(Ui::Answer::Yes);
    action(&window, QStringLiteral("mnuDeleteLog"))->trigger();
    EXPECT_FALSE(QFileInfo::exists(SaveLogPath()));
}

TEST_F(MainWindowTest, AFolderOrLogThatTheDesktopCannotOpenIsNamedInAMessage)
{
    openRabbits();
    LogSave(QStringLiteral("Save Weight: Flopsy"));
    frmTree window;
    LogError(QStringLiteral("Search Error 3075 - Syntax error")); // the window's load empties the error log
    const QList<QPair<QString, QString>> entries = {{QStringLiteral("mnuPersonal_folder"), gDataFolder},
                                                    {QStringLiteral("mnuMyPics"), PicturesFolder()},
                                                    {QStringLiteral("mnuViewLog"), SaveLogPath()},
                                                    {QStringLiteral("mnuOpenError"), ErrorLogPath()}};
    for (const auto& [name, path] : entries) {
        env.ui().clear();
        env.ui().queuePathFails();
        action(&window, name)->trigger();
        ASSERT_EQ(env.ui().calls().size(), 2) << name.toStdString();
        EXPECT_EQ(env.ui().calls()[0].text, path);
        EXPECT_EQ(env.ui().calls()[1].title, QStringLiteral("Error"));
        EXPECT_TRUE(env.ui().calls()[1].text.contains(path)) << env.ui().calls()[1].text.toStdString();
    }
}

TEST_F(MainWindowTest, AnAmpersandInAMenuShowsAsItself)
{
    openRabbits();
    frmTree window;
    QAction* notes = action(&window, QStringLiteral("mnuListAddNotes&Awards"));
    ASSERT_NE(notes, nullptr);
    EXPECT_EQ(notes->text(), QStringLiteral("Notes && Awards"));
    EXPECT_EQ(notes->iconText(), QStringLiteral("Notes & Awards"));
}

TEST_F(MainWindowTest, AReadOnlyFileSaysSoInTheTitleAndLeavesEveryWritingCommandDisabled)
{
    openRabbits();
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, sex, owner, sold, deceased, prefix, suffix) "
                                     "VALUES ('Flopsy', 'female', -1, 0, 0, '', '')"));
    const QString path = gDatabase.path();
    gDatabase.Close();
    gDatabase = Database::OpenDatabase(path, false, true);
    ASSERT_TRUE(gDatabase.isReadOnly());

    ShowMainWindow();
    frmTree& window = *MainWindow();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tessorin - Rabbits.cav (read-only)"));
    ASSERT_EQ(gAnimal.name, QStringLiteral("Flopsy"));
    for (const char* name : {"mnuAdd", "mnuSimilar", "mnuEdit", "mnuDelete", "mnuUpdateDatabase", "mnuEditRecord",
                             "mnuDeleteRecord", "mnuListEdit", "mnuListDelete", "mnuListAddPhoto", "mnuAddPic",
                             "mnuDeletePic", "mnuPicSwap"}) {
        QAction* a = action(&window, QString::fromLatin1(name));
        ASSERT_NE(a, nullptr) << name;
        EXPECT_FALSE(a->isEnabled()) << name;
    }
    EXPECT_EQ(action(&window, QStringLiteral("mnuAdd"))->toolTip(), QStringLiteral("The data file is open read-only."));
    for (const char* key : {"Add", "Edit"}) {
        EXPECT_FALSE(window.toolbarButton(QString::fromLatin1(key))->isEnabled()) << key;
        EXPECT_EQ(window.toolbarButton(QString::fromLatin1(key))->toolTip(), QStringLiteral("The data file is open read-only."));
    }
    for (const char* name : {"mnuOpen", "mnuSearch", "mnuInbreeding", "mnuUser", "mnuViewLog", "mnuMyPics"})
        EXPECT_TRUE(action(&window, QString::fromLatin1(name))->isEnabled()) << name;

    // A double click on a name, and the commands reached some other way, write nothing and ask nothing.
    env.ui().clear(); // the coefficient's own notice, which is not the window's to give
    emit window.searchPane()->editRequested();
    window.mnuAdd_Click();
    window.DeleteCurrentAnimal();
    EXPECT_TRUE(env.ui().calls().isEmpty()) << env.ui().calls().value(0).text.toStdString();
    EXPECT_FALSE(gDatabase.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = 'Flopsy'")).Eof());

    // The settings can be looked at, not saved.
    action(&window, QStringLiteral("mnuUser"))->trigger();
    ASSERT_NE(SetupWizardWindow(), nullptr);
    for (const char* button : {"cmdSave", "cmdClearCustom"})
        EXPECT_FALSE(SetupWizardWindow()->findChild<QPushButton*>(QString::fromLatin1(button))->isEnabled()) << button;
    EXPECT_FALSE(SetupWizardWindow()->ClearCustomFields());
    EXPECT_TRUE(env.ui().calls().isEmpty());
    delete SetupWizardWindow();
}

TEST_F(MainWindowTest, UserSettingsComeUpOnTheMainWindowAndTheSpeciesWordFollowsTheirSave)
{
    openRabbits();
    ShowMainWindow();
    frmTree* window = MainWindow();
    ASSERT_EQ(window->tabStrip()->tabText(0), QStringLiteral("Rabbit"));
    action(window, QStringLiteral("mnuUser"))->trigger();
    frmNewUser* wizard = SetupWizardWindow();
    ASSERT_NE(wizard, nullptr);
    EXPECT_EQ(wizard->parentWidget(), window);
    EXPECT_TRUE(wizard->isWindow());
    EXPECT_EQ(wizard->windowModality(), Qt::ApplicationModal);

    wizard->findChild<QLineEdit*>(QStringLiteral("txtBreeder"))->setText(QStringLiteral("Ann"));
    wizard->findChild<QComboBox*>(QStringLiteral("cboCountry"))->setCurrentText(QStringLiteral("Ireland"));
    wizard->findChild<QComboBox*>(QStringLiteral("cboWeightMeasure"))->setEditText(QStringLiteral("grams"));
    auto* animal = wizard->findChild<QComboBox*>(QStringLiteral("cboAnimal"));
    animal->setEditText(QStringLiteral("Goat"));
    wizard->cboAnimal_LostFocus(); // Yes to the suggestion: the goat's words and custom fields
    wizard->findChild<QPushButton*>(QStringLiteral("cmdSave"))->click();

    EXPECT_EQ(window->tabStrip()->tabText(0), QStringLiteral("Goat"));
    EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("lblTitle"))->text(), QStringLiteral("Goat"));
    EXPECT_EQ(window->tabIndex(QStringLiteral("Individual")), 0);
    EXPECT_GE(window->findChild<QComboBox*>(QStringLiteral("cboSearch"))->findText(QStringLiteral("Under Colour")), 0);
}

TEST_F(MainWindowTest, DatabaseNewFromTheMenuReplacesTheWindowOnlyAfterTheCommandHasReturned)
{
    openRabbits();
    ShowMainWindow();
    AddRecent(QStringLiteral("Peter"));
    QPointer<frmTree> old = MainWindow();
    env.ui().queueInput(QStringLiteral("Hares"));

    // Run as a click is: from the event loop, with the window's own menu entry on the stack.
    bool aliveWhenTheCommandReturned = false;
    QEventLoop loop;
    QTimer::singleShot(0, old, [&] {
        old->findChild<QAction*>(QStringLiteral("mnuNewDatabase"))->trigger();
        aliveWhenTheCommandReturned = !old.isNull();
        loop.quit();
    });
    loop.exec();
    EXPECT_TRUE(aliveWhenTheCommandReturned);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    EXPECT_TRUE(old.isNull());
    ASSERT_NE(MainWindow(), nullptr);
    EXPECT_EQ(MainWindow()->windowTitle(), QStringLiteral("Tessorin - Hares.cav"));
    EXPECT_TRUE(MainWindow()->isVisible());
    // The list of the file left behind was written before the new file's took its place.
    EXPECT_TRUE(TestEnv::readText(env.settingsFolder() + QStringLiteral("Rabbits.cav.txt"))
                    .startsWith(QStringLiteral("Peter\n")));
    // The wizard for the new file stands on the new window, which waits for it.
    frmNewUser* wizard = SetupWizardWindow();
    ASSERT_NE(wizard, nullptr);
    EXPECT_EQ(wizard->parentWidget(), MainWindow());
    EXPECT_TRUE(wizard->isVisible());
    EXPECT_TRUE(wizard->isWindow());
    delete wizard;
}
