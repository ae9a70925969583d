// SPDX-License-Identifier: GPL-3.0-or-later
// tessorin-cli search and title: the lines the result list would hold, the count line, the title.
#include "CliRunner.h"
#include "support/TestEnv.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>

namespace {

using Outcome = CliResult;

class CliSearch : public ::testing::Test {
protected:
    void SetUp() override
    {
        file = env.root() + QStringLiteral("stud.cav");
        ASSERT_EQ(run({"new", file}).code, 0);
        const QStringList rows = {
            "('Amber','female','Rex',-1,0,0,'Ambs')", "('Basil','male','Dutch',0,-1,0,'')",
            "('Dill','male','Rex',-1,0,0,'')",        "('O$Hara','male','Lop',-1,0,0,'Oh')",
            "('Unknown','male','Unknown',-1,0,0,'')",
        };
        for (const QString& r : rows)
            ASSERT_EQ(run({"sql", file, "INSERT INTO tree (name, sex, breed, owner, sold, deceased, callname) VALUES " + r})
                          .code,
                      0);
        ASSERT_EQ(run({"sql", file, "UPDATE cavyuser SET fldPrefix = 'CH,Grand Champion,Champion'"}).code, 0);
    }
    // The tool on the test's day, with its folders (and so its error log) inside the test's directory.
    Outcome run(const QStringList& arguments) { return RunTool(arguments, env.root() + "home"); }
    QString errorLog() const { return TestEnv::readText(env.root() + "home/.local/share/tessorin/Errors.txt"); }

    TestEnv env;
    QString file;
};

const QString kMany = QStringLiteral(" results. Click to view.\\nDouble click to edit. Right click for options.\n");

TEST_F(CliSearch, StatusWordsAndTheCountLine)
{
    Outcome r = run({"search", file, "My Current Stock"});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, "Amber\nDill\nO'Hara\n3" + kMany);

    r = run({"search", file, "Sold Stock"});
    EXPECT_EQ(r.out, "Basil\n1 result. Click to view.\\nDouble click to edit. Right click for options.\n");
    r = run({"search", file, "Sold Stock", "--current"});
    EXPECT_EQ(r.out, "No results found.\n");
    EXPECT_EQ(r.err, "");
}

TEST_F(CliSearch, BothCriteriaAndTheCallName)
{
    Outcome r = run({"search", file, "Rex", "--field1", "Breed", "--field2", "Sex", "--value2", "male"});
    EXPECT_EQ(r.out, "Dill\n1 result. Click to view.\\nDouble click to edit. Right click for options.\n");
    r = run({"search", file, "All Records", "--field2", "Name", "--value2", "a", "--contains"});
    EXPECT_EQ(r.out, "Amber\nBasil\nO'Hara\n3" + kMany);
    r = run({"search", file, "Oh", "--field1", "callname"});
    EXPECT_EQ(r.out, "O'Hara    [Oh]\n1 result. Click to view.\\nDouble click to edit. Right click for options.\n");
}

TEST_F(CliSearch, AFailedSearchPrintsTheCountAndLogs)
{
    for (const QStringList& failing : {QStringList{"search", file, "", "--current"},
                                       QStringList{"search", file, "x", "--field1", "Bogus"}}) {
        const Outcome f = run(failing);
        EXPECT_EQ(f.code, 1);
        EXPECT_EQ(f.out, "No results found.\n");
        EXPECT_TRUE(f.err.startsWith("The search failed; its error is the last line of ")) << f.err.toStdString();
    }
    // An apostrophe in a value is searched for, not a break in the statement.
    Outcome r = run({"search", file, "All Records", "--field2", "Name", "--value2", "O'H", "--contains"});
    EXPECT_TRUE(r.out.startsWith("O'Hara")) << r.out.toStdString();
    EXPECT_EQ(errorLog().split('\n', Qt::SkipEmptyParts).size(), 2);

    r = run({"search", file, "x", "--value2", "y"});
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.err, "search needs --field2 and --value2 together\n");
    r = run({"search", env.root() + "none.cav", "All Records"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err, "Cannot open the data file " + env.root() + "none.cav\n");
}

TEST_F(CliSearch, TitleAndTheNameWithoutIt)
{
    Outcome r = run({"title", file, "grand champion Rosie"});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, "Grand Champion\nRosie\n");
    r = run({"title", file, "CHESTNUT Rosie"});
    EXPECT_EQ(r.out, "\nCHESTNUT Rosie\n");
}

} // namespace

TEST_F(CliSearch, CagesListTheCurrentStockAsTheCageWindowDoes)
{
    ASSERT_EQ(run({"sql", file, "UPDATE tree SET cage = 'Hutch 2', tag = 'T-' & name, name = 'CH ' & name "
                                "WHERE name = 'Dill'"}).code, 0);
    const Outcome r = run({"cages", file});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, "\tAmber\t\tFemale\tRex\n\tO'Hara\t\tMale\tLop\nHutch 2\tDill\tT-Dill\tMale\tRex\n");
}
