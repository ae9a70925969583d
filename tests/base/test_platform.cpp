// SPDX-License-Identifier: GPL-3.0-or-later
// The clock, the per-user folders and what the machine tells about itself.
#include "support/TestEnv.h"

#include "base/Clock.h"
#include "base/Folders.h"
#include "base/Platform.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

TEST(Clock, AFixedDayHoldsUntilItIsLifted)
{
    TestEnv env;
    EXPECT_EQ(Today(), QDate(2026, 11, 23));
    EXPECT_EQ(Now().date(), QDate(2026, 11, 23));
    SetFixedToday(QDate(2020, 2, 29));
    EXPECT_EQ(Today(), QDate(2020, 2, 29));
    EXPECT_EQ(FixedToday(), QDate(2020, 2, 29));

    SetFixedToday(QDate());
    const QDate before = QDate::currentDate();
    const QDate today = Today();
    EXPECT_TRUE(today == before || today == QDate::currentDate()); // midnight may pass in between
    EXPECT_LE(qAbs(Now().secsTo(QDateTime::currentDateTime())), 5);
}

TEST(Folders, UserFoldersAreMadeUnderTheStandardLocations)
{
    TestEnv env;
    // The test program's home is a temporary one, so this touches no real folder.
    ASSERT_TRUE(QDir::homePath().startsWith(QDir::tempPath()));
    MakeUserFolders();
    EXPECT_EQ(gDataFolder,
              QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QStringLiteral("/tessorin/"));
    EXPECT_EQ(gSettingsFolder,
              QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/tessorin/"));
    EXPECT_TRUE(gDataFolder.startsWith(QDir::homePath()));
    EXPECT_TRUE(QFileInfo(gDataFolder).isDir());
    EXPECT_TRUE(QFileInfo(gSettingsFolder).isDir());
    // A second start finds them and changes nothing.
    ASSERT_TRUE(TestEnv::writeText(gSettingsFolder + QStringLiteral("Save.txt"), QStringLiteral("kept\n")));
    MakeUserFolders();
    EXPECT_EQ(TestEnv::readText(gSettingsFolder + QStringLiteral("Save.txt")), QStringLiteral("kept\n"));
}

TEST(Folders, TheInstallFolderIsAnExistingFolder)
{
    const QString folder = InstallFolder();
    ASSERT_FALSE(folder.isEmpty());
    EXPECT_TRUE(folder.endsWith(QLatin1Char('/')));
    EXPECT_TRUE(QFileInfo(folder).isDir());
}

TEST(Platform, ThePrettyNameIsReadFromOsRelease)
{
    EXPECT_EQ(OsReleasePrettyName(QStringLiteral("NAME=\"Debian GNU/Linux\"\n"
                                                 "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n"
                                                 "VERSION_ID=\"12\"\n")),
              QStringLiteral("Debian GNU/Linux 12 (bookworm)"));
    EXPECT_EQ(OsReleasePrettyName(QStringLiteral("PRETTY_NAME='Fedora Linux 40'")), QStringLiteral("Fedora Linux 40"));
    EXPECT_EQ(OsReleasePrettyName(QStringLiteral("ID=arch\nPRETTY_NAME=Arch\n")), QStringLiteral("Arch"));
    EXPECT_EQ(OsReleasePrettyName(QStringLiteral("PRETTY_NAME=\"Say \\\"hi\\\" OS\"")), QStringLiteral("Say \"hi\" OS"));
    EXPECT_EQ(OsReleasePrettyName(QStringLiteral("NAME=Nothing pretty\n")), QString());
    EXPECT_FALSE(GetPlatformName().isEmpty());
}

TEST(Platform, TheCountryIsNamedInEnglish)
{
    EXPECT_EQ(CountryNameOf(QLocale(QLocale::English, QLocale::UnitedStates)), QStringLiteral("United States"));
    EXPECT_EQ(CountryNameOf(QLocale(QStringLiteral("en_GB"))), QStringLiteral("United Kingdom"));
    EXPECT_EQ(CountryNameOf(QLocale(QStringLiteral("de_DE"))), QStringLiteral("Germany"));
    EXPECT_EQ(CountryNameOf(QLocale::c()), QString());
    EXPECT_EQ(GetCountryName(), CountryNameOf(QLocale::system()));
}

TEST(Platform, TheScreenSizeComesFromTheWindowProgram)
{
    EXPECT_EQ(GetScreenSize(), QString());
    SetScreenSizeProvider([] { return QStringLiteral("1024 x 600"); });
    EXPECT_EQ(GetScreenSize(), QStringLiteral("1024 x 600"));
    SetScreenSizeProvider(nullptr);
    EXPECT_EQ(GetScreenSize(), QString());
}

} // namespace
