// SPDX-License-Identifier: GPL-3.0-or-later
// What keeps records whole on open: the journal travels with its file, a file of another program, a
// trigger stored in a file, a damaged file and a read-only one; the case order of every letter; and
// statements that nest too deeply.
#include "StoreTest.h"

#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/Collation.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"
#include "store/JetTranslator.h"

#include <QCryptographicHash>
#include <QFile>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray digest(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha1) : QByteArray();
}

// Runs statements on a file through SQLite alone, as another program would, with SQLite's own NOCASE.
void raw(const QString& path, const char* sql)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, &error), SQLITE_OK) << (error ? error : "");
    sqlite3_free(error);
    sqlite3_close(db);
}

class FileSafety : public StoreTest {
protected:
    void TearDown() override
    {
        CloseDatabase();
        StoreTest::TearDown();
    }
    // A data file with its tables and `animals` rows in tree.
    QString dataFile(const QString& name, int animals = 0)
    {
        EXPECT_TRUE(CreateDataFile(name, QString()));
        Database db = OpenWithPassword(path(name));
        CheckDatabase(db, false, false);
        db.Execute(QStringLiteral("UPDATE cavyuser SET fldBreederName = 'Hill', fldAnimal = 'Rabbit', "
                                  "fldWeightMeasure = 'kg'"));
        {
            Transaction t(db);
            for (int i = 0; i < animals; ++i)
                db.Execute(QStringLiteral("INSERT INTO tree (name, sex, notes) VALUES ('Doe %1', 'female', '%2')")
                               .arg(i)
                               .arg(QString(200, QLatin1Char('x'))));
            t.commit();
        }
        db.Close();
        return path(name);
    }
    QStringList dialogTitles()
    {
        QStringList titles;
        for (const ScriptedUi::Call& c : env->ui().calls())
            if (c.kind == ScriptedUi::Kind::Message)
                titles << c.title;
        return titles;
    }
};

// --- the journal and the other files beside a data file --------------------------------------------

TEST_F(FileSafety, RemovingAndRenamingCarryTheJournalAndANewFileIgnoresAnOrphan)
{
    const QString file = dataFile(QStringLiteral("Stud.cav"));
    TestEnv::writeText(file + QStringLiteral("-journal"), QStringLiteral("pages of an unfinished save"));

    ASSERT_TRUE(RenameDataFile(file, path(QStringLiteral("Moved.cav"))));
    EXPECT_FALSE(QFile::exists(file + QStringLiteral("-journal")));
    EXPECT_TRUE(QFile::exists(path(QStringLiteral("Moved.cav-journal"))));

    ASSERT_TRUE(RemoveDataFile(path(QStringLiteral("Moved.cav"))));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("Moved.cav"))));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("Moved.cav-journal"))));

    // A journal whose file went some other way is not rolled into the next file of that name.
    TestEnv::writeText(path(QStringLiteral("Next.cav-journal")), QStringLiteral("stale"));
    ASSERT_TRUE(CreateDataFile(QStringLiteral("Next.cav"), QString()));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("Next.cav-journal"))));
    EXPECT_FALSE(RenameDataFile(path(QStringLiteral("Next.cav")), path(QStringLiteral("Next.cav"))));
}

// --- another program's file -------------------------------------------------------------------------

TEST_F(FileSafety, AForeignFileIsStampedOnlyWhenTheUserSaysYes)
{
    const QString file = path(QStringLiteral("other.cav"));
    raw(file, "CREATE TABLE tree (id INTEGER PRIMARY KEY, name TEXT); INSERT INTO tree (name) VALUES ('Ash')");
    const QByteArray before = digest(file);

    EXPECT_THROW(OpenWithPassword(file), JetError);
    env->ui().queueAnswer(Ui::Answer::No);
    EXPECT_FALSE(OpenDataFile(file));
    EXPECT_EQ(digest(file), before);
    EXPECT_EQ(ClassifyDataFile(file), DataFileKind::ForeignSqlite);
    ASSERT_EQ(env->ui().messages().size(), 1);
    EXPECT_TRUE(env->ui().messages().front().startsWith(QStringLiteral("other.cav is a SQLite database of another program")));

    env->ui().queueAnswer(Ui::Answer::Yes);
    ASSERT_TRUE(OpenDataFile(file));
    EXPECT_EQ(gDatabase.applicationId(), kTessorinApplicationId);
    EXPECT_TRUE(gDatabase.hasTable(QStringLiteral("journal")));
}

