// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog service: the silent default, the scripted double every test uses, and file filters.
#include "support/TestEnv.h"

#include "base/Clock.h"
#include "base/Folders.h"
#include "base/Ui.h"

#include <gtest/gtest-spi.h>

namespace {

using Ui::Answer;
using Ui::Buttons;
using Ui::Icon;
using Kind = ScriptedUi::Kind;

TEST(UiFilter, PipedFiltersBecomeQtFilters)
{
    EXPECT_EQ(Ui::qtFilter(QStringLiteral("Data files (*.cav)|*.cav|All files (*.*)|*.*")),
              QStringLiteral("Data files (*.cav);;All files (*)"));
    EXPECT_EQ(Ui::qtFilter(QStringLiteral("Pictures|*.jpg;*.bmp")), QStringLiteral("Pictures (*.jpg *.bmp)"));
    EXPECT_EQ(Ui::qtFilter(QStringLiteral("CSV Files (*.csv)|*.csv")), QStringLiteral("CSV Files (*.csv)"));
    EXPECT_EQ(Ui::qtFilter(QStringLiteral("Text (tab separated)|*.txt")),
              QStringLiteral("Text (tab separated) (*.txt)"));
    EXPECT_EQ(Ui::qtFilter(QStringLiteral("Anything|")), QStringLiteral("Anything (*)"));
    EXPECT_EQ(Ui::qtFilter(QStringLiteral("Web pages (*.htm)")), QStringLiteral("Web pages (*.htm)"));
    EXPECT_EQ(Ui::qtFilter(QString()), QString());
}

TEST(UiService, WithoutAnInstalledServiceEveryBoxAnswersOkAndNothingIsChosen)
{
    std::unique_ptr<Ui::Service> before = Ui::replace(nullptr);
    EXPECT_EQ(Ui::message(QStringLiteral("Delete?"), Buttons::YesNo), Answer::Ok);
    EXPECT_EQ(Ui::input(QStringLiteral("Name"), QString(), QStringLiteral("Ash")), QString());
    EXPECT_EQ(Ui::openFile(QStringLiteral("Open"), QStringLiteral("All|*.*")), QString());
    EXPECT_EQ(Ui::saveFile(QStringLiteral("Save"), QStringLiteral("All|*.*")), QString());
    EXPECT_EQ(Ui::chooseFolder(QStringLiteral("Folder")), QString());
    Ui::showPath(QStringLiteral("/nowhere"));
    Ui::status(QStringLiteral("busy"));
    Ui::replace(std::move(before));
}

class ScriptedService : public EnvTest {};

TEST_F(ScriptedService, RecordsEachMessageAsTheProgramGaveIt)
{
    Ui::message(QStringLiteral("Record failed to save - \nError Number: 3075"), Buttons::Ok, Icon::Exclamation,
                QStringLiteral("Error"));
    Ui::status(QStringLiteral("Checking database integrity ..."));
    Ui::showPath(env.settingsFolder() + QStringLiteral("Save.txt"));

    const auto& calls = env.ui().calls();
    ASSERT_EQ(calls.size(), 3);
    EXPECT_EQ(calls[0].kind, Kind::Message);
    EXPECT_EQ(calls[0].title, QStringLiteral("Error"));
    EXPECT_EQ(calls[0].text, QStringLiteral("Record failed to save - \nError Number: 3075"));
    EXPECT_EQ(calls[0].buttons, Buttons::Ok);
    EXPECT_EQ(calls[0].icon, Icon::Exclamation);
    EXPECT_EQ(calls[0].reply, QStringLiteral("Ok"));
    EXPECT_EQ(calls[1].kind, Kind::Status);
    EXPECT_EQ(calls[1].text, QStringLiteral("Checking database integrity ..."));
    EXPECT_EQ(calls[2].kind, Kind::ShowPath);
    EXPECT_EQ(calls[2].text, env.settingsFolder() + QStringLiteral("Save.txt"));
    EXPECT_EQ(env.ui().messages(), QStringList{QStringLiteral("Record failed to save - \nError Number: 3075")});
}

TEST_F(ScriptedService, GivesQueuedAnswersInOrderThenTheFirstButton)
{
    env.ui().queueAnswer(Answer::No);
    env.ui().queueAnswer(Answer::Cancel);
    EXPECT_EQ(Ui::message(QStringLiteral("Delete Ash?"), Buttons::YesNo), Answer::No);
    EXPECT_EQ(Ui::message(QStringLiteral("Save first?"), Buttons::YesNoCancel), Answer::Cancel);
    EXPECT_TRUE(env.ui().allUsed());
    EXPECT_EQ(Ui::message(QStringLiteral("Delete Ash?"), Buttons::YesNo), Answer::Yes);
    EXPECT_EQ(Ui::message(QStringLiteral("Done"), Buttons::OkCancel), Answer::Ok);
    EXPECT_EQ(Ui::message(QStringLiteral("Busy"), Buttons::RetryCancel), Answer::Retry);
    EXPECT_EQ(Ui::message(QStringLiteral("Broken"), Buttons::AbortRetryIgnore), Answer::Abort);
    EXPECT_EQ(env.ui().calls()[1].reply, QStringLiteral("Cancel"));
}

TEST_F(ScriptedService, APathWithoutAProgramIsNamedInAMessage)
{
    const QString log = env.settingsFolder() + QStringLiteral("Save.txt");
    EXPECT_TRUE(Ui::showPathOrSay(log));
    env.ui().queuePathFails();
    EXPECT_FALSE(Ui::showPathOrSay(log));
    EXPECT_TRUE(Ui::showPath(log)); // the failure was for one path only

    const auto& calls = env.ui().calls();
    ASSERT_EQ(calls.size(), 4);
    EXPECT_EQ(calls[1].kind, Kind::ShowPath);
    EXPECT_EQ(calls[1].reply, QStringLiteral("No program"));
    EXPECT_EQ(calls[2].kind, Kind::Message);
    EXPECT_EQ(calls[2].title, QStringLiteral("Error"));
    EXPECT_EQ(calls[2].text, QStringLiteral("No program on this computer is set to open\n") + log +
                                 QStringLiteral("\nOpen it from your file manager instead."));
    EXPECT_EQ(calls[3].kind, Kind::ShowPath);
}

TEST_F(ScriptedService, AnAnswerThatTheBoxDoesNotOfferFailsTheTest)
{
    EXPECT_NONFATAL_FAILURE(
        {
            env.ui().queueAnswer(Answer::Yes);
            Ui::message(QStringLiteral("Saved."), Buttons::Ok);
        },
        "without that button: Saved.");
}

TEST_F(ScriptedService, InputsAndFilesComeFromTheirQueuesOrAsCancel)
{
    env.ui().queueInput(QStringLiteral("Rabbits"));
    env.ui().queueFile(env.dataFolder() + QStringLiteral("a.cav"));
    env.ui().queueFile(env.dataFolder() + QStringLiteral("b.csv"));
    env.ui().queueFile(env.dataFolder());

    EXPECT_EQ(Ui::input(QStringLiteral("Name of the new data file"), QStringLiteral("New"), QStringLiteral("Cavies")),
              QStringLiteral("Rabbits"));
    EXPECT_EQ(Ui::input(QStringLiteral("Again")), QString());
    EXPECT_EQ(Ui::openFile(QStringLiteral("Open"), QStringLiteral("Data files (*.cav)|*.cav"), env.dataFolder()),
              env.dataFolder() + QStringLiteral("a.cav"));
    EXPECT_EQ(Ui::saveFile(QStringLiteral("Export"), QStringLiteral("CSV|*.csv"), QString(), QStringLiteral("tree.csv")),
              env.dataFolder() + QStringLiteral("b.csv"));
    EXPECT_EQ(Ui::chooseFolder(QStringLiteral("Backup to")), env.dataFolder());
    EXPECT_EQ(Ui::openFile(QStringLiteral("Open"), QString()), QString());

    const auto& calls = env.ui().calls();
    ASSERT_EQ(calls.size(), 6);
    EXPECT_EQ(calls[0].kind, Kind::Input);
    EXPECT_EQ(calls[0].text, QStringLiteral("Name of the new data file"));
    EXPECT_EQ(calls[0].title, QStringLiteral("New"));
    EXPECT_EQ(calls[0].defaultText, QStringLiteral("Cavies"));
    EXPECT_EQ(calls[2].kind, Kind::OpenFile);
    EXPECT_EQ(calls[2].filter, QStringLiteral("Data files (*.cav)|*.cav"));
    EXPECT_EQ(calls[2].folder, env.dataFolder());
    EXPECT_EQ(calls[3].kind, Kind::SaveFile);
    EXPECT_EQ(calls[3].defaultText, QStringLiteral("tree.csv"));
    EXPECT_EQ(calls[4].kind, Kind::ChooseFolder);
    EXPECT_EQ(calls[5].reply, QString());

    env.ui().queueAnswer(Answer::No);
    env.ui().clear();
    EXPECT_TRUE(env.ui().calls().isEmpty());
    EXPECT_TRUE(env.ui().allUsed());
}

TEST(TestEnvironment, PutsEverythingBackWhenItGoes)
{
    TestEnv outer;
    Ui::Service* outerService = &Ui::service();
    {
        TestEnv inner;
        EXPECT_NE(inner.dataFolder(), outer.dataFolder());
        EXPECT_EQ(gDataFolder, inner.dataFolder());
        EXPECT_EQ(gSettingsFolder, inner.settingsFolder());
        EXPECT_TRUE(QFileInfo(gDataFolder).isDir());
        EXPECT_TRUE(gDataFolder.endsWith(QLatin1Char('/')));
        EXPECT_EQ(&Ui::service(), &inner.ui());
        SetFixedToday(QDate(2001, 2, 3));
        SetRegionalDateOrder(DateOrder::MonthFirst);
        Ui::message(QStringLiteral("inner"));
    }
    EXPECT_EQ(&Ui::service(), outerService);
    EXPECT_TRUE(outer.ui().calls().isEmpty());
    EXPECT_EQ(gDataFolder, outer.dataFolder());
    EXPECT_EQ(gSettingsFolder, outer.settingsFolder());
    EXPECT_EQ(Today(), TestEnv::kToday);
    EXPECT_EQ(RegionalDateOrder(), DateOrder::DayFirst);
}

} // namespace
