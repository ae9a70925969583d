// SPDX-License-Identifier: GPL-3.0-or-later
// The program's own settings file: sections, and the value that moved into "Options".
#include "support/TestEnv.h"

#include "base/ProgramSettings.h"

#include <QSettings>

namespace {

class ProgramSettings : public EnvTest {
protected:
    ProgramSettings() { QSettings(QStringLiteral("tessorin"), QStringLiteral("tessorin")).clear(); }
    ~ProgramSettings() override { QSettings(QStringLiteral("tessorin"), QStringLiteral("tessorin")).clear(); }

    static QSettings file() { return QSettings(QStringLiteral("tessorin"), QStringLiteral("tessorin")); }
};

TEST_F(ProgramSettings, TheDefaultDatabaseOfAnEarlierVersionMovesIntoOptionsOnce)
{
    struct Case {
        const char* name;
        const char* oldValue;  // at the top level, nullptr for none
        const char* newValue;  // under "Options", nullptr for none
        const char* expected;
    };
    const Case cases[] = {
        {"only the old place", "/home/ann/Rabbits.cav", nullptr, "/home/ann/Rabbits.cav"},
        {"both: the new place wins", "/home/ann/Old.cav", "/home/ann/Cavies.cav", "/home/ann/Cavies.cav"},
        {"neither: the default", nullptr, nullptr, "1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        file().clear();
        if (c.oldValue)
            file().setValue(QStringLiteral("Default Database"), QString::fromLatin1(c.oldValue));
        if (c.newValue)
            file().setValue(QStringLiteral("Options/Default Database"), QString::fromLatin1(c.newValue));

        EXPECT_EQ(GetSetting(QStringLiteral("Options"), QStringLiteral("Default Database"), QStringLiteral("1")),
                  QString::fromLatin1(c.expected));
        EXPECT_FALSE(file().contains(QStringLiteral("Default Database")));
        EXPECT_EQ(GetSetting(QStringLiteral("Options"), QStringLiteral("Default Database"), QStringLiteral("1")),
                  QString::fromLatin1(c.expected));
    }
}

TEST_F(ProgramSettings, ADeleteInOptionsLeavesNoOldValueToComeBack)
{
    file().setValue(QStringLiteral("Default Database"), QStringLiteral("/gone/Stale.cav"));
    DeleteSetting(QStringLiteral("Options"), QStringLiteral("Default Database"));
    EXPECT_EQ(GetSetting(QStringLiteral("Options"), QStringLiteral("Default Database"), QStringLiteral("1")),
              QStringLiteral("1"));
    EXPECT_TRUE(file().allKeys().isEmpty());
}

TEST_F(ProgramSettings, OtherValuesStayWhereTheyAre)
{
    SaveSetting(QString(), QStringLiteral("Search Preference"), QStringLiteral("Recent"));
    SaveSetting(QStringLiteral("Options"), QStringLiteral("Search Preference"), QStringLiteral("Search"));
    EXPECT_EQ(GetSetting(QStringLiteral("Options"), QStringLiteral("Search Preference")), QStringLiteral("Search"));
    EXPECT_EQ(GetSetting(QString(), QStringLiteral("Search Preference")), QStringLiteral("Recent"));
}

} // namespace
