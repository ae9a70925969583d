// SPDX-License-Identifier: GPL-3.0-or-later
// tessorin-cli as a script sees it: the exact lines it prints, its exit codes, and what it leaves in
// the data file. Also the species presets table, which the demo file is set up from.
#include "support/TestEnv.h"

#include "store/DataFile.h"
#include "store/SpeciesPresets.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include "CliRunner.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>
#include <csignal>
#include <cstdio>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Result = CliResult;

class Cli : public ::testing::Test {
protected:
    // Runs the tool on the test's fixed day.
    Result run(const QStringList& arguments) { return RunTool(arguments); }
    Result sql(const QString& file, const QString& statement) { return run({QStringLiteral("sql"), file, statement}); }
    // The single value of a one-column, one-row SELECT.
    QString scalar(const QString& file, const QString& statement)
    {
        const Result r = sql(file, statement);
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        return lines.size() == 2 ? lines.at(1) : QStringLiteral("<%1 lines>").arg(lines.size());
    }
    QString path(const QString& name) const { return env.root() + name; }
    QString newFile(const QString& name)
    {
        const QString p = path(name);
        const Result r = run({QStringLiteral("new"), p});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        return p;
    }
    static QString infoText(const QString& file, const QStringList& counts)
    {
        static const QStringList tables = {"tree",     "cavyuser", "soldstock",    "Breeding",  "weights",     "print",
                                           "contacts", "vaccinations", "reminders", "expenditure", "shows", "journal"};
        QString s = QStringLiteral("program\t") + ProgramVersionText() + QStringLiteral("\nversion\t") +
                    ProgramVersionText() + QStringLiteral("\npath\t") + QFileInfo(file).absoluteFilePath() +
                    QLatin1Char('\n');
        for (int i = 0; i < tables.size(); ++i)
            s += tables.at(i) + QLatin1Char('\t') + counts.at(i) + QLatin1Char('\n');
        return s;
    }
    TestEnv env;
};

// --- new, info, check -----------------------------------------------------------------------------

