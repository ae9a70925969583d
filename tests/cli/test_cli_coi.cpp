// SPDX-License-Identifier: GPL-3.0-or-later
// `tessorin-cli coi`: the calculator's report lines for one animal and for a test mating, the bulk runs
// with their rows and their early end, the command line's mistakes, and a bulk run killed half way,
// after which the file opens, passes its checks and holds every coefficient as before or as a full run
// leaves it.
#include "support/TestEnv.h"

#include "CliRunner.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/Collation.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <sqlite3.h>

namespace {

class CliCoi : public ::testing::Test {
protected:
    ~CliCoi() override { CloseDatabase(); }

    QString path(const QString& name) const { return env.dataFolder() + name; }

    // A file made and filled here: name, PS, PD, sex, coi (NULL for none), in order of birth.
    QString stud(const QString& name, const QList<QStringList>& rows)
    {
        EXPECT_TRUE(CreateDataFile(name, env.dataFolder()));
        EXPECT_TRUE(OpenDataFile(path(name)));
        gDatabase.Execute(QStringLiteral("UPDATE cavyuser SET fldMale = 'Buck', fldFemale = 'Doe'"));
        int day = 0;
        for (const QStringList& r : rows) {
            const QString coi = r.at(4) == QLatin1String("NULL") ? r.at(4) : QLatin1Char('\'') + r.at(4) + QLatin1Char('\'');
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, sex, coi, breed, dob, deceased, sold, owner) "
                                             "VALUES ('%1', %2, '%3', '%4', %5, 'Rex', #%6#, 0, %7, -1)")
                                  .arg(r.at(0),
                                       r.at(1) == QLatin1String("NULL") ? r.at(1) : QLatin1Char('\'') + r.at(1) + QLatin1Char('\''),
                                       r.at(2), r.at(3), coi, QDate(2015, 1, 1).addDays(day++).toString(QStringLiteral("MM/dd/yyyy")),
                                       r.value(5, QStringLiteral("0"))));
        }
        CloseDatabase();
        return path(name);
    }

    static QHash<QString, QString> coiById(const QString& file)
    {
        QHash<QString, QString> values;
        const CliResult r = RunTool({QStringLiteral("sql"), file, QStringLiteral("SELECT id, coi FROM tree")});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (qsizetype i = 1; i < lines.size(); ++i)
            values.insert(lines.at(i).section(QLatin1Char('\t'), 0, 0), lines.at(i).section(QLatin1Char('\t'), 1));
        return values;
    }

    TestEnv env;
};

const QList<QStringList> kFamily = {
    {"Dad", "", "", "male", "25"},
    {"Mum", "", "", "female", "0"},
    {"Grandsire", "", "", "male", "0"},
    {"Granddam", "", "", "female", "0"},
    {"Daughter", "Dad", "Mum", "female", "NULL"},
    {"O$Brien", "Grandsire", "Granddam", "male", "3"},
    {"Sister", "Grandsire", "Granddam", "female", "NULL", "-1"},
    {"Kit", "Dad", "Daughter", "male", "NULL"},
};

} // namespace

