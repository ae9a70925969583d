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
    const struct {
        QTime time;
        const char* line;
    } cases[] = {{QTime(9, 5), "23/11/2026 09:05AM - x"},
                 {QTime(21, 5, 59), "23/11/2026 09:05PM - x"},
                 {QTime(12, 0), "23/11/2026 12:00PM - x"},
                 {QTime(0, 30), "23/11/2026 12:30AM - x"}};
    for (const auto& c : cases)
        EXPECT_EQ(LogLine("x", QDateTime(TestEnv::kToday, c.time)), c.line);
    // Without a time, the line is of the program's day.
    const QString line = LogLine("Save Journal: Ash");
    EXPECT_TRUE(line.startsWith("23/11/2026 ") && line.endsWith(" - Save Journal: Ash")) << line.toStdString();
    EXPECT_EQ(line.size(), QString("23/11/2026 hh:mmAM - Save Journal: Ash").size());

    SetRegionalDateOrder(DateOrder::MonthFirst);
    EXPECT_EQ(LogLine("x", QDateTime(QDate(2026, 1, 2), QTime(13, 45))), "01/02/2026 01:45PM - x");
}

TEST_F(Logs, EachCallAppendsOneLineToItsOwnFileAndDeletingRemovesThatOneOnly)
{
    EXPECT_EQ(SaveLogPath(), env.settingsFolder() + "Save.txt");
    EXPECT_EQ(ErrorLogPath(), env.settingsFolder() + "Errors.txt");
    ASSERT_TRUE(TestEnv::writeText(SaveLogPath(), "an older line\n"));
    LogSave("Save Mating: Ash");
    LogSave("Save Weight: Zoë's 'Doe'");
    LogError("Open data file error 3075 - Syntax error");

    const QStringList saved = TestEnv::readText(SaveLogPath()).split('\n');
    ASSERT_EQ(saved.size(), 4); // the older line and two more, each ended
    EXPECT_EQ(saved[0], "an older line");
    EXPECT_TRUE(saved[1].startsWith("23/11/2026 ") && saved[1].endsWith(" - Save Mating: Ash"));
    EXPECT_TRUE(saved[2].endsWith(" - Save Weight: Zoë's 'Doe'"));
    const QString errors = TestEnv::readText(ErrorLogPath());
    EXPECT_TRUE(errors.endsWith(" - Open data file error 3075 - Syntax error\n"));
    EXPECT_EQ(errors.count('\n'), 1);

    DeleteErrorLog();
    EXPECT_FALSE(QFile::exists(ErrorLogPath()));
    EXPECT_TRUE(QFile::exists(SaveLogPath()));
    DeleteErrorLog(); // nothing there: no harm
    DeleteSaveLog();
    EXPECT_FALSE(QFile::exists(SaveLogPath()));
    LogError("a new run");
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).endsWith(" - a new run\n"));
}

TEST_F(Logs, AWriteThatCannotSucceedIsSwallowed)
{
    // A file where the folder should be, and a folder where the log should be: both fail even for root.
    ASSERT_TRUE(TestEnv::writeText(env.root() + "plain", "x"));
    gSettingsFolder = env.root() + "plain/";
    LogSave("lost");
    LogError("lost");
    DeleteSaveLog();
    EXPECT_EQ(TestEnv::readText(env.root() + "plain"), "x");

    gSettingsFolder = env.settingsFolder();
    ASSERT_TRUE(QDir(env.settingsFolder()).mkdir("Save.txt"));
    LogSave("lost");
    DeleteSaveLog();
    EXPECT_TRUE(QFileInfo(SaveLogPath()).isDir());
    LogError("still written");
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).endsWith(" - still written\n"));

    // Nothing is written before the folders are known, not even into the working folder.
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(env.root()));
    gSettingsFolder.clear();
    LogSave("nowhere");
    LogError("nowhere");
    QDir::setCurrent(before);
    EXPECT_FALSE(QFile::exists(env.root() + "Save.txt"));
    EXPECT_FALSE(QFile::exists(env.root() + "Errors.txt"));
}

} // namespace