TEST_F(Cli, NewMakesEveryTableWithSettingsRowAndStamp)
{
    const QString file = path("stud.cav");
    const Result made = run({"new", file});
    EXPECT_EQ(made.code, 0);
    EXPECT_EQ(made.out, "");
    EXPECT_EQ(made.err, "");
    EXPECT_EQ(ClassifyDataFile(file), DataFileKind::Tessorin);

    const Result info = run({"info", file});
    EXPECT_EQ(info.code, 0) << info.err.toStdString();
    EXPECT_EQ(info.out, infoText(file, {"0", "1", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0"}));
}

TEST_F(Cli, NewRefusesAnExistingFileAndLeavesItAlone)
{
    const QString file = newFile("stud.cav");
    ASSERT_EQ(sql(file, "INSERT INTO tree (name) VALUES ('Ash')").out, "rows affected: 1\n");

    const Result again = run({"new", file});
    EXPECT_EQ(again.code, 1);
    EXPECT_EQ(again.out, "");
    EXPECT_EQ(again.err, "Cannot create " + file + ": the file exists\n");
    EXPECT_EQ(scalar(file, "SELECT name FROM tree"), "Ash");

    const Result noFolder = run({"new", path("missing/stud.cav")});
    EXPECT_EQ(noFolder.code, 1);
    EXPECT_EQ(noFolder.err, "Cannot create " + path("missing/stud.cav") + ": no folder " + path("missing") + "\n");
}

TEST_F(Cli, ForcedCheckKeepsRowsAndStamp)
{
    const QString file = newFile("stud.cav");
    sql(file, "INSERT INTO tree (name, sex, deceased) VALUES ('Ash', 'male', 0)");
    sql(file, "INSERT INTO tree (name, sex, deceased) VALUES ('Birch', 'female', -1)");

    const Result check = run({"check", file, "--force"});
    EXPECT_EQ(check.code, 0) << check.err.toStdString();
    EXPECT_EQ(check.out, "");
    EXPECT_EQ(sql(file, "SELECT name, sex, deceased FROM tree ORDER BY name").out,
              "name\tsex\tdeceased\nAsh\tmale\t0\nBirch\tfemale\t-1\n");
    EXPECT_EQ(run({"info", file}).out, infoText(file, {"2", "1", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0"}));

    EXPECT_EQ(run({"check", file}).code, 0);
}

TEST_F(Cli, CheckAndInfoRefuseWhatIsNoDataFile)
{
    const Result missing = run({"check", path("none.cav")});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err, "No data file at " + path("none.cav") + "\n");

    ASSERT_TRUE(TestEnv::writeText(path("notes.cav"), "shopping list\n"));
    const Result text = run({"info", path("notes.cav")});
    EXPECT_EQ(text.code, 1);
    EXPECT_TRUE(text.err.startsWith("Error 3343: ")) << text.err.toStdString();
    EXPECT_EQ(text.err.count('\n'), 1);
    EXPECT_EQ(TestEnv::readText(path("notes.cav")), "shopping list\n");
}

// --- sql ------------------------------------------------------------------------------------------

TEST_F(Cli, SelectPrintsHeaderAndRowsInPlainForms)
{
    const QString file = newFile("stud.cav");
    EXPECT_EQ(sql(file, "INSERT INTO tree (name, dob, datesold, deceased, notes) "
                        "VALUES ('Kit$s Pride', #03/15/2024#, #03/15/2024 14:30:00#, -1, Null)")
                  .out,
              "rows affected: 1\n");
    EXPECT_EQ(sql(file, "INSERT INTO expenditure (name, amount, details) VALUES ('Kit$s Pride', 12.5, 'Hay')").out,
              "rows affected: 1\n");

    const Result tree = sql(file, "  select name, dob, datesold, deceased, notes FROM tree");
    EXPECT_EQ(tree.code, 0) << tree.err.toStdString();
    EXPECT_EQ(tree.out, "name\tdob\tdatesold\tdeceased\tnotes\n"
                        "Kit$s Pride\t2024-03-15\t2024-03-15 14:30:00\t-1\t\\N\n");
    EXPECT_EQ(tree.err, "");

    EXPECT_EQ(sql(file, "SELECT amount, details FROM expenditure").out, "amount\tdetails\n12.5\tHay\n");
    // No rows: the header alone.
    EXPECT_EQ(sql(file, "SELECT name FROM tree WHERE name = 'Nobody'").out, "name\n");
}

TEST_F(Cli, TextIsEscapedSoEachRowStaysOneLine)
{
    const QString file = newFile("stud.cav");
    // A memo with a line break, a tab and a backslash, as a user types them.
    EXPECT_EQ(sql(file, "INSERT INTO tree (name, notes) VALUES ('Ash', 'line one\nline\ttwo a\\b')").out,
              "rows affected: 1\n");
    EXPECT_EQ(sql(file, "SELECT name, notes FROM tree").out, "name\tnotes\nAsh\tline one\\nline\\ttwo a\\\\b\n");
    sql(file, "UPDATE tree SET notes = '\\N' WHERE name = 'Ash'");
    EXPECT_EQ(scalar(file, "SELECT notes FROM tree"), "\\\\N");
}

TEST_F(Cli, OtherStatementsPrintRowsAffected)
{
    const QString file = newFile("stud.cav");
    EXPECT_EQ(sql(file, "INSERT INTO tree (name, sex) VALUES ('Ash', 'male')").out, "rows affected: 1\n");
    EXPECT_EQ(sql(file, "INSERT INTO tree (name, sex) VALUES ('Birch', 'male')").out, "rows affected: 1\n");
    EXPECT_EQ(sql(file, "UPDATE tree SET sex = 'female' WHERE sex = 'male'").out, "rows affected: 2\n");
    EXPECT_EQ(sql(file, "DELETE * FROM tree WHERE name = 'Nobody'").out, "rows affected: 0\n");
    EXPECT_EQ(sql(file, "DELETE * FROM tree").out, "rows affected: 2\n");
}

TEST_F(Cli, EngineErrorsExitOneWithTheirNumber)
{
    const QString file = newFile("stud.cav");
    const Result r = sql(file, "SELECT * FROM horses");
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_TRUE(r.err.startsWith("Error 3078: ")) << r.err.toStdString();
    EXPECT_EQ(r.err.count('\n'), 1);

    const Result exists = sql(file, "CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING)");
    EXPECT_EQ(exists.code, 1);
    EXPECT_TRUE(exists.err.startsWith("Error 3010: ")) << exists.err.toStdString();
}

TEST_F(Cli, SecondStatementIsRefusedAndNeverRun)
{
    const QString file = newFile("stud.cav");
    sql(file, "INSERT INTO tree (name) VALUES ('Ash')");
    const Result r = sql(file, "SELECT * FROM tree WHERE name = ''; DROP TABLE tree; --'");
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_TRUE(r.err.startsWith("Error 3142: ")) << r.err.toStdString();
    const Result again = sql(file, "DELETE * FROM tree; DROP TABLE tree");
    EXPECT_TRUE(again.err.startsWith("Error 3142: ")) << again.err.toStdString();
    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree"), "1");
}

// --- settings ---------------------------------------------------------------------------------------

TEST_F(Cli, SettingsOfANewFileInInterfaceOrder)
{
    const QString file = newFile("stud.cav");
    QString expected = "Stud\t\nBreederName\t\nEmail\t\nPhoneNum\t\nStudNum\t\nAnimal\tAnimal\nMale\tMale\n"
                       "Female\tFemale\nFather\tFather\nMother\tMother\nGestation\t0\nNestBox\t0\nRebreed\t0\n"
                       "Wean\t0\nTag\t0\nCountry\t\nCustomDetail\t\n";
    for (int i = 1; i <= 12; ++i)
        expected += QStringLiteral("CustomName%1\t\n").arg(i);
    expected += "Organisation\t\nReminders\t\nPrefix\t\nWeightMeasure\t\nVersion\t" + ProgramVersionText() +
                "\nAutoUpdate\t1\n";
    const Result r = run({"settings", file});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, expected);
}

// --- generate and demo ------------------------------------------------------------------------------

TEST_F(Cli, GenerateIsDeterministicForASeed)
{
    const QString a = path("a.cav"), b = path("b.cav"), c = path("c.cav");
    const QStringList options = {"--animals", "300", "--generations", "5", "--seed", "42"};
    const Result ra = run(QStringList{"generate", a} + options);
    ASSERT_EQ(ra.code, 0) << ra.err.toStdString();
    EXPECT_EQ(ra.out, "");
    ASSERT_EQ(run(QStringList{"generate", b} + options).code, 0);
    ASSERT_EQ(run({"generate", c, "--animals", "300", "--generations", "5", "--seed", "43"}).code, 0);

    const QString infoA = run({"info", a}).out, infoB = run({"info", b}).out;
    EXPECT_EQ(infoA.section('\n', 3), infoB.section('\n', 3));
    EXPECT_TRUE(infoA.contains("\ntree\t300\n")) << infoA.toStdString();

    const QString rows =
        "SELECT id, name, sex, dob, ps, pd, breed, colour, deceased, sold FROM tree WHERE id <= 40 ORDER BY id";
    const QString firstA = sql(a, rows).out;
    EXPECT_EQ(firstA.count('\n'), 41);
    EXPECT_EQ(firstA, sql(b, rows).out);
    EXPECT_NE(firstA, sql(c, rows).out);
    const QString weights = "SELECT * FROM weights WHERE id <= 20 ORDER BY id";
    EXPECT_EQ(sql(a, weights).out, sql(b, weights).out);
}

TEST_F(Cli, GeneratedStudLooksLikeARealOne)
{
    const QString file = path("stud.cav");
    ASSERT_EQ(run({"generate", file, "--animals", "500", "--seed", "7"}).code, 0);

    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree"), "500");
    // The proportions asked of the generator: a mating for five animals, a treatment for three,
    // two weights an animal (the youngest are not weighed yet).
    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM vaccinations"), "166");
    EXPECT_NEAR(scalar(file, "SELECT Count(*) AS n FROM breeding").toInt(), 100, 25);
    EXPECT_NEAR(scalar(file, "SELECT Count(*) AS n FROM weights").toInt(), 1000, 100);

    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree WHERE sex <> 'male' AND sex <> 'female'"), "0");
    EXPECT_NE(scalar(file, "SELECT Count(*) AS n FROM tree WHERE name LIKE '*$*'"), "0");
    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree WHERE name LIKE '*''*'"), "0");
    EXPECT_NE(scalar(file, "SELECT Count(*) AS n FROM tree WHERE ps = 'Unknown'"), "0");
    EXPECT_NE(scalar(file, "SELECT Count(*) AS n FROM tree WHERE ps = ''"), "0");
    for (const char* flag : {"deceased", "sold", "owner", "breeder"}) {
        EXPECT_NE(scalar(file, QStringLiteral("SELECT Count(*) AS n FROM tree WHERE %1 = -1").arg(flag)), "0") << flag;
        const QString neither = QStringLiteral("SELECT Count(*) AS n FROM tree WHERE %1 <> -1 AND %1 <> 0").arg(flag);
        EXPECT_EQ(scalar(file, neither), "0") << flag;
    }
    // Names are the working key: no two alike.
    EXPECT_EQ(sql(file, "SELECT name, Count(*) AS n FROM tree GROUP BY name HAVING Count(*) > 1").out, "name\tn\n");
    // Parents are rows of the file, born well before their young; sires are shared.
    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree AS c INNER JOIN tree AS p ON c.ps = p.name "
                           "WHERE p.dob >= c.dob OR p.sex <> 'male'"),
              "0");
    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree AS c INNER JOIN tree AS p ON c.pd = p.name "
                           "WHERE p.dob >= c.dob OR p.sex <> 'female'"),
              "0");
    EXPECT_GT(scalar(file, "SELECT Count(*) AS n FROM tree AS c INNER JOIN tree AS p ON c.ps = p.name").toInt(), 350);
    const QStringList bySire = sql(file, "SELECT ps, Count(*) AS n FROM tree WHERE ps <> '' AND ps <> 'Unknown' "
                                         "GROUP BY ps ORDER BY Count(*) DESC")
                                   .out.split('\n', Qt::SkipEmptyParts);
    ASSERT_GT(bySire.size(), 2);
    EXPECT_GE(bySire.at(1).section('\t', 1).toInt(), 12);
    // Every mating names animals of the file; a litter's counts match the animals born of it.
    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM breeding WHERE Boar NOT IN (SELECT name FROM tree) "
                           "OR Sow NOT IN (SELECT name FROM tree)"),
              "0");
    EXPECT_NE(scalar(file, "SELECT Count(*) AS n FROM breeding WHERE Born IS NULL AND Due > #11/23/2026#"), "0");
    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree WHERE dob >= #11/23/2026#"), "0");
}