// --- code stored in a file --------------------------------------------------------------------------

TEST_F(FileSafety, TriggersAndViewsOfOthersAreDroppedBeforeAnythingIsWritten)
{
    const QString file = dataFile(QStringLiteral("Mailed.cav"), 2);
    raw(file, "INSERT INTO weights (name, weight) VALUES ('Doe 1', '2.1');"
              "CREATE TRIGGER wipe AFTER UPDATE ON tree BEGIN DELETE FROM weights; END;"
              "CREATE VIEW everything AS SELECT * FROM weights;"
              "CREATE TRIGGER tessorin_ours AFTER INSERT ON reminders BEGIN SELECT 1; END;");

    // Even opened without the program's open, the trigger never runs: the update is refused.
    {
        Database db = OpenWithPassword(file);
        EXPECT_THROW(db.Execute(QStringLiteral("UPDATE tree SET colour = 'Agouti'")), JetError);
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT Count(*) FROM weights"));
        EXPECT_EQ(rs.Fields(0).toInt(), 1);
    }

    ASSERT_TRUE(OpenDataFile(file));
    EXPECT_EQ(dialogTitles(), QStringList{QStringLiteral("Data File Cleaned")});
    EXPECT_TRUE(env->ui().messages().front().contains(QStringLiteral("trigger wipe, view everything")));
    gDatabase.Execute(QStringLiteral("UPDATE tree SET colour = 'Agouti'"));
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT Count(*) FROM weights"));
    EXPECT_EQ(rs.Fields(0).toInt(), 1);
    rs.Close();
    CloseDatabase();

    env->ui().clear();
    ASSERT_TRUE(OpenDataFile(file)); // told once: nothing is left to tell
    EXPECT_TRUE(dialogTitles().isEmpty());
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).contains(QStringLiteral("trigger wipe, view everything")));
}

// --- damage -----------------------------------------------------------------------------------------

TEST_F(FileSafety, ADamagedFileIsRefusedWithItsReasonAndNotWritten)
{
    const QString file = dataFile(QStringLiteral("Broken.cav"), 400);
    raw(file, "DELETE FROM tree WHERE id > 50"); // pages go to the freelist
    {
        // The header's first freelist trunk page (offset 32) pointed far past the end of the file.
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::ReadWrite));
        f.seek(32);
        const char bogus[4] = {0x00, 0x0f, 0x42, 0x40};
        f.write(bogus, 4);
    }
    const QByteArray before = digest(file);

    try {
        OpenWithPassword(file);
        ADD_FAILURE() << "a damaged file opened";
    } catch (const JetError& e) {
        EXPECT_EQ(e.number(), 3049);
        EXPECT_TRUE(e.description().contains(QStringLiteral("is damaged and cannot be opened: ")));
        EXPECT_TRUE(e.description().contains(QStringLiteral("reelist"))) << e.description().toStdString();
    }
    EXPECT_FALSE(OpenDataFile(file));
    EXPECT_EQ(dialogTitles(), QStringList{QStringLiteral("Damaged Data File")});
    EXPECT_FALSE(gDatabase.isOpen());
    EXPECT_EQ(digest(file), before);
}

// --- read-only files --------------------------------------------------------------------------------

// A file the test's user cannot write: as root, whom no permission stops, the check runs under the
// id of nobody; otherwise the file and its folder lose their write permission.
class ReadOnlyFile : public FileSafety {
protected:
    void makeUnwritable(const QString& file)
    {
        if (geteuid() == 0) {
            ::chmod(QFile::encodeName(env->root()).constData(), 0755);
            ::chmod(QFile::encodeName(env->dataFolder()).constData(), 0755);
            ::chmod(QFile::encodeName(file).constData(), 0644);
            asNobody = true;
        } else {
            ::chmod(QFile::encodeName(file).constData(), 0444);
            ::chmod(QFile::encodeName(env->dataFolder()).constData(), 0555);
        }
    }
    void enter()
    {
        if (asNobody)
            ASSERT_EQ(::seteuid(65534), 0);
    }
    void leave()
    {
        if (asNobody)
            ASSERT_EQ(::seteuid(0), 0);
        ::chmod(QFile::encodeName(env->dataFolder()).constData(), 0755);
    }
    bool asNobody = false;
};

