// SPDX-License-Identifier: GPL-3.0-or-later
// Making, recognising, opening and closing data files, and the text helpers of every statement.
#include "StoreTest.h"

#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/RecentList.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QFile>
#include <sqlite3.h>

namespace {

class DataFile : public StoreTest {
protected:
    void TearDown() override
    {
        CloseDatabase();
        StoreTest::TearDown();
    }
    void writeFile(const QString& name, const QByteArray& bytes)
    {
        QFile f(path(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    // A SQLite file made by another program, with or without a `tree` table.
    void foreignSqlite(const QString& name, bool withTree)
    {
        sqlite3* db = nullptr;
        sqlite3_open(path(name).toUtf8().constData(), &db);
        sqlite3_exec(db, withTree ? "CREATE TABLE tree (id INTEGER PRIMARY KEY, name TEXT); INSERT INTO tree (name) VALUES ('Ash')"
                                  : "CREATE TABLE recipes (id INTEGER PRIMARY KEY)",
                     nullptr, nullptr, nullptr);
        sqlite3_close(db);
    }
    static QString errorLog()
    {
        QFile f(ErrorLogPath());
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
};

TEST_F(DataFile, ANewFileIsOursAndCannotBeMadeTwice)
{
    EXPECT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
    EXPECT_TRUE(QFile::exists(gDataFolder + QStringLiteral("Rabbits.cav")));
    EXPECT_EQ(ClassifyDataFile(path(QStringLiteral("Rabbits.cav"))), DataFileKind::Tessorin);
    EXPECT_FALSE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
}

TEST_F(DataFile, OpeningRunsTheCheckAndReadsTheSettings)
{
    ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
    ASSERT_TRUE(OpenDataFile(path(QStringLiteral("Rabbits.cav"))));
    EXPECT_EQ(gDatabaseFile, path(QStringLiteral("Rabbits.cav")));
    EXPECT_EQ(gDatabasePassword, QStringLiteral("uk7demvqa"));
    EXPECT_EQ(gUser.Animal, QStringLiteral("Animal"));
    EXPECT_EQ(gUser.Version, ProgramVersionText());
    EXPECT_EQ(gDatabase.applicationId(), kTessorinApplicationId);
}

TEST_F(DataFile, ANewFileLacksTheBreederAndSoAsksForTheWizard)
{
    QStringList wizardBoxes;
    SetSetupWizardHook([&](const QStringList& boxes) { wizardBoxes = boxes; });
    ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
    ASSERT_TRUE(OpenDataFile(path(QStringLiteral("Rabbits.cav"))));
    SetSetupWizardHook(nullptr);
    EXPECT_EQ(wizardBoxes, QStringList({QStringLiteral("txtBreeder"), QStringLiteral("cboWeightMeasure")}));
    const auto calls = env->ui().calls();
    ASSERT_FALSE(calls.isEmpty());
    EXPECT_EQ(calls.last().title, QStringLiteral("Error"));
    EXPECT_EQ(calls.last().text, QStringLiteral("Tessorin needs some information to function properly.\n"
                                                "Fill in all the yellow boxes on the Program Setup Wizard and save."));
}

TEST_F(DataFile, WhatIsNoDataFileIsRefusedQuietly)
{
    EXPECT_FALSE(OpenDataFile(QString()));
    EXPECT_FALSE(OpenDataFile(QStringLiteral("1")));
    EXPECT_FALSE(OpenDataFile(path(QStringLiteral("missing.cav"))));

    writeFile(QStringLiteral("notes.cav"), QByteArray("Dear diary, today the doe kindled."));
    EXPECT_EQ(ClassifyDataFile(path(QStringLiteral("notes.cav"))), DataFileKind::Other);
    EXPECT_FALSE(OpenDataFile(path(QStringLiteral("notes.cav"))));

    QByteArray jet(2048, '\0');
    jet.replace(4, 15, QByteArray("Standard Jet DB"));
    writeFile(QStringLiteral("old.cav"), jet);
    EXPECT_EQ(ClassifyDataFile(path(QStringLiteral("old.cav"))), DataFileKind::Jet);
    EXPECT_FALSE(OpenDataFile(path(QStringLiteral("old.cav"))));
    EXPECT_TRUE(errorLog().contains(QStringLiteral("older Windows program")));

    foreignSqlite(QStringLiteral("recipes.cav"), false);
    EXPECT_EQ(ClassifyDataFile(path(QStringLiteral("recipes.cav"))), DataFileKind::ForeignSqlite);
    EXPECT_FALSE(OpenDataFile(path(QStringLiteral("recipes.cav"))));

    EXPECT_TRUE(env->ui().calls().isEmpty());
    // Nothing was written into the refused files.
    QFile notes(path(QStringLiteral("notes.cav")));
    ASSERT_TRUE(notes.open(QIODevice::ReadOnly));
    EXPECT_EQ(notes.readAll(), QByteArray("Dear diary, today the doe kindled."));
}

TEST_F(DataFile, ASqliteFileWithATreeTableIsTakenInAndStamped)
{
    foreignSqlite(QStringLiteral("shared.cav"), true);
    ASSERT_TRUE(OpenDataFile(path(QStringLiteral("shared.cav"))));
    EXPECT_EQ(gDatabase.applicationId(), kTessorinApplicationId);
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT name, owner FROM tree"));
    EXPECT_EQ(rs.Fields(QStringLiteral("name")).toString(), QStringLiteral("Ash"));
    CloseDatabase();
    EXPECT_EQ(ClassifyDataFile(path(QStringLiteral("shared.cav"))), DataFileKind::Tessorin);
}

TEST_F(DataFile, ClosingRemovesLockFilesAndNothingElse)
{
    ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
    ASSERT_TRUE(OpenDataFile(path(QStringLiteral("Rabbits.cav"))));
    writeFile(QStringLiteral("Rabbits.ldb"), QByteArray("lock"));
    CloseDatabase();
    CloseDatabase();
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("Rabbits.ldb"))));
    EXPECT_TRUE(QFile::exists(path(QStringLiteral("Rabbits.cav"))));
    EXPECT_FALSE(gDatabase.isOpen());
}

TEST_F(DataFile, ApostrophesTravelAsDollarSigns)
{
    EXPECT_EQ(EncodeText(QStringLiteral("O'Brien's Pride")), QStringLiteral("O$Brien$s Pride"));
    EXPECT_EQ(DecodeText(QStringLiteral("O$Brien$s Pride")), QStringLiteral("O'Brien's Pride"));
    EXPECT_EQ(DecodeText(QStringLiteral("Sold for $1500")), QStringLiteral("Sold for $1500"));
    EXPECT_EQ(DecodeText(QStringLiteral("$x")), QStringLiteral("'x"));
    EXPECT_EQ(DecodeText(QStringLiteral("Rosie$")), QStringLiteral("Rosie'"));
    EXPECT_EQ(DecodeText(QStringLiteral("no sign")), QStringLiteral("no sign"));
}

TEST_F(DataFile, AnAnimalNameIsFoundByIdAndDecoded)
{
    ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
    ASSERT_TRUE(OpenDataFile(path(QStringLiteral("Rabbits.cav"))));
    gDatabase.Execute(QStringLiteral("INSERT INTO tree (name) VALUES ('") + EncodeText(QStringLiteral("O'Hara")) +
                      QStringLiteral("')"));
    EXPECT_EQ(GetAnimalName(1), QStringLiteral("O'Hara"));
    EXPECT_EQ(GetAnimalName(99), QString());
}

TEST_F(DataFile, TheVersionTextPadsMinorAndRevision)
{
    EXPECT_EQ(ProgramVersionText(7, 4, 2), QStringLiteral("7.04.02"));
    EXPECT_EQ(ProgramVersionText(5, 12, 0), QStringLiteral("5.12.00"));
}

} // namespace

namespace {

class DataFileRecent : public StoreTest {};

TEST_F(DataFileRecent, OpeningAFileLoadsItsRecentList)
{
    ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
    QFile list(gSettingsFolder + QStringLiteral("Rabbits.cav.txt"));
    ASSERT_TRUE(list.open(QIODevice::WriteOnly));
    list.write("Velvet\n\nThumper\n");
    list.close();
    ASSERT_TRUE(OpenDataFile(path(QStringLiteral("Rabbits.cav"))));
    EXPECT_EQ(gRecentNames[0], QStringLiteral("Velvet"));
    EXPECT_EQ(gRecentNames[1], QString());
    EXPECT_EQ(gRecentNames[2], QStringLiteral("Thumper"));
    CloseDatabase();
}

} // namespace
