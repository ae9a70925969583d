// SPDX-License-Identifier: GPL-3.0-or-later
// The recent records list: its limits, its file and the question about a name that has gone.
#include "support/TestEnv.h"

#include "session/RecentList.h"
#include "session/globals.h"

#include "base/Log.h"

#include <QDir>
#include <QFile>
#include <csignal>
#include <sys/resource.h>

namespace {

class Recent : public EnvTest {
protected:
    void SetUp() override
    {
        gDatabaseFile = env.dataFolder() + QStringLiteral("Rabbits.cav");
        gRecentNames.fill(QString());
        SetRecentListSink([this](const QStringList& names, const QString& tip) {
            shown = names;
            shownTip = tip;
            ++shows;
        });
    }
    void TearDown() override
    {
        SetRecentListSink(nullptr);
        gRecentNames.fill(QString());
        gDatabaseFile.clear();
    }
    static void addNumbered(int count)
    {
        for (int i = 1; i <= count; ++i)
            AddRecent(QStringLiteral("Animal %1").arg(i));
    }
    QStringList shown;
    QString shownTip;
    int shows = 0;
};

TEST_F(Recent, TheFileSitsBesideTheSettingsNamedAfterTheDataFile)
{
    EXPECT_EQ(RecentFilePath(), env.settingsFolder() + QStringLiteral("Rabbits.cav.txt"));
}

TEST_F(Recent, NewestFirstAndTheTwentyFirstPushesTheOldestOut)
{
    addNumbered(20);
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Animal 20"));
    EXPECT_EQ(gRecentNames[19], QStringLiteral("Animal 1"));
    AddRecent(QStringLiteral("Animal 21"));
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Animal 21"));
    EXPECT_EQ(gRecentNames[19], QStringLiteral("Animal 2"));
}

TEST_F(Recent, AKnownNameKeepsItsPlace)
{
    addNumbered(3);
    AddRecent(QStringLiteral("Animal 1"));
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Animal 3"));
    EXPECT_EQ(gRecentNames[2], QStringLiteral("Animal 1"));
    EXPECT_TRUE(gRecentNames[3].isEmpty());
}

TEST_F(Recent, TwentySavedComeBackAsNineteen)
{
    addNumbered(20);
    WriteRecentFile();
    QString expected;
    for (int i = 20; i >= 1; --i)
        expected += QStringLiteral("Animal %1\n").arg(i);
    EXPECT_EQ(TestEnv::readText(RecentFilePath()), expected);

    gRecentNames.fill(QStringLiteral("stale"));
    LoadRecentFile();
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Animal 20"));
    EXPECT_EQ(gRecentNames[18], QStringLiteral("Animal 2"));
    EXPECT_TRUE(gRecentNames[19].isEmpty());
}

TEST_F(Recent, FreePlacesAreWrittenAsEmptyLinesAndAMissingFileLeavesTheListEmpty)
{
    AddRecent(QStringLiteral("O'Brien"));
    WriteRecentFile();
    EXPECT_EQ(TestEnv::readText(RecentFilePath()), QStringLiteral("O'Brien") + QString(20, QLatin1Char('\n')));

    QFile::remove(RecentFilePath());
    LoadRecentFile();
    for (const QString& n : gRecentNames)
        EXPECT_TRUE(n.isEmpty());
}

// A file write cut short the way a full disk cuts it: the process may write no file past a few bytes.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &before);
        previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limited = before;
        limited.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, previousHandler);
    }

private:
    rlimit before{};
    void (*previousHandler)(int) = nullptr;
};

TEST_F(Recent, AWriteThatFailsLeavesTheLastListWholeAndIsLogged)
{
    AddRecent(QStringLiteral("Peter"));
    WriteRecentFile();
    const QString saved = TestEnv::readText(RecentFilePath());
    ASSERT_TRUE(saved.startsWith(QStringLiteral("Peter\n")));
    QFile::remove(ErrorLogPath());

    // Twenty long names do not fit in what the disk has left.
    for (int i = 1; i <= 20; ++i)
        AddRecent(QStringLiteral("A name long enough to fill the disk %1").arg(i));
    {
        const FileSizeLimit full(300);
        WriteRecentFile();
    }
    EXPECT_EQ(TestEnv::readText(RecentFilePath()), saved);
    const QString log = TestEnv::readText(ErrorLogPath());
    EXPECT_TRUE(log.contains(QStringLiteral(" - Write Recent file error  - "))) << log.toStdString();

    // A list that cannot be written at all is logged the same way.
    QFile::remove(ErrorLogPath());
    gDatabaseFile = env.dataFolder() + QStringLiteral("Blocked.cav");
    ASSERT_TRUE(QDir().mkpath(RecentFilePath()));
    WriteRecentFile();
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).contains(QStringLiteral(" - Write Recent file error  - ")));
}

TEST_F(Recent, ShowListsTheNamesInOrderWithItsTipAndClearEmptiesIt)
{
    addNumbered(2);
    ShowRecentList();
    EXPECT_EQ(shown, QStringList({QStringLiteral("Animal 2"), QStringLiteral("Animal 1")}));
    EXPECT_EQ(shownTip, QStringLiteral("List of records accessed recently."));

    WriteRecentFile();
    ClearRecent();
    EXPECT_TRUE(shown.isEmpty());
    EXPECT_TRUE(gRecentNames[0].isEmpty());
    // The file waits for the next write.
    EXPECT_TRUE(TestEnv::readText(RecentFilePath()).startsWith(QStringLiteral("Animal 2\n")));
}

TEST_F(Recent, NotFoundAsksAndOnYesBlanksTheNameInPlace)
{
    addNumbered(3); // Animal 3, Animal 2, Animal 1
    env.ui().queueAnswer(Ui::Answer::Yes);
    RecentNotFound(QStringLiteral("Animal 2"));
    ASSERT_EQ(env.ui().calls().size(), 1);
    const auto& call = env.ui().calls().first();
    EXPECT_EQ(call.title, QStringLiteral("No record found"));
    EXPECT_EQ(call.text, QStringLiteral("This animal has been deleted or is in a different database.\n"
                                        "Would you like to remove the name from your recent names list?"));
    EXPECT_EQ(call.buttons, Ui::Buttons::YesNo);
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Animal 3"));
    EXPECT_TRUE(gRecentNames[1].isEmpty());
    EXPECT_EQ(gRecentNames[2], QStringLiteral("Animal 1"));
    EXPECT_EQ(shown, QStringList({QStringLiteral("Animal 3"), QStringLiteral("Animal 1")}));
}

TEST_F(Recent, NotFoundAnsweredNoKeepsTheName)
{
    addNumbered(2);
    env.ui().queueAnswer(Ui::Answer::No);
    RecentNotFound(QStringLiteral("Animal 1"));
    EXPECT_EQ(gRecentNames[1], QStringLiteral("Animal 1"));
    EXPECT_EQ(shows, 0);
}

TEST_F(Recent, ARenameKeepsThePlace)
{
    addNumbered(3);
    RenameRecent(QStringLiteral("Animal 2"), QStringLiteral("Ash"));
    EXPECT_EQ(gRecentNames[1], QStringLiteral("Ash"));
}

} // namespace