TEST_F(Cli, GenerateRefusesBadOptionsAndExistingFiles)
{
    const QString file = path("stud.cav");
    Result r = run({"generate", file});
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.err, "generate needs --animals N\n");
    r = run({"generate", file, "--animals", "0"});
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.err, "--animals must be a whole number from 1 to 10000000, not \"0\"\n");
    r = run({"generate", file, "--animals", "ten"});
    EXPECT_EQ(r.code, 2);
    r = run({"generate", file, "--animals", "10", "--colour", "red"});
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.err, "Unknown option --colour for generate\n");
    EXPECT_FALSE(QFileInfo::exists(file));

    newFile("stud.cav");
    sql(file, "INSERT INTO tree (name) VALUES ('Ash')");
    r = run({"generate", file, "--animals", "10"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err, "Cannot create " + file + ": the file exists\n");
    EXPECT_EQ(scalar(file, "SELECT name FROM tree"), "Ash");
}

TEST_F(Cli, TinyStudsStillWork)
{
    for (const char* n : {"1", "2", "7"}) {
        const QString file = path(QStringLiteral("tiny%1.cav").arg(n));
        const Result r = run({"generate", file, "--animals", n, "--generations", "8"});
        EXPECT_EQ(r.code, 0) << n << r.err.toStdString();
        EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree"), n);
    }
}