TEST_F(CliCoi, OneAnimalPrintsItsCommonAncestorsAndTheTotal)
{
    const QString file = stud(QStringLiteral("family.cav"), kFamily);
    const CliResult r = RunTool({QStringLiteral("coi"), file, QStringLiteral("Kit")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, QStringLiteral("Dad\t1\t2\t31.25%\n31.25%\n"));
    EXPECT_EQ(coiById(file).value(QStringLiteral("1")), QStringLiteral("31.25")); // the father's, overwritten

    const CliResult none = RunTool({QStringLiteral("coi"), file, QStringLiteral("Mum")});
    EXPECT_EQ(none.out, QStringLiteral("0%\n"));
}

TEST_F(CliCoi, ATestMatingOfFullSiblingsStoresNothingOnThem)
{
    const QString file = stud(QStringLiteral("family.cav"), kFamily);
    const CliResult r = RunTool({QStringLiteral("coi"), file, QStringLiteral("--sire"), QStringLiteral("O'Brien"),
                                 QStringLiteral("--dam"), QStringLiteral("Sister"), QStringLiteral("--generations"),
                                 QStringLiteral("4")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, QStringLiteral("Grandsire\t2\t2\t12.5%\nGranddam\t2\t2\t12.5%\n25%\n"));
    const QHash<QString, QString> values = coiById(file);
    EXPECT_EQ(values.value(QStringLiteral("3")), QStringLiteral("12.5"));
    EXPECT_EQ(values.value(QStringLiteral("4")), QStringLiteral("12.5"));
    EXPECT_EQ(values.value(QStringLiteral("6")), QStringLiteral("3"));
    EXPECT_EQ(values.value(QStringLiteral("7")), QStringLiteral("\\N"));
}

TEST_F(CliCoi, BulkRunsPrintEveryRowAndTheEnd)
{
    const QString file = stud(QStringLiteral("family.cav"), kFamily);
    CliResult r = RunTool({QStringLiteral("coi"), file, QStringLiteral("--all")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, QStringLiteral("Dad\tRex\tBuck\t00%\n"
                                    "Mum\tRex\tDoe\t00%\n"
                                    "Grandsire\tRex\tBuck\t00%\n"
                                    "Granddam\tRex\tDoe\t00%\n"
                                    "Daughter\tRex\tDoe\t00%\n"
                                    "O'Brien\tRex\tBuck\t00%\n"
                                    "Sister\tRex\tDoe\t00%\n"
                                    "Kit\tRex\tBuck\t25%\n"
                                    "Operation completed\n"));

    // The current stock leaves out the sold sister, whose value is cleared all the same.
    r = RunTool({QStringLiteral("coi"), file, QStringLiteral("--mine")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out.count(QLatin1Char('\n')), 8);
    EXPECT_FALSE(r.out.contains(QStringLiteral("Sister")));
    EXPECT_EQ(coiById(file).value(QStringLiteral("7")), QString());
}

TEST_F(CliCoi, ANullParentEndsTheBulkRunAndSaysSo)
{
    const QString file = stud(QStringLiteral("broken.cav"), {{"First", "", "", "male", "5"},
                                                             {"Broken", "NULL", "", "female", "5"},
                                                             {"Last", "First", "First", "male", "5"}});
    const CliResult r = RunTool({QStringLiteral("coi"), file, QStringLiteral("--all")});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.out, QStringLiteral("First\tRex\tBuck\t00%\nBroken\tRex\tDoe\t\n"));
    EXPECT_EQ(r.err, QStringLiteral("Update All stopped before the end: Broken has no Father field (it is Null).\n"));
    const QHash<QString, QString> values = coiById(file);
    EXPECT_EQ(values.value(QStringLiteral("1")), QStringLiteral("0"));
    EXPECT_EQ(values.value(QStringLiteral("3")), QString());
}

TEST_F(CliCoi, MistakesOfTheCommandLine)
{
    const QString file = stud(QStringLiteral("family.cav"), kFamily);
    const CliResult tooMany = RunTool({QStringLiteral("coi"), file, QStringLiteral("Kit"), QStringLiteral("--generations"),
                                       QStringLiteral("12")});
    EXPECT_EQ(tooMany.code, 0);
    EXPECT_EQ(tooMany.err, QStringLiteral("Error: Maximum search is 10 generations.\n"));
    EXPECT_EQ(tooMany.out.split(QLatin1Char('\n')).value(1), QStringLiteral("31.25%"));
    EXPECT_EQ(RunTool({QStringLiteral("coi"), file}).code, 2);
    EXPECT_EQ(RunTool({QStringLiteral("coi"), file, QStringLiteral("--all"), QStringLiteral("--mine")}).code, 2);
    EXPECT_EQ(RunTool({QStringLiteral("coi"), file, QStringLiteral("--sire"), QStringLiteral("Dad")}).code, 2);
    EXPECT_EQ(RunTool({QStringLiteral("coi"), file, QStringLiteral("Kit"), QStringLiteral("--all")}).code, 2);
    EXPECT_EQ(RunTool({QStringLiteral("coi"), file, QStringLiteral("Kit"), QStringLiteral("--generations"),
                       QStringLiteral("six")}).code,
              2);
}

TEST_F(CliCoi, AKilledBulkRunLeavesEveryValueAsBeforeOrAsAFullRun)
{
    const QString file = path(QStringLiteral("big.cav"));
    const QString full = path(QStringLiteral("full.cav"));
    ASSERT_EQ(RunTool({QStringLiteral("generate"), file, QStringLiteral("--animals"), QStringLiteral("12000")}).code, 0);
    // Values before the run: some set, some never calculated.
    ASSERT_EQ(RunTool({QStringLiteral("sql"), file, QStringLiteral("UPDATE tree SET coi = '77.7' WHERE sex = 'male'")}).code, 0);
    const QHash<QString, QString> before = coiById(file);
    ASSERT_TRUE(QFile::copy(file, full));
    const QStringList command = {QStringLiteral("coi"), QString(), QStringLiteral("--all"), QStringLiteral("--generations"),
                                 QStringLiteral("10")};

    QStringList arguments = command;
    arguments[1] = file;
    QProcess p;
    p.start(QStringLiteral(TESSORIN_CLI_PATH), arguments);
    ASSERT_TRUE(p.waitForStarted());
    QByteArray printed;
    QElapsedTimer waited;
    waited.start();
    while (printed.count('\n') < 1500 && waited.elapsed() < 60000 && p.state() == QProcess::Running) {
        p.waitForReadyRead(100);
        printed += p.readAllStandardOutput();
    }
    ASSERT_EQ(p.state(), QProcess::Running) << "the run ended before it could be killed";
    p.kill(); // SIGKILL
    ASSERT_TRUE(p.waitForFinished());
    EXPECT_EQ(p.exitStatus(), QProcess::CrashExit);
    printed += p.readAllStandardOutput();
    EXPECT_FALSE(printed.contains("Operation completed"));
    EXPECT_GE(printed.count('\n'), 1500);

    arguments[1] = full;
    const CliResult complete = RunTool(arguments);
    ASSERT_EQ(complete.code, 0) << complete.err.toStdString();
    ASSERT_TRUE(complete.out.endsWith(QStringLiteral("Operation completed\n")));
    const QHash<QString, QString> after = coiById(full);

    // The engine finds the file sound, and the program opens and checks it as ever.
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open_v2(QFile::encodeName(file).constData(), &db, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    jet::registerCollation(db); // the file's indexes follow our case order, not SQLite's own
    sqlite3_stmt* check = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &check, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_step(check), SQLITE_ROW);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)), "ok");
    sqlite3_finalize(check);
    sqlite3_close(db);
    ASSERT_TRUE(OpenDataFile(file));
    EXPECT_NO_THROW(CheckDatabase(gDatabase, true, false));
    CloseDatabase();

    const QHash<QString, QString> killed = coiById(file);
    ASSERT_EQ(killed.size(), before.size());
    int asBefore = 0, asAfter = 0;
    for (auto it = killed.cbegin(); it != killed.cend(); ++it) {
        const bool old = it.value() == before.value(it.key());
        const bool fresh = it.value() == after.value(it.key());
        EXPECT_TRUE(old || fresh) << "id " << it.key().toStdString() << ": " << it.value().toStdString();
        asBefore += old;
        asAfter += fresh && !old;
    }
    // The run is one transaction: killed, it leaves everything as it was.
    EXPECT_EQ(asBefore, killed.size());
    EXPECT_EQ(asAfter, 0);
    EXPECT_NE(after, before);
}