TEST_F(ReadOnlyFile, OpensForReadingWithOneNoticeAndWritesNothing)
{
    const QString file = dataFile(QStringLiteral("Shared.cav"), 3);
    makeUnwritable(file);
    const QByteArray before = digest(file);

    enter();
    const QString why = WhyReadOnly(file);
    const bool opened = OpenDataFile(file);
    const bool readOnly = gDatabase.isReadOnly();
    int animals = -1;
    bool writeRefused = false;
    if (opened) {
        animals = gDatabase.OpenRecordset(QStringLiteral("SELECT Count(*) FROM tree")).Fields(0).toInt();
        try {
            gDatabase.Execute(QStringLiteral("UPDATE tree SET coi = '1.5'"));
        } catch (const JetError& e) {
            writeRefused = e.number() == 3027;
        }
    }
    CloseDatabase();
    leave();

    EXPECT_FALSE(why.isEmpty());
    ASSERT_TRUE(opened);
    EXPECT_TRUE(readOnly);
    EXPECT_EQ(animals, 3);
    EXPECT_TRUE(writeRefused);
    EXPECT_EQ(dialogTitles(), QStringList{QStringLiteral("Read-Only Data File")});
    EXPECT_TRUE(env->ui().messages().front().startsWith(QStringLiteral("The data file Shared.cav can only be read: ")));
    EXPECT_EQ(digest(file), before);
    EXPECT_FALSE(QFile::exists(file + QStringLiteral("-journal")));
}

TEST_F(ReadOnlyFile, AnOldFileIsReadWithoutItsUpgradeAndSaysSo)
{
    const QString file = dataFile(QStringLiteral("Old.cav"), 1);
    raw(file, "UPDATE cavyuser SET fldVersion = '4.47.00'");
    makeUnwritable(file);
    enter();
    const bool opened = OpenDataFile(file);
    const QString version = GetVersionText(gDatabase);
    CloseDatabase();
    leave();
    ASSERT_TRUE(opened);
    EXPECT_EQ(version, QStringLiteral("4.47.00"));
    ASSERT_EQ(env->ui().messages().size(), 1);
    EXPECT_TRUE(env->ui().messages().front().contains(QStringLiteral("brought up to date the first time")));
}

// --- the upgrade ------------------------------------------------------------------------------------

TEST_F(FileSafety, AnUpgradeThatCannotBeginChangesNothingAndOneThatRanIsNotRepeated)
{
    const QString file = dataFile(QStringLiteral("Upgrade.cav"), 5);
    raw(file, "UPDATE tree SET journal = 'note'; UPDATE cavyuser SET fldVersion = '4.47.00'");
    const QByteArray before = digest(file);
    {
        Database readOnly = Database::OpenDatabase(file, false, true);
        EXPECT_THROW(CheckDatabase(readOnly, false, false), JetError);
    }
    EXPECT_EQ(digest(file), before);

    Database db = OpenWithPassword(file);
    EXPECT_TRUE(CheckDatabase(db, false, false));
    EXPECT_TRUE(CheckDatabase(db, false, false)); // stamped: nothing more is copied
    EXPECT_EQ(db.OpenRecordset(QStringLiteral("SELECT Count(*) FROM journal")).Fields(0).toInt(), 5);
    EXPECT_EQ(GetVersionText(db), ProgramVersionText());
}

// --- case and order of every letter -----------------------------------------------------------------

struct OrderCase {
    const char* a;
    const char* b;
    int sign;
};

class CaseOrder : public ::testing::TestWithParam<OrderCase> {};

TEST_P(CaseOrder, ComparesByFoldedBareLettersThenAccents)
{
    const OrderCase& c = GetParam();
    const QString a = QString::fromUtf8(c.a), b = QString::fromUtf8(c.b);
    auto sign = [](int v) { return v < 0 ? -1 : (v > 0 ? 1 : 0); };
    const QByteArray ua = a.toUtf8(), ub = b.toUtf8();
    EXPECT_EQ(sign(jet::compareNoCaseUtf8(ua.constData(), int(ua.size()), ub.constData(), int(ub.size()))), c.sign);
    EXPECT_EQ(sign(jet::compareNoCaseUtf8(ub.constData(), int(ub.size()), ua.constData(), int(ua.size()))), -c.sign);
}

