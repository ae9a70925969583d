// SPDX-License-Identifier: GPL-3.0-or-later
// The save and error logs: the form of a line, appending, deleting, and writes that cannot succeed.
#include "support/TestEnv.h"

#include "base/Dates.h"
#include "base/Folders.h"
#include "base/Log.h"

#include <QDir>
#include <QFile>

namespace {

class Logs : public EnvTest {};

TEST_F(Logs, ALineHoldsTheShortDateTheTwelveHourTimeAndTheText)
{
    const QDate day(2026, 11, 23);
    EXPECT_EQ(LogLine(QStringLiteral("Save Mating: Ash"), QDateTime(day, QTime(9, 5))),
              QStringLiteral("23/11/2026 09:05AM - Save Mating: Ash"));
    EXPECT_EQ(LogLine(QStringLiteral("Save Weight: Ash"), QDateTime(day, QTime(21, 5, 59))),
              QStringLiteral("23/11/2026 09:05PM - Save Weight: Ash"));
    EXPECT_EQ(LogLine(QStringLiteral("x"), QDateTime(day, QTime(12, 0))), QStringLiteral("23/11/2026 12:00PM - x"));
    EXPECT_EQ(LogLine(QStringLiteral("x"), QDateTime(day, QTime(0, 30))), QStringLiteral("23/11/2026 12:30AM - x"));

    SetRegionalDateOrder(DateOrder::MonthFirst);
    EXPECT_EQ(LogLine(QStringLiteral("x"), QDateTime(QDate(2026, 1, 2), QTime(13, 45))),
              QStringLiteral("01/02/2026 01:45PM - x"));
}

TEST_F(Logs, ALineWithoutATimeGivenIsOfTheProgramsDay)
{
    const QString line = LogLine(QStringLiteral("Save Journal: Ash"));
    EXPECT_TRUE(line.startsWith(QStringLiteral("23/11/2026 "))) << line.toStdString();
    EXPECT_TRUE(line.endsWith(QStringLiteral(" - Save Journal: Ash"))) << line.toStdString();
    EXPECT_EQ(line.size(), QStringLiteral("23/11/2026 hh:mmAM - Save Journal: Ash").size());
}

TEST_F(Logs, EachCallAppendsOneLineToItsOwnFile)
{
    EXPECT_EQ(SaveLogPath(), env.settingsFolder() + QStringLiteral("Save.txt"));
    EXPECT_EQ(ErrorLogPath(), env.settingsFolder() + QStringLiteral("Errors.txt"));

    LogSave(QStringLiteral("Save Mating: Ash"));
    LogSave(QStringLiteral("Save Weight: Zoë's 'Doe'"));
    LogError(QStringLiteral("Open data file error 3075 - Syntax error"));

    const QStringList saved = TestEnv::readText(SaveLogPath()).split(QLatin1Char('\n'));
    ASSERT_EQ(saved.size(), 3); // two lines, each ended
    EXPECT_TRUE(saved[0].startsWith(QStringLiteral("23/11/2026 ")));
    EXPECT_TRUE(saved[0].endsWith(QStringLiteral(" - Save Mating: Ash")));
    EXPECT_TRUE(saved[1].endsWith(QStringLiteral(" - Save Weight: Zoë's 'Doe'")));
    EXPECT_EQ(saved[2], QString());

    const QString errors = TestEnv::readText(ErrorLogPath());
    EXPECT_TRUE(errors.endsWith(QStringLiteral(" - Open data file error 3075 - Syntax error\n")));
    EXPECT_EQ(errors.count(QLatin1Char('\n')), 1);
}

TEST_F(Logs, TheSaveLogKeepsWhatWasThereBefore)
{
    ASSERT_TRUE(TestEnv::writeText(SaveLogPath(), QStringLiteral("an older line\n")));
    LogSave(QStringLiteral("Save Mating: Ash"));
    const QString text = TestEnv::readText(SaveLogPath());
    EXPECT_TRUE(text.startsWith(QStringLiteral("an older line\n23/11/2026 ")));
}

TEST_F(Logs, DeletingALogRemovesThatOneOnly)
{
    LogSave(QStringLiteral("kept"));
    LogError(QStringLiteral("gone"));
    DeleteErrorLog();
    EXPECT_FALSE(QFile::exists(ErrorLogPath()));
    EXPECT_TRUE(QFile::exists(SaveLogPath()));
    DeleteErrorLog(); // nothing there: no harm
    DeleteSaveLog();
    EXPECT_FALSE(QFile::exists(SaveLogPath()));
    LogError(QStringLiteral("a new run"));
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).endsWith(QStringLiteral(" - a new run\n")));
}

TEST_F(Logs, AWriteThatCannotSucceedIsSwallowed)
{
    // A file where the folder should be, and a folder where the log should be: both fail even for root.
    ASSERT_TRUE(TestEnv::writeText(env.root() + QStringLiteral("plain"), QStringLiteral("x")));
    gSettingsFolder = env.root() + QStringLiteral("plain/");
    LogSave(QStringLiteral("lost"));
    LogError(QStringLiteral("lost"));
    DeleteSaveLog();
    EXPECT_EQ(TestEnv::readText(env.root() + QStringLiteral("plain")), QStringLiteral("x"));

    gSettingsFolder = env.settingsFolder();
    ASSERT_TRUE(QDir(env.settingsFolder()).mkdir(QStringLiteral("Save.txt")));
    LogSave(QStringLiteral("lost"));
    DeleteSaveLog();
    EXPECT_TRUE(QFileInfo(SaveLogPath()).isDir());
    LogError(QStringLiteral("still written"));
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).endsWith(QStringLiteral(" - still written\n")));
}

TEST_F(Logs, NothingIsWrittenBeforeTheFoldersAreKnown)
{
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(env.root()));
    gSettingsFolder.clear();
    LogSave(QStringLiteral("nowhere"));
    LogError(QStringLiteral("nowhere"));
    QDir::setCurrent(before);
    EXPECT_FALSE(QFile::exists(env.root() + QStringLiteral("Save.txt")));
    EXPECT_FALSE(QFile::exists(env.root() + QStringLiteral("Errors.txt")));
}

} // namespace