TEST_F(Cli, DemoNeedsNoSetupWizard)
{
    const QString file = path("demo.cav");
    const QString home = path("home");
    const Result r = RunTool({"demo", file}, home);
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, "");
    // The first twelve of the current stock have a main picture, a real JPEG.
    const QStringList pictures = QDir(home + "/Documents/tessorin/my pics").entryList({"*(0).jpg"}, QDir::Files);
    EXPECT_EQ(pictures.size(), 12);
    if (!pictures.isEmpty()) {
        QFile jpeg(home + "/Documents/tessorin/my pics/" + pictures[0]);
        ASSERT_TRUE(jpeg.open(QIODevice::ReadOnly));
        EXPECT_EQ(jpeg.read(3), QByteArray("\xFF\xD8\xFF"));
    }

    const QString settings = run({"settings", file}).out;
    const char* const lines[] = {
        "\nBreederName\tSam Fletcher\n", "\nAnimal\tRabbit\n", "\nMale\tbuck\n", "\nFemale\tdoe\n",
        "\nFather\tSire\n", "\nMother\tDam\n", "\nGestation\t31\n", "\nNestBox\t29\n", "\nRebreed\t112\n",
        "\nWean\t56\n", "\nCountry\tUnited States\n", "\nCustomName1\tRegistry Number\n",
        "\nCustomName12\tBest Opposite In Show\n", "\nWeightMeasure\tpounds & ounces\n",
        "\nCustomDetail\tPhone: 555-0142\\nStud Number: AG-1042\\nEmail: sam@ashgrove.example\n"};
    for (const char* line : lines)
        EXPECT_TRUE(settings.contains(QLatin1String(line))) << line << "\n" << settings.toStdString();
    EXPECT_TRUE(settings.contains("\nVersion\t" + ProgramVersionText() + "\n"));

    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree"), "130");
    // A stud as breeders keep one: mostly outbred, a few line-bred, nothing closer than 25%; and
    // something due on every page around the day (the tests' 2026-11-23).
    ASSERT_EQ(run({"coi", file, "--all"}).code, 0);
    EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree WHERE Val(coi) > 25"), "0");
    EXPECT_GE(scalar(file, "SELECT Count(*) AS n FROM tree WHERE Val(coi) >= 12.5").toInt(), 2);
    EXPECT_GE(scalar(file, "SELECT Count(*) AS n FROM tree WHERE Val(coi) < 10").toInt(), 104);
    for (const char* due : {"SELECT Count(*) AS n FROM Breeding WHERE Due > #11/23/2026# AND Born IS NULL",
                            "SELECT Count(*) AS n FROM Breeding WHERE Born BETWEEN #09/28/2026# AND #10/26/2026#",
                            "SELECT Count(*) AS n FROM vaccinations WHERE done = 'n' AND duedate < #01/01/2027#",
                            "SELECT Count(*) AS n FROM reminders WHERE done = 'n'",
                            "SELECT Count(*) AS n FROM tree WHERE sold = -1 AND datesold >= #01/01/2026#"})
        EXPECT_NE(scalar(file, due), "0") << due;
    // Weights in pounds with the ounces as sixteenths, and the latest one in the "Weight" field.
    const QStringList weights = sql(file, "SELECT weight FROM weights").out.split('\n', Qt::SkipEmptyParts).mid(1);
    ASSERT_FALSE(weights.isEmpty());
    for (const QString& w : weights)
        EXPECT_TRUE(QRegularExpression("^\\d+\\.\\d\\d$").match(w).hasMatch()) << w.toStdString();
    EXPECT_NE(scalar(file, "SELECT Count(*) AS n FROM tree WHERE customField3 LIKE '* lb *'"), "0");
    // Text dates follow the country: month first.
    const QString sold = scalar(file, "SELECT DateSold FROM soldstock WHERE ID = 1");
    EXPECT_TRUE(QRegularExpression("^(0[1-9]|1[0-2])/\\d\\d/20\\d\\d$").match(sold).hasMatch()) << sold.toStdString();
}