INSTANTIATE_TEST_SUITE_P(Pairs, CaseOrder,
                         ::testing::Values(OrderCase{"élan", "Élan", 0}, OrderCase{"ÅSA", "åsa", 0},
                                           OrderCase{"Ash", "ASH", 0}, OrderCase{"Åsa", "Ash", -1},
                                           OrderCase{"Åsa", "Asa", 1}, OrderCase{"Zora", "Åsa", 1},
                                           OrderCase{"Eve", "Émile", 1}, OrderCase{"中文", "Zora", 1},
                                           OrderCase{"Ab", "Abc", -1}, OrderCase{"e\u0301", "e", 1},
                                           OrderCase{"ΣΟΦΙΑ", "σοφια", 0}));

TEST_F(FileSafety, NamesFindAndSortWhateverTheirLetters)
{
    const QString file = dataFile(QStringLiteral("Letters.cav"));
    Database db = OpenWithPassword(file);
    for (const char* name : {"Zora", "Åsa", "ash", "Arn", "Élan", "Eve", "中文", "ÉLAN"})
        db.Execute(QStringLiteral("INSERT INTO tree (name) VALUES ('%1')").arg(QString::fromUtf8(name)));

    auto column = [&](const QString& sql) {
        QStringList values;
        for (Recordset rs = db.OpenRecordset(sql); !rs.Eof(); rs.MoveNext())
            values << rs.Fields(0).toString();
        return values.join(QLatin1Char(','));
    };
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM tree WHERE name = 'élan' ORDER BY id")), QStringLiteral("Élan,ÉLAN"));
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM tree WHERE name Like 'éla*' ORDER BY id")), QStringLiteral("Élan,ÉLAN"));
    EXPECT_EQ(column(QStringLiteral("SELECT DISTINCT name FROM tree WHERE name Like 'É*'")), QStringLiteral("Élan"));
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM tree ORDER BY name, id")),
              QStringLiteral("Arn,Åsa,ash,Élan,ÉLAN,Eve,Zora,中文"));
}

TEST_F(FileSafety, IndexesOfAnOlderFileAreSortedAgainOnceWhenItOpens)
{
    const QString file = dataFile(QStringLiteral("Sorted.cav"));
    // Written by a program with SQLite's ASCII-only NOCASE: its index puts "Åsa" after "Zed".
    raw(file, "INSERT INTO tree (name) VALUES ('Zed'), ('Åsa'), ('Arn'), ('élan'); PRAGMA user_version = 1");

    ASSERT_TRUE(OpenDataFile(file));
    Recordset rs = gDatabase.OpenRecordset(QStringLiteral("SELECT Count(*) FROM tree WHERE name = 'ÉLAN'"));
    EXPECT_EQ(rs.Fields(0).toInt(), 1);
    rs.Close();
    EXPECT_EQ(DamageReport(gDatabase, true), QString());
    CloseDatabase();
    sqlite3* db = nullptr;
    sqlite3_open(file.toUtf8().constData(), &db);
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db, "PRAGMA user_version", -1, &stmt, nullptr);
    sqlite3_step(stmt);
    EXPECT_EQ(sqlite3_column_int(stmt, 0), jet::kSortOrderMark);
    sqlite3_finalize(stmt);
    sqlite3_close(db);
}

// --- statements that nest too deeply ----------------------------------------------------------------

class DeepStatement : public ::testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(DeepStatement, IsRefusedWithASyntaxErrorInsteadOfRunningTheStackOut)
{
    const auto [open, close] = GetParam();
    const jet::SchemaLookup none = [](const QString&) { return std::optional<QVector<jet::ColumnInfo>>(); };
    auto statement = [&](int depth) -> QString {
        return QStringLiteral("SELECT ") + QString::fromLatin1(open).repeated(depth) + QStringLiteral("1") +
               QString::fromLatin1(close).repeated(depth);
    };
    EXPECT_NO_THROW(jet::translate(statement(200), none));
    try {
        jet::translate(statement(30000), none);
        ADD_FAILURE() << "30,000 levels were taken";
    } catch (const JetError& e) {
        EXPECT_EQ(e.number(), 3075);
        EXPECT_TRUE(e.description().contains(QStringLiteral("nests too deeply")));
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, DeepStatement,
                         ::testing::Values(std::make_pair("(", ")"), std::make_pair("Abs(", ")"),
                                           std::make_pair("2^", ""), std::make_pair("8/", "")));

} // namespace
