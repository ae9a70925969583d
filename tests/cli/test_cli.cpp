// SPDX-License-Identifier: GPL-3.0-or-later
// tessorin-cli as a script sees it: the exact lines it prints, its exit codes, and what it leaves in
// the data file. Also the species presets table, which the demo file is set up from.
#include "CliRunner.h"

#include "store/DataFile.h"
#include "store/SpeciesPresets.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>
#include <csignal>
#include <cstdio>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Cli = CliTest;

QString infoText(const QString& file, const QStringList& counts)
{
    static const QStringList tables = {"tree",     "cavyuser",     "soldstock", "Breeding",    "weights", "print",
                                       "contacts", "vaccinations", "reminders", "expenditure", "shows",   "journal"};
    QString s = "program\t" + ProgramVersionText() + "\nversion\t" + ProgramVersionText() + "\npath\t" +
                QFileInfo(file).absoluteFilePath() + '\n';
    for (int i = 0; i < tables.size(); ++i)
        s += tables.at(i) + '\t' + counts.at(i) + '\n';
    return s;
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

// --- new, info, check, settings ---------------------------------------------------------------------

TEST_F(Cli, NewAndCheckKeepRowsAndStamp)
{
    const QString file = path("stud.cav");
    const CliResult made = run({"new", file});
    EXPECT_EQ(made.code, 0);
    EXPECT_EQ(made.out + made.err, "");
    EXPECT_EQ(ClassifyDataFile(file), DataFileKind::Tessorin);
    EXPECT_EQ(run({"info", file}).out, infoText(file, {"0", "1", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0"}));

    sql(file, "INSERT INTO tree (name, sex, deceased) VALUES ('Ash', 'male', 0)");
    sql(file, "INSERT INTO tree (name, sex, deceased) VALUES ('Birch', 'female', -1)");
    const CliResult check = run({"check", file, "--force"});
    EXPECT_EQ(check.code, 0) << check.err.toStdString();
    EXPECT_EQ(check.out, "");
    EXPECT_EQ(rows(file, "SELECT name, sex, deceased FROM tree ORDER BY name"),
              QStringList({"Ash\tmale\t0", "Birch\tfemale\t-1"}));
    EXPECT_EQ(run({"info", file}).out, infoText(file, {"2", "1", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0"}));
    EXPECT_EQ(run({"check", file}).code, 0);
}

TEST_F(Cli, SettingsOfANewFileInInterfaceOrder)
{
    const QString file = newFile();
    QString expected = "Stud\t\nBreederName\t\nEmail\t\nPhoneNum\t\nStudNum\t\nAnimal\tAnimal\nMale\tMale\n"
                       "Female\tFemale\nFather\tFather\nMother\tMother\nGestation\t0\nNestBox\t0\nRebreed\t0\n"
                       "Wean\t0\nTag\t0\nCountry\t\nCustomDetail\t\n";
    for (int i = 1; i <= 12; ++i)
        expected += QStringLiteral("CustomName%1\t\n").arg(i);
    expected += "Organisation\t\nReminders\t\nPrefix\t\nWeightMeasure\t\nVersion\t" + ProgramVersionText() +
                "\nAutoUpdate\t1\n";
    const CliResult r = run({"settings", file});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, expected);
}

TEST_F(Cli, WhatIsNoDataFileOrExistsIsRefusedAndLeftAlone)
{
    const QString file = newFile({"INSERT INTO tree (name) VALUES ('Ash')"});
    ASSERT_TRUE(TestEnv::writeText(path("notes.cav"), "shopping list\n"));
    const QString recipes = path("recipes.cav");
    rawSql(recipes, "CREATE TABLE tree (id INTEGER PRIMARY KEY, name TEXT); INSERT INTO tree (name) VALUES ('Oak')");
    const QByteArray recipesBefore = bytesOf(recipes);
    ASSERT_TRUE(CreateDataFile("bare.cav", env.root()));
    const QString foreign = "Error 3343: '" + recipes + "' is a SQLite database of another program, not a Tessorin "
                            "data file.\n";
    const struct {
        QStringList args;
        QString err; // whole, or its start when it ends in no line break
    } cases[] = {
        {{"new", file}, "Cannot create " + file + ": the file exists\n"},
        {{"generate", file, "--animals", "10"}, "Cannot create " + file + ": the file exists\n"},
        {{"new", path("missing/stud.cav")}, "Cannot create " + path("missing/stud.cav") + ": no folder " +
                                                 path("missing") + "\n"},
        {{"check", path("none.cav")}, "No data file at " + path("none.cav") + "\n"},
        {{"animal", path("none.cav"), "Ash"}, "No data file at " + path("none.cav") + "\n"},
        {{"tree", path("none.cav"), "Kit"}, "No data file at " + path("none.cav") + "\n"},
        {{"search", path("none.cav"), "All Records"}, "Cannot open the data file " + path("none.cav") + "\n"},
        {{"info", path("notes.cav")}, "Error 3343: "},
        {{"info", recipes}, foreign},
        {{"check", recipes}, foreign},
        {{"settings", recipes}, foreign},
        {{"settings", path("bare.cav")}, path("bare.cav") + " has no settings row; tessorin-cli check makes it\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args.join(' ').toStdString());
        const CliResult r = run(c.args);
        EXPECT_EQ(r.code, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err.count('\n'), 1) << r.err.toStdString();
        EXPECT_TRUE(c.err.endsWith('\n') ? r.err == c.err : r.err.startsWith(c.err)) << r.err.toStdString();
    }
    EXPECT_EQ(scalar(file, "SELECT name FROM tree"), "Ash");
    EXPECT_EQ(TestEnv::readText(path("notes.cav")), "shopping list\n");
    EXPECT_EQ(bytesOf(recipes), recipesBefore);
}

// --- sql ------------------------------------------------------------------------------------------

TEST_F(Cli, SqlPrintsRowsInPlainFormsAndErrorsWithTheirNumber)
{
    const QString file = newFile();
    const struct {
        const char* statement;
        const char* out;
        const char* err = ""; // the start of the one line; the exit code is 1 when there is one
    } cases[] = {
        {"INSERT INTO tree (name, dob, datesold, deceased, notes, sex) VALUES ('Kit$s Pride', #03/15/2024#, "
         "#03/15/2024 14:30:00#, -1, Null, 'male')",
         "rows affected: 1\n"},
        {"  select name, dob, datesold, deceased, notes FROM tree",
         "name\tdob\tdatesold\tdeceased\tnotes\nKit$s Pride\t2024-03-15\t2024-03-15 14:30:00\t-1\t\\N\n"},
        {"INSERT INTO expenditure (name, amount, details) VALUES ('Kit$s Pride', 12.5, 'Hay')", "rows affected: 1\n"},
        {"SELECT amount, details FROM expenditure", "amount\tdetails\n12.5\tHay\n"},
        {"SELECT name FROM tree WHERE name = 'Nobody'", "name\n"},
        // A memo with a line break, a tab and a backslash stays on one line.
        {"INSERT INTO tree (name, notes, sex) VALUES ('Ash', 'line one\nline\ttwo a\\b', 'male')", "rows affected: 1\n"},
        {"SELECT notes FROM tree WHERE name = 'Ash'", "notes\nline one\\nline\\ttwo a\\\\b\n"},
        {"UPDATE tree SET notes = '\\N' WHERE name = 'Ash'", "rows affected: 1\n"},
        {"SELECT notes FROM tree WHERE name = 'Ash'", "notes\n\\\\N\n"},
        {"UPDATE tree SET sex = 'female' WHERE sex = 'male'", "rows affected: 2\n"},
        {"DELETE * FROM tree WHERE name = 'Nobody'", "rows affected: 0\n"},
        {"SELECT * FROM horses", "", "Error 3078: "},
        {"CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING)", "", "Error 3010: "},
        {"SELECT * FROM tree WHERE name = ''; DROP TABLE tree; --'", "", "Error 3142: "},
        {"DELETE * FROM tree; DROP TABLE tree", "", "Error 3142: "},
        {"SELECT Count(*) AS n FROM tree", "n\n2\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.statement);
        const CliResult r = sql(file, c.statement);
        EXPECT_EQ(r.code, *c.err ? 1 : 0);
        EXPECT_EQ(r.out, c.out);
        EXPECT_EQ(r.err.left(int(qstrlen(c.err))), c.err);
        EXPECT_EQ(r.err.count('\n'), *c.err ? 1 : 0);
    }
}

// --- generate and demo ------------------------------------------------------------------------------

TEST_F(Cli, GenerateIsDeterministicForASeedAndWorksForTinyStuds)
{
    const QString a = path("a.cav"), b = path("b.cav"), c = path("c.cav");
    const QStringList options = {"--animals", "300", "--generations", "5", "--seed", "42"};
    const CliResult ra = run(QStringList{"generate", a} + options);
    ASSERT_EQ(ra.code, 0) << ra.err.toStdString();
    EXPECT_EQ(ra.out, "");
    ASSERT_EQ(run(QStringList{"generate", b} + options).code, 0);
    ASSERT_EQ(run({"generate", c, "--animals", "300", "--generations", "5", "--seed", "43"}).code, 0);
    EXPECT_EQ(run({"info", a}).out.section('\n', 3), run({"info", b}).out.section('\n', 3));
    const QString first =
        "SELECT id, name, sex, dob, ps, pd, breed, colour, deceased, sold FROM tree WHERE id <= 40 ORDER BY id";
    EXPECT_EQ(rows(a, first).size(), 40);
    EXPECT_EQ(rows(a, first), rows(b, first));
    EXPECT_NE(rows(a, first), rows(c, first));
    const QString weights = "SELECT * FROM weights WHERE id <= 20 ORDER BY id";
    EXPECT_EQ(rows(a, weights), rows(b, weights));

    for (const char* n : {"1", "2", "7"}) {
        const QString file = path(QStringLiteral("tiny%1.cav").arg(n));
        const CliResult r = run({"generate", file, "--animals", n, "--generations", "8"});
        EXPECT_EQ(r.code, 0) << n << r.err.toStdString();
        EXPECT_EQ(scalar(file, "SELECT Count(*) AS n FROM tree"), n);
    }
}

TEST_F(Cli, GeneratedStudLooksLikeARealOne)
{
    const QString file = path("stud.cav");
    ASSERT_EQ(run({"generate", file, "--animals", "500", "--seed", "7"}).code, 0);
    auto count = [&](const QString& where) { return scalar(file, "SELECT Count(*) AS n FROM " + where).toInt(); };
    EXPECT_EQ(count("tree"), 500);
    // A mating for five animals, a treatment for three, two weights an animal (the youngest are not weighed yet).
    EXPECT_EQ(count("vaccinations"), 166);
    EXPECT_NEAR(count("breeding"), 100, 25);
    EXPECT_NEAR(count("weights"), 1000, 100);
    EXPECT_GT(count("tree AS c INNER JOIN tree AS p ON c.ps = p.name"), 350);
    const char* const never[] = {
        "tree WHERE sex <> 'male' AND sex <> 'female'",
        "tree WHERE name LIKE '*''*'",
        // Parents are rows of the file, born well before their young.
        "tree AS c INNER JOIN tree AS p ON c.ps = p.name WHERE p.dob >= c.dob OR p.sex <> 'male'",
        "tree AS c INNER JOIN tree AS p ON c.pd = p.name WHERE p.dob >= c.dob OR p.sex <> 'female'",
        "breeding WHERE Boar NOT IN (SELECT name FROM tree) OR Sow NOT IN (SELECT name FROM tree)",
        "tree WHERE dob >= #11/23/2026#",
        "tree WHERE deceased <> -1 AND deceased <> 0",
        "tree WHERE sold <> -1 AND sold <> 0",
        "tree WHERE owner <> -1 AND owner <> 0",
        "tree WHERE breeder <> -1 AND breeder <> 0",
    };
    for (const char* where : never)
        EXPECT_EQ(count(where), 0) << where;
    const char* const some[] = {"tree WHERE name LIKE '*$*'", "tree WHERE ps = 'Unknown'", "tree WHERE ps = ''",
                                "tree WHERE deceased = -1",   "tree WHERE sold = -1",      "tree WHERE owner = -1",
                                "tree WHERE breeder = -1",    "breeding WHERE Born IS NULL AND Due > #11/23/2026#"};
    for (const char* where : some)
        EXPECT_GT(count(where), 0) << where;
    // Names are the working key: no two alike; sires are shared.
    EXPECT_EQ(rows(file, "SELECT name, Count(*) AS n FROM tree GROUP BY name HAVING Count(*) > 1"), QStringList());
    const QStringList bySire = rows(file, "SELECT ps, Count(*) AS n FROM tree WHERE ps <> '' AND ps <> 'Unknown' "
                                          "GROUP BY ps ORDER BY Count(*) DESC");
    ASSERT_GT(bySire.size(), 1);
    EXPECT_GE(bySire.at(0).section('\t', 1).toInt(), 12);
}

TEST_F(Cli, DemoNeedsNoSetupWizard)
{
    const QString file = path("demo.cav");
    const CliResult r = run({"demo", file});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, "");
    // The first twelve of the current stock have a main picture, a real JPEG.
    const QString pics = home() + "/Documents/tessorin/my pics/";
    const QStringList pictures = QDir(pics).entryList({"*(0).jpg"}, QDir::Files);
    ASSERT_EQ(pictures.size(), 12);
    EXPECT_TRUE(bytesOf(pics + pictures[0]).startsWith("\xFF\xD8\xFF"));

    const QString settings = run({"settings", file}).out;
    const QString lines[] = {
        "\nBreederName\tSam Fletcher\n", "\nAnimal\tRabbit\n", "\nMale\tbuck\n", "\nFemale\tdoe\n",
        "\nFather\tSire\n", "\nMother\tDam\n", "\nGestation\t31\n", "\nNestBox\t29\n", "\nRebreed\t112\n",
        "\nWean\t56\n", "\nCountry\tUnited States\n", "\nCustomName1\tRegistry Number\n",
        "\nCustomName12\tBest Opposite In Show\n", "\nWeightMeasure\tpounds & ounces\n",
        "\nCustomDetail\tPhone: 555-0142\\nStud Number: AG-1042\\nEmail: sam@ashgrove.example\n",
        "\nVersion\t" + ProgramVersionText() + "\n"};
    for (const QString& line : lines)
        EXPECT_TRUE(settings.contains(line)) << line.toStdString() << "\n" << settings.toStdString();

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
                            "SELECT Count(*) AS n FROM tree WHERE sold = -1 AND datesold >= #01/01/2026#",
                            "SELECT Count(*) AS n FROM tree WHERE customField3 LIKE '* lb *'"})
        EXPECT_NE(scalar(file, due), "0") << due;
    // Weights in pounds with the ounces as sixteenths; text dates follow the country: month first.
    const QStringList weights = rows(file, "SELECT weight FROM weights");
    ASSERT_FALSE(weights.isEmpty());
    for (const QString& w : weights)
        EXPECT_TRUE(QRegularExpression("^\\d+\\.\\d\\d$").match(w).hasMatch()) << w.toStdString();
    const QString sold = scalar(file, "SELECT DateSold FROM soldstock WHERE ID = 1");
    EXPECT_TRUE(QRegularExpression("^(0[1-9]|1[0-2])/\\d\\d/20\\d\\d$").match(sold).hasMatch()) << sold.toStdString();
}

// --- the command line -------------------------------------------------------------------------------

TEST_F(Cli, CommandLineMistakesExitTwoWithOneLine)
{
    const QString f = newFile();
    const struct {
        QStringList args;
        QString err;
    } cases[] = {
        {{}, "No command given; tessorin-cli --help lists them\n"},
        {{"frobnicate"}, "Unknown command \"frobnicate\"; tessorin-cli --help lists them\n"},
        {{"sql", f}, "sql needs PATH STATEMENT\n"},
        {{"info", f, "b.cav"}, "Too many arguments for info: b.cav\n"},
        {{"check", f, "--fast"}, "Unknown option --fast for check\n"},
        {{"--today", "23/11/2026", "info", f}, "--today needs a date as YYYY-MM-DD, not \"23/11/2026\"\n"},
        {{"--today", "2026-02-30", "info", f}, "--today needs a date as YYYY-MM-DD, not \"2026-02-30\"\n"},
        {{"generate", path("g.cav")}, "generate needs --animals N\n"},
        {{"generate", path("g.cav"), "--animals", "0"}, "--animals must be a whole number from 1 to 10000000, not \"0\"\n"},
        {{"generate", path("g.cav"), "--animals", "ten"},
         "--animals must be a whole number from 1 to 10000000, not \"ten\"\n"},
        {{"generate", path("g.cav"), "--animals", "10", "--colour", "red"}, "Unknown option --colour for generate\n"},
        {{"animal", f}, "animal needs PATH NAME\n"},
        {{"tree", f}, "tree needs PATH NAME\n"},
        {{"tree", f, "Kit", "--limit", "1"}, "--limit must be a whole number from 2 to 32766, not \"1\"\n"},
        {{"descendants", f}, "descendants needs PATH NAME\n"},
        {{"coi", f}, "coi needs PATH NAME\n"},
        {{"coi", f, "--all", "--mine"}, "coi takes --all or --mine, not both\n"},
        {{"coi", f, "--sire", "Dad"}, "A test mating needs both --sire S and --dam D\n"},
        {{"coi", f, "Kit", "--all"}, "Too many arguments for coi: Kit\n"},
        {{"coi", f, "Kit", "--generations", "six"}, "--generations must be a whole number from -32768 to 32767, not \"six\"\n"},
        {{"search", f, "x", "--value2", "y"}, "search needs --field2 and --value2 together\n"},
        {{"add", f, "--name", "Ash", "--sex", "male", "--sold", "maybe"}, "--sold takes yes or no, not \"maybe\"\n"},
    };
    for (const auto& c : cases) {
        const CliResult r = RunTool(c.args, home(), false);
        EXPECT_EQ(r.code, 2) << c.args.join(' ').toStdString();
        EXPECT_EQ(r.err, c.err);
        EXPECT_EQ(r.out, "");
    }
    EXPECT_FALSE(QFileInfo::exists(path("g.cav")));
    EXPECT_EQ(scalar(f, "SELECT Count(*) FROM tree"), "0");
    const CliResult help = run({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(help.out.startsWith("Usage: tessorin-cli [--today YYYY-MM-DD] COMMAND")) << help.out.toStdString();
}

TEST_F(Cli, TodayFixesTheClockOfTheCheck)
{
    // The journal step dates what it copies with today's date.
    const QString file = newFile({"INSERT INTO tree (name, journal) VALUES ('Ash', 'Bought at the spring show')"});
    const CliResult r = RunTool({"--today", "2031-05-04", "check", file, "--force"}, home(), false);
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(rows(file, "SELECT journalDate, journalNote FROM journal"),
              QStringList{"2031-05-04\tBought at the spring show"});
}

// --- reliability ------------------------------------------------------------------------------------

// Runs the tool through a shell, for limits and users that a shell sets up; prefix ends in the word
// that starts the tool ("exec", or a program that runs it).
CliResult runShell(const QString& prefix, const QStringList& arguments)
{
    QStringList quoted;
    for (const QString& a : QStringList{QStringLiteral(TESSORIN_CLI_PATH), "--today", "2026-11-23"} + arguments)
        quoted << "'" + QString(a).replace("'", "'\\''") + "'";
    QProcess p;
    p.start("bash", {"-c", prefix + " " + quoted.join(' ')});
    CliResult r;
    if (!p.waitForFinished(180000))
        return r;
    r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
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
        const CliResult r = runShell(c.limit, QStringList{c.command, file} + options);
        EXPECT_EQ(r.code, 1) << c.limit.toStdString();
        EXPECT_EQ(r.err.count('\n'), 1) << r.err.toStdString();
        EXPECT_FALSE(QFile::exists(file));
        EXPECT_FALSE(QFile::exists(file + "-journal"));
        // The next file of that name is taken as it is, not rolled back into something else.
        if (c.folder == env.root() && c.command == "generate") {
            const QString good = newFile({}, "good.cav");
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
    const QString file = newFile({}, "old.cav");
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
    const CliResult info = run({"info", file});
    EXPECT_EQ(info.code, 1);
    EXPECT_TRUE(info.err.startsWith("Error 3049: '" + file + "' is damaged and cannot be opened: ")) << info.err.toStdString();
    EXPECT_EQ(info.err.count('\n'), 1);
    const CliResult check = run({"check", file});
    EXPECT_EQ(check.code, 1);
    EXPECT_TRUE(check.err.contains("is damaged")) << check.err.toStdString();
    EXPECT_EQ(bytesOf(file), before);
}

TEST_F(Cli, CheckRemovesForeignTriggersAndFailsLoudlyOnAStepThatFails)
{
    const QString file = newFile({}, "mailed.cav");
    sql(file, "INSERT INTO weights (name, weight) VALUES ('Ash', '2')");
    rawSql(file, "CREATE TRIGGER wipe AFTER UPDATE ON tree BEGIN DELETE FROM weights; END;");
    sql(file, "INSERT INTO tree (name) VALUES ('Ash')");
    const CliResult refused = sql(file, "UPDATE tree SET colour = 'Agouti'");
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(refused.err.contains("trigger or view that Tessorin did not make")) << refused.err.toStdString();

    const CliResult cleaned = run({"check", file});
    EXPECT_EQ(cleaned.code, 0) << cleaned.err.toStdString();
    EXPECT_EQ(cleaned.out, "removed\ttrigger wipe\n");
    EXPECT_EQ(sql(file, "UPDATE tree SET colour = 'Agouti'").code, 0);
    EXPECT_EQ(scalar(file, "SELECT Count(*) FROM weights"), "1");

    // An index holding the name of a table the check must make: that step fails, and says so.
    rawSql(file, "DROP TABLE shows; CREATE INDEX shows ON tree (name)");
    const CliResult failed = run({"check", file, "--force"});
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
    const CliResult info = runShell(as, {"info", file});
    EXPECT_EQ(info.code, 0) << info.err.toStdString();
    EXPECT_TRUE(info.out.contains("\ntree\t40\n")) << info.out.toStdString();
    const CliResult count = runShell(as, {"sql", file, "SELECT Count(*) AS n FROM tree WHERE sex = 'female'"});
    EXPECT_EQ(count.code, 0) << count.err.toStdString();
    const CliResult write = runShell(as, {"sql", file, "UPDATE tree SET coi = '1'"});
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
        const CliResult r = sql(file, deep);
        EXPECT_EQ(r.code, 1);
        EXPECT_TRUE(r.err.startsWith("Error 3075: ")) << r.err.left(200).toStdString();
        EXPECT_TRUE(r.err.contains("nests too deeply"));
    }
    const QString slow = "SELECT Count(*) FROM tree a, tree b, tree c, tree d";
    QElapsedTimer timer;
    timer.start();
    const CliResult stopped = run({"sql", file, slow, "--time-limit", "1"});
    EXPECT_EQ(stopped.code, 1);
    EXPECT_EQ(stopped.err, "The statement ran longer than 1 s and was stopped; nothing of it was kept. Give "
                           "--no-limit to let it run.\n");
    EXPECT_LT(timer.elapsed(), 20000);
}

// --- species presets --------------------------------------------------------------------------------

TEST(SpeciesPresets, TableHoldsEveryRowInOrderWithItsWordsDaysAndTitles)
{
    QStringList animals;
    for (const SpeciesPreset& p : SpeciesPresets())
        animals << p.animal;
    EXPECT_EQ(animals, QStringList({"Animal Shelter", "Cat", "Chinchilla", "Cow", "Deer", "Dog", "Donkey", "Ferret",
                                    "Gerbil", "Goat", "Guinea Pig", "Hamster", "Hedgehog", "Horse", "Mouse", "Pig",
                                    "Possum", "Rabbit", "Rat", "Sheep", "Bird", "[Clear previous choice]"}));
    const struct {
        const char* lookup; // case-blind, blanks around ignored
        const char* male;
        const char* female;
        const char* father;
        std::optional<int> gestation;
        int custom; // one of the twelve titles, Null when empty
        const char* title;
    } cases[] = {
        {"Rabbit", "buck", "doe", "Sire", 31, 11, "Best Opposite In Show"},
        {"Sheep", "buck", "ewe", "Ram", 145, 8, nullptr},
        {"Dog", "dog", "bitch", "Sire", 63, 7, "Tatoo"},
        {"Horse", "stallion", "mare", "Father", 340, 7, "Nutritional Problems"}, // the general eight titles
        {"  cOW ", "bull", "cow", "Sire", 285, 8, nullptr},
        {"guinea pig", "boar", "sow", "Sire", 63, 8, nullptr},
        {"Animal Shelter", "male", "female", "Father", std::nullopt, 9, "Rehome rating (1 -5)"},
        {"[Clear previous choice]", "male", "female", "Father", std::nullopt, 0, nullptr},
        {"Hedgehog", nullptr, nullptr, nullptr, std::nullopt, 0, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.lookup);
        const SpeciesPreset* p = FindSpeciesPreset(c.lookup);
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(p->male, c.male);
        EXPECT_EQ(p->female, c.female);
        EXPECT_EQ(p->father, c.father);
        EXPECT_EQ(p->gestation, c.gestation);
        EXPECT_EQ(p->customNames[c.custom], c.title);
        EXPECT_EQ(p->hasValues, c.male != nullptr);
    }
    const SpeciesPreset* rabbit = FindSpeciesPreset("Rabbit");
    EXPECT_EQ(std::tuple(rabbit->nestBox, rabbit->rebreed, rabbit->wean), std::tuple(29, 112, 56));
    EXPECT_EQ(QString(rabbit->mother), "Dam");
    EXPECT_FALSE(FindSpeciesPreset("Animal Shelter")->wean.has_value());
    for (const char* unknown : {"Axolotl", "", "Guinea"})
        EXPECT_EQ(FindSpeciesPreset(unknown), nullptr) << unknown;
}

} // namespace