// --- the command line -------------------------------------------------------------------------------

TEST_F(Cli, CommandLineMistakesExitTwoWithOneLine)
{
    struct Case {
        QStringList args;
        QString err;
    };
    const QList<Case> cases = {
        {{}, "No command given; tessorin-cli --help lists them\n"},
        {{"frobnicate"}, "Unknown command \"frobnicate\"; tessorin-cli --help lists them\n"},
        {{"sql", "x.cav"}, "sql needs PATH STATEMENT\n"},
        {{"info", "a.cav", "b.cav"}, "Too many arguments for info: b.cav\n"},
        {{"check", "a.cav", "--fast"}, "Unknown option --fast for check\n"},
        {{"--today", "23/11/2026", "info", "a.cav"}, "--today needs a date as YYYY-MM-DD, not \"23/11/2026\"\n"},
        {{"--today", "2026-02-30", "info", "a.cav"}, "--today needs a date as YYYY-MM-DD, not \"2026-02-30\"\n"},
    };
    for (const Case& c : cases) {
        QProcess p;
        p.start(QStringLiteral(TESSORIN_CLI_PATH), c.args);
        ASSERT_TRUE(p.waitForFinished(60000));
        EXPECT_EQ(p.exitCode(), 2) << c.args.join(' ').toStdString();
        EXPECT_EQ(QString::fromUtf8(p.readAllStandardError()), c.err);
        EXPECT_EQ(p.readAllStandardOutput(), QByteArray());
    }
    const Result help = run({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(help.out.startsWith("Usage: tessorin-cli [--today YYYY-MM-DD] COMMAND")) << help.out.toStdString();
}

TEST_F(Cli, TodayFixesTheClockOfTheCheck)
{
    // The journal step dates what it copies with today's date.
    const QString file = newFile("stud.cav");
    sql(file, "INSERT INTO tree (name, journal) VALUES ('Ash', 'Bought at the spring show')");
    QProcess p;
    p.start(QStringLiteral(TESSORIN_CLI_PATH), {"--today", "2031-05-04", "check", file, "--force"});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    EXPECT_EQ(sql(file, "SELECT journalDate, journalNote FROM journal").out,
              "journalDate\tjournalNote\n2031-05-04\tBought at the spring show\n");
}

// --- reliability ------------------------------------------------------------------------------------

// Runs the tool through a shell, for limits and users that a shell sets up; prefix ends in the word
// that starts the tool ("exec", or a program that runs it).
Result runShell(const QString& prefix, const QStringList& arguments)
{
    QStringList quoted;
    for (const QString& a : QStringList{QStringLiteral(TESSORIN_CLI_PATH), "--today", "2026-11-23"} + arguments)
        quoted << "'" + QString(a).replace("'", "'\\''") + "'";
    QProcess p;
    p.start("bash", {"-c", prefix + " " + quoted.join(' ')});
    Result r;
    if (!p.waitForFinished(180000))
        return r;
    r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}

QByteArray bytesOf(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void rawSql(const QString& file, const char* statements)
{
    sqlite3* db = nullptr;
    sqlite3_open(file.toUtf8().constData(), &db);
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(db, statements, nullptr, nullptr, &error), SQLITE_OK) << (error ? error : "");
    sqlite3_free(error);
    sqlite3_close(db);
}

// A disk that fills during the run: the file-size limit of the shell, and for root a small tmpfs.
TEST_F(Cli, ANewFileThatRunsOutOfDiskLeavesNoFileNoJournalAndFails)
{
    struct Case {
        QString folder;
        QString limit;
        QString command = "generate";
    };
    // Full while the file is made, while its tables are, and while the animals are written.
    QList<Case> cases = {{env.root(), "trap '' XFSZ; ulimit -f 4; exec", "new"},
                         {env.root(), "trap '' XFSZ; ulimit -f 12; exec", "demo"},
                         {env.root(), "trap '' XFSZ; ulimit -f 400; exec"}};
    const QString mount = env.root() + "small/";
    QDir().mkpath(mount);
    const bool mounted = geteuid() == 0 && QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=400k", "tmpfs", mount}) == 0;
    if (mounted)
        cases << Case{mount, "exec"};
    for (const Case& c : cases) {
        const QString file = c.folder + "full.cav";
        const QStringList options = c.command == "generate" ? QStringList{"--animals", "3000"} : QStringList();
        const Result r = runShell(c.limit, QStringList{c.command, file} + options);
        EXPECT_EQ(r.code, 1) << c.limit.toStdString();
        EXPECT_EQ(r.err.count('\n'), 1) << r.err.toStdString();
        EXPECT_FALSE(QFile::exists(file));
        EXPECT_FALSE(QFile::exists(file + "-journal"));
        // The next file of that name is taken as it is, not rolled back into something else.
        if (c.folder == env.root() && c.command == "generate") {
            const QString good = newFile("good.cav");
            sql(good, "INSERT INTO tree (name) VALUES ('Ash')");
            ASSERT_TRUE(QFile::copy(good, file));
            EXPECT_EQ(scalar(file, "SELECT name FROM tree"), "Ash");
        }
    }
    if (mounted)
        QProcess::execute("umount", {mount});
    else
        std::printf("[   NOTE   ] no tmpfs could be mounted: the full disk was tried with the file-size limit only\n");
}

TEST_F(Cli, AGenerateKilledHalfWayIsUndoneOnTheNextOpen)
{
    const QString file = path("killed.cav");
    QProcess p;
    p.start(QStringLiteral(TESSORIN_CLI_PATH), {"generate", file, "--animals", "200000"});
    ASSERT_TRUE(p.waitForStarted());
    QElapsedTimer waited;
    waited.start();
    // Past the tables (a few pages) and well into the animals, whose pages spill into the file.
    while (!(QFile::exists(file + "-journal") && QFileInfo(file).size() > 1000000) && waited.elapsed() < 60000)
        QThread::msleep(5);
    ::kill(pid_t(p.processId()), SIGKILL);
    p.waitForFinished();
    ASSERT_TRUE(QFile::exists(file + "-journal")) << "the journal never showed";

    EXPECT_EQ(scalar(file, "SELECT Count(*) FROM tree"), "0");
    EXPECT_FALSE(QFile::exists(file + "-journal"));
    EXPECT_EQ(run({"check", file}).code, 0);
}

TEST_F(Cli, TwoProgramsUpgradingOneOldFileCopyItsJournalTextsOnce)
{
    const QString file = newFile("old.cav");
    {
        Database db = OpenWithPassword(file);
        Transaction t(db);
        for (int i = 0; i < 2200; ++i)
            db.Execute(QString("INSERT INTO tree (name, journal) VALUES ('Doe %1', 'Weaned early, note %1')").arg(i));
        db.Execute("UPDATE cavyuser SET fldVersion = '4.47.00'");
        t.commit();
    }
    QProcess first, second;
    first.start(QStringLiteral(TESSORIN_CLI_PATH), {"check", file});
    second.start(QStringLiteral(TESSORIN_CLI_PATH), {"check", file});
    ASSERT_TRUE(first.waitForFinished(120000) && second.waitForFinished(120000));
    EXPECT_EQ(first.exitCode(), 0) << first.readAllStandardError().toStdString();
    EXPECT_EQ(second.exitCode(), 0) << second.readAllStandardError().toStdString();
    EXPECT_EQ(scalar(file, "SELECT Count(*) FROM journal"), "2200");
    EXPECT_EQ(scalar(file, "SELECT fldVersion FROM cavyuser"), ProgramVersionText());
}

TEST_F(Cli, AnotherProgramsFileIsRefusedAndNeverStamped)
{
    const QString file = path("recipes.cav");
    rawSql(file, "CREATE TABLE tree (id INTEGER PRIMARY KEY, name TEXT); INSERT INTO tree (name) VALUES ('Oak')");
    const QByteArray before = bytesOf(file);
    for (const char* command : {"info", "check", "settings"}) {
        const Result r = run({command, file});
        EXPECT_EQ(r.code, 1) << command;
        EXPECT_EQ(r.err, "Error 3343: '" + file + "' is a SQLite database of another program, not a Tessorin data file.\n");
    }
    EXPECT_EQ(bytesOf(file), before);
}

TEST_F(Cli, ADamagedFileIsRefusedAndCheckSaysWhatIsWrong)
{
    const QString file = path("damaged.cav");
    ASSERT_EQ(run({"generate", file, "--animals", "300"}).code, 0);
    ASSERT_EQ(sql(file, "DELETE FROM tree WHERE id > 20").code, 0);
    {
        QFile f(file); // the first page of the freelist points past the end of the file
        ASSERT_TRUE(f.open(QIODevice::ReadWrite));
        f.seek(32);
        f.write(QByteArray::fromHex("000f4240"));
    }
    const QByteArray before = bytesOf(file);
    const Result info = run({"info", file});
    EXPECT_EQ(info.code, 1);
    EXPECT_TRUE(info.err.startsWith("Error 3049: '" + file + "' is damaged and cannot be opened: ")) << info.err.toStdString();
    EXPECT_EQ(info.err.count('\n'), 1);
    const Result check = run({"check", file});
    EXPECT_EQ(check.code, 1);
    EXPECT_TRUE(check.err.contains("is damaged")) << check.err.toStdString();
    EXPECT_EQ(bytesOf(file), before);
}

TEST_F(Cli, CheckRemovesForeignTriggersAndFailsLoudlyOnAStepThatFails)
{
    const QString file = newFile("mailed.cav");
    sql(file, "INSERT INTO weights (name, weight) VALUES ('Ash', '2')");
    rawSql(file, "CREATE TRIGGER wipe AFTER UPDATE ON tree BEGIN DELETE FROM weights; END;");
    sql(file, "INSERT INTO tree (name) VALUES ('Ash')");
    const Result refused = sql(file, "UPDATE tree SET colour = 'Agouti'");
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(refused.err.contains("trigger or view that Tessorin did not make")) << refused.err.toStdString();

    const Result cleaned = run({"check", file});
    EXPECT_EQ(cleaned.code, 0) << cleaned.err.toStdString();
    EXPECT_EQ(cleaned.out, "removed\ttrigger wipe\n");
    EXPECT_EQ(sql(file, "UPDATE tree SET colour = 'Agouti'").code, 0);
    EXPECT_EQ(scalar(file, "SELECT Count(*) FROM weights"), "1");

    // An index holding the name of a table the check must make: that step fails, and says so.
    rawSql(file, "DROP TABLE shows; CREATE INDEX shows ON tree (name)");
    const Result failed = run({"check", file, "--force"});
    EXPECT_EQ(failed.code, 1);
    EXPECT_TRUE(failed.err.startsWith("The integrity check of " + file + " met errors; they are listed in "))
        << failed.err.toStdString();
    EXPECT_EQ(failed.err.count('\n'), 1);
}

TEST_F(Cli, ReadCommandsWorkOnAFileThatCannotBeWritten)
{
    const QString file = path("shared/stud.cav");
    QDir().mkpath(path("shared"));
    ASSERT_EQ(run({"generate", file, "--animals", "40"}).code, 0);
    const QByteArray before = bytesOf(file);
    // Root may write anywhere: the commands run as nobody, as a second user of a shared folder would.
    QString as;
    if (geteuid() == 0) {
        for (const QString& folder : {env.root(), path("shared")})
            ::chmod(QFile::encodeName(folder).constData(), 0755);
        ::chmod(QFile::encodeName(file).constData(), 0644);
        as = "cd /; exec setpriv --reuid=65534 --regid=65534 --clear-groups env HOME=/nonexistent";
    } else {
        ::chmod(QFile::encodeName(file).constData(), 0444);
        ::chmod(QFile::encodeName(path("shared")).constData(), 0555);
        as = "exec";
    }
    const Result info = runShell(as, {"info", file});
    EXPECT_EQ(info.code, 0) << info.err.toStdString();
    EXPECT_TRUE(info.out.contains("\ntree\t40\n")) << info.out.toStdString();
    const Result count = runShell(as, {"sql", file, "SELECT Count(*) AS n FROM tree WHERE sex = 'female'"});
    EXPECT_EQ(count.code, 0) << count.err.toStdString();
    const Result write = runShell(as, {"sql", file, "UPDATE tree SET coi = '1'"});
    EXPECT_EQ(write.code, 1);
    EXPECT_TRUE(write.err.startsWith("Error 3027: ")) << write.err.toStdString();
    EXPECT_EQ(runShell(as, {"check", file}).code, 0); // nothing to do on a current file
    ::chmod(QFile::encodeName(path("shared")).constData(), 0755);
    EXPECT_EQ(bytesOf(file), before);
    EXPECT_FALSE(QFile::exists(file + "-journal"));
}

TEST_F(Cli, SqlRefusesDeepNestingAndStopsAStatementThatRunsTooLong)
{
    const QString file = path("stud.cav");
    ASSERT_EQ(run({"generate", file, "--animals", "400"}).code, 0);
    // One argument of a command line holds at most 128 KiB: 20,000 calls fit.
    const struct {
        const char* open;
        int depth;
    } shapes[] = {{"(", 30000}, {"Abs(", 20000}};
    for (const auto& shape : shapes) {
        QString deep = QStringLiteral("SELECT ");
        deep.append(QString::fromLatin1(shape.open).repeated(shape.depth));
        deep.append(QLatin1Char('1'));
        deep.append(QString(shape.depth, QLatin1Char(')')));
        const Result r = sql(file, deep);
        EXPECT_EQ(r.code, 1);
        EXPECT_TRUE(r.err.startsWith("Error 3075: ")) << r.err.left(200).toStdString();
        EXPECT_TRUE(r.err.contains("nests too deeply"));
    }
    const QString slow = "SELECT Count(*) FROM tree a, tree b, tree c, tree d";
    QElapsedTimer timer;
    timer.start();
    const Result stopped = run({"sql", file, slow, "--time-limit", "1"});
    EXPECT_EQ(stopped.code, 1);
    EXPECT_EQ(stopped.err, "The statement ran longer than 1 s and was stopped; nothing of it was kept. Give "
                           "--no-limit to let it run.\n");
    EXPECT_LT(timer.elapsed(), 20000);
}

TEST_F(Cli, SettingsOfAFileWithoutItsSettingsRowFails)
{
    ASSERT_TRUE(CreateDataFile("bare.cav", env.root()));
    const Result r = run({"settings", path("bare.cav")});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err, path("bare.cav") + " has no settings row; tessorin-cli check makes it\n");
    EXPECT_EQ(r.out, "");
}

// --- species presets --------------------------------------------------------------------------------

TEST(SpeciesPresets, TableHoldsEveryRowInOrder)
{
    QStringList animals;
    for (const SpeciesPreset& p : SpeciesPresets())
        animals << p.animal;
    EXPECT_EQ(animals, QStringList({"Animal Shelter", "Cat", "Chinchilla", "Cow", "Deer", "Dog", "Donkey", "Ferret",
                                    "Gerbil", "Goat", "Guinea Pig", "Hamster", "Hedgehog", "Horse", "Mouse", "Pig",
                                    "Possum", "Rabbit", "Rat", "Sheep", "Bird", "[Clear previous choice]"}));
}

TEST(SpeciesPresets, RowsCarryTheirWordsDaysAndTitles)
{
    const SpeciesPreset* rabbit = FindSpeciesPreset("Rabbit");
    ASSERT_NE(rabbit, nullptr);
    EXPECT_EQ(QString(rabbit->male), "buck");
    EXPECT_EQ(QString(rabbit->female), "doe");
    EXPECT_EQ(QString(rabbit->father), "Sire");
    EXPECT_EQ(QString(rabbit->mother), "Dam");
    EXPECT_EQ(rabbit->gestation, 31);
    EXPECT_EQ(rabbit->nestBox, 29);
    EXPECT_EQ(rabbit->rebreed, 112);
    EXPECT_EQ(rabbit->wean, 56);
    EXPECT_EQ(QString(rabbit->customNames[0]), "Registry Number");
    EXPECT_EQ(QString(rabbit->customNames[11]), "Best Opposite In Show");

    const SpeciesPreset* sheep = FindSpeciesPreset("Sheep");
    EXPECT_EQ(QString(sheep->male), "buck");
    EXPECT_EQ(QString(sheep->father), "Ram");
    EXPECT_EQ(QString(sheep->female), "ewe");
    EXPECT_EQ(QString(FindSpeciesPreset("Dog")->customNames[7]), "Tatoo");

    // The general list, eight titles and four unused fields.
    const SpeciesPreset* horse = FindSpeciesPreset("Horse");
    EXPECT_EQ(QString(horse->customNames[0]), "Ears");
    EXPECT_EQ(QString(horse->customNames[7]), "Nutritional Problems");
    EXPECT_TRUE(horse->customNames[8].isNull());
    EXPECT_EQ(horse->gestation, 340);

    const SpeciesPreset* shelter = FindSpeciesPreset("Animal Shelter");
    EXPECT_FALSE(shelter->gestation.has_value());
    EXPECT_FALSE(shelter->wean.has_value());
    EXPECT_EQ(QString(shelter->customNames[9]), "Rehome rating (1 -5)");

    const SpeciesPreset* clear = FindSpeciesPreset("[Clear previous choice]");
    EXPECT_EQ(QString(clear->male), "male");
    EXPECT_TRUE(clear->customNames[0].isNull());
}

TEST(SpeciesPresets, LookupIsCaseBlindAndKnowsHedgehogHasNothing)
{
    const SpeciesPreset* cow = FindSpeciesPreset("  cOW ");
    ASSERT_NE(cow, nullptr);
    EXPECT_EQ(QString(cow->animal), "Cow");
    EXPECT_EQ(cow->gestation, 285);
    EXPECT_EQ(FindSpeciesPreset("guinea pig")->gestation, 63);

    const SpeciesPreset* hedgehog = FindSpeciesPreset("Hedgehog");
    ASSERT_NE(hedgehog, nullptr);
    EXPECT_FALSE(hedgehog->hasValues);
    EXPECT_TRUE(hedgehog->male.isNull());
    EXPECT_FALSE(hedgehog->gestation.has_value());

    EXPECT_EQ(FindSpeciesPreset("Axolotl"), nullptr);
    EXPECT_EQ(FindSpeciesPreset(""), nullptr);
    EXPECT_EQ(FindSpeciesPreset("Guinea"), nullptr);
}

} // namespace
