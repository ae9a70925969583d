// SPDX-License-Identifier: GPL-3.0-or-later
// `tessorin-cli coi`: the calculator's report lines for one animal and for a test mating, the bulk runs
// with their rows and their early end, and a bulk run killed half way, after which the file opens,
// passes its checks and holds every coefficient as before.
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
        gDatabase.Execute("UPDATE cavyuser SET fldMale = 'Buck', fldFemale = 'Doe'");
        int day = 0;
        for (const QStringList& r : rows) {
            const QString coi = r.at(4) == QLatin1String("NULL") ? r.at(4) : '\'' + r.at(4) + '\'';
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, ps, pd, sex, coi, breed, dob, deceased, sold, owner) "
                                             "VALUES ('%1', %2, '%3', '%4', %5, 'Rex', #%6#, 0, %7, -1)")
                                  .arg(r.at(0),
                                       r.at(1) == QLatin1String("NULL") ? r.at(1) : '\'' + r.at(1) + '\'',
                                       r.at(2), r.at(3), coi, QDate(2015, 1, 1).addDays(day++).toString("MM/dd/yyyy"),
                                       r.value(5, "0")));
        }
        CloseDatabase();
        return path(name);
    }

    static QHash<QString, QString> coiById(const QString& file)
    {
        QHash<QString, QString> values;
        const CliResult r = RunTool({"sql", file, "SELECT id, coi FROM tree"});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        const QStringList lines = r.out.split('\n', Qt::SkipEmptyParts);
        for (qsizetype i = 1; i < lines.size(); ++i)
            values.insert(lines.at(i).section('\t', 0, 0), lines.at(i).section('\t', 1));
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

TEST_F(CliCoi, OneAnimalATestMatingAndBulkRunsPrintTheCalculatorsLines)
{
    const QString file = stud("family.cav", kFamily);
    const struct {
        QStringList args;
        const char* out;
        const char* err = "";
    } cases[] = {
        {{"Mum"}, "0%\n"},
        // Each run writes the ancestors' shares over their stored values: Kit once only.
        {{"Kit", "--generations", "12"}, "Dad\t1\t2\t31.25%\n31.25%\n", "Error: Maximum search is 10 generations.\n"},
        {{"--sire", "O'Brien", "--dam", "Sister", "--generations", "4"},
         "Grandsire\t2\t2\t12.5%\nGranddam\t2\t2\t12.5%\n25%\n"},
    };
    for (const auto& c : cases) {
        const CliResult r = RunTool(QStringList{"coi", file} + c.args);
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        EXPECT_EQ(r.out, c.out) << c.args.join(' ').toStdString();
        EXPECT_EQ(r.err, c.err);
    }
    // The father's value is overwritten by Kit's; a test mating of full siblings stores nothing on them.
    QHash<QString, QString> values = coiById(file);
    EXPECT_EQ(QStringList({values["1"], values["3"], values["4"], values["6"], values["7"]}),
              QStringList({"31.25", "12.5", "12.5", "3", "\\N"}));

    const CliResult all = RunTool({"coi", file, "--all"});
    ASSERT_EQ(all.code, 0) << all.err.toStdString();
    EXPECT_EQ(all.out, "Dad\tRex\tBuck\t00%\nMum\tRex\tDoe\t00%\nGrandsire\tRex\tBuck\t00%\nGranddam\tRex\tDoe\t00%\n"
                       "Daughter\tRex\tDoe\t00%\nO'Brien\tRex\tBuck\t00%\nSister\tRex\tDoe\t00%\nKit\tRex\tBuck\t25%\n"
                       "Operation completed\n");
    // The current stock leaves out the sold sister, whose value is cleared all the same.
    const CliResult mine = RunTool({"coi", file, "--mine"});
    ASSERT_EQ(mine.code, 0) << mine.err.toStdString();
    EXPECT_EQ(mine.out.count('\n'), 8);
    EXPECT_FALSE(mine.out.contains("Sister"));
    EXPECT_EQ(coiById(file).value("7"), QString());
}

TEST_F(CliCoi, ANullParentEndsTheBulkRunAndSaysSo)
{
    const QString file = stud("broken.cav", {{"First", "", "", "male", "5"},
                                             {"Broken", "NULL", "", "female", "5"},
                                             {"Last", "First", "First", "male", "5"}});
    const CliResult r = RunTool({"coi", file, "--all"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.out, "First\tRex\tBuck\t00%\nBroken\tRex\tDoe\t\n");
    EXPECT_EQ(r.err, "Update All stopped before the end: Broken has no Father field (it is Null).\n");
    const QHash<QString, QString> values = coiById(file);
    EXPECT_EQ(values.value("1"), "0");
    EXPECT_EQ(values.value("3"), QString());
}

TEST_F(CliCoi, AKilledBulkRunLeavesEveryValueAsBeforeOrAsAFullRun)
{
    const QString file = path("big.cav");
    const QString full = path("full.cav");
    ASSERT_EQ(RunTool({"generate", file, "--animals", "12000"}).code, 0);
    // Values before the run: some set, some never calculated.
    ASSERT_EQ(RunTool({"sql", file, "UPDATE tree SET coi = '77.7' WHERE sex = 'male'"}).code, 0);
    const QHash<QString, QString> before = coiById(file);
    ASSERT_TRUE(QFile::copy(file, full));
    const QStringList command = {"coi", QString(), "--all", "--generations",
                                 "10"};

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
    ASSERT_TRUE(complete.out.endsWith("Operation completed\n"));
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
