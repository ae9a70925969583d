// SPDX-License-Identifier: GPL-3.0-or-later
// `tessorin-cli animal`: the record of one name, field by field, as a script reads it.
#include "support/TestEnv.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include "CliRunner.h"

#include <QProcessEnvironment>

namespace {

using CliRun = CliResult;

class CliAnimal : public ::testing::Test {
protected:
    // The tool runs with its home in the test's folder, so that its pictures folder is ours.
    CliRun run(const QStringList& arguments) { return RunTool(arguments, env.root() + QStringLiteral("home")); }
    QString newFile()
    {
        const QString file = env.root() + QStringLiteral("stud.cav");
        const CliRun r = run({QStringLiteral("new"), file});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        return file;
    }
    void sql(const QString& file, const QString& statement)
    {
        const CliRun r = run({QStringLiteral("sql"), file, statement});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
    }
    static QString fieldsOf(const QString& out)
    {
        QStringList names;
        for (const QString& line : out.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            names << line.section(QLatin1Char('\t'), 0, 0);
        return names.join(QLatin1Char(','));
    }
    static QString value(const QString& out, const QString& field)
    {
        for (const QString& line : out.split(QLatin1Char('\n'))) {
            if (line.section(QLatin1Char('\t'), 0, 0) == field)
                return line.section(QLatin1Char('\t'), 1);
        }
        return QStringLiteral("<missing>");
    }
    TestEnv env;
};

TEST_F(CliAnimal, PrintsEveryFieldInOrderThenTheAwards)
{
    const QString file = newFile();
    sql(file, "UPDATE cavyuser SET fldFather = 'Sire', fldMother = 'Dam', fldMale = 'Buck', fldFemale = 'Doe', "
              "fldCountry = 'Australia', fldPrefix = 'Ch,Grand Ch'");
    sql(file, "INSERT INTO tree (name,sex,dob,ps,pd,cage,tag,breed,sold,datesold,notes) VALUES ('Grand Ch O$Brien',"
              "'male',#11/23/2025#,'Pa$1','Ma$x','7','AB','Rex',-1,#03/01/2026#,'line one\r\nline two')");
    QDir().mkpath(env.root() + "home/Documents/tessorin/my pics");
    QFile(env.root() + "home/Documents/tessorin/my pics/Grand Ch O'Brien(2)[Show].jpg").open(QIODevice::WriteOnly);

    const CliRun r = run({"animal", file, "grand ch o'brien"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    QStringList expectedFields = {"name", "storedName", "colour", "breed", "sex", "sexTerm", "dob", "notes", "ps",
                                  "pd", "cage", "tag", "deceased", "dateDeceased", "sold"};
    for (int i = 1; i <= 12; ++i)
        expectedFields << QStringLiteral("customField%1").arg(i);
    expectedFields << QStringList{"health", "journal", "callName", "id", "age", "title", "breeder", "owner",
                                  "leased", "prefix", "suffix", "coi", "dateSold", "fullName"};
    for (int i = 0; i < 10; ++i)
        expectedFields << QStringLiteral("picture%1").arg(i);
    for (int i = 0; i < 10; ++i)
        expectedFields << QStringLiteral("pictureLabel%1").arg(i);
    expectedFields << "awards" << "Sex:   Buck\\rDOB:  23/11/2025\\rAge:  Sold at 14 weeks\\rBreed: Rex\\rRegistration No: AB\\rCage No: 07\\rSire:  Pa$1\\rDam:  Ma'x\\r";
    EXPECT_EQ(fieldsOf(r.out), expectedFields.join(QLatin1Char(',')));

    EXPECT_EQ(value(r.out, "name"), "Grand Ch O'Brien");
    EXPECT_EQ(value(r.out, "storedName"), "Grand Ch O$Brien");
    EXPECT_EQ(value(r.out, "sexTerm"), "Buck");
    EXPECT_EQ(value(r.out, "notes"), "line one\\r\\nline two");
    EXPECT_EQ(value(r.out, "sold"), "True");
    EXPECT_EQ(value(r.out, "deceased"), "False");
    EXPECT_EQ(value(r.out, "id"), "1");
    EXPECT_EQ(value(r.out, "title"), "Grand Ch");
    EXPECT_EQ(value(r.out, "dateSold"), "01/03/2026");
    EXPECT_EQ(value(r.out, "picture2"),
              env.root() + "home/Documents/tessorin/my pics/Grand Ch O'Brien(2)[Show].jpg");
    EXPECT_EQ(value(r.out, "pictureLabel2"), "Show");
}

TEST_F(CliAnimal, ANameWithNoRowFails)
{
    const QString file = newFile();
    const CliRun r = run({"animal", file, "Nobody"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err, "No animal named Nobody in the data file\n");
    EXPECT_TRUE(r.out.isEmpty());
}

TEST_F(CliAnimal, BadCommandLinesFailWithOneLine)
{
    const CliRun missing = run({"animal", env.root() + "none.cav", "Ash"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err, "No data file at " + env.root() + "none.cav\n");
    const CliRun few = run({"animal", env.root() + "none.cav"});
    EXPECT_EQ(few.code, 2);
    EXPECT_EQ(few.err, "animal needs PATH NAME\n");
}

} // namespace
