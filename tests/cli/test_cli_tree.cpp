// SPDX-License-Identifier: GPL-3.0-or-later
// `tessorin-cli tree`: the ancestor array of one animal, a line per position from 0 to the limit, names
// as the file stores them.
#include "support/TestEnv.h"

#include "CliRunner.h"

namespace {

class CliTree : public ::testing::Test {
protected:
    CliResult run(const QStringList& arguments) { return RunTool(arguments); }
    QString newFile()
    {
        const QString file = env.root() + QStringLiteral("stud.cav");
        const CliResult r = run({QStringLiteral("new"), file});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        return file;
    }
    void add(const QString& file, const QString& name, const QString& ps, const QString& pd)
    {
        const CliResult r = run({QStringLiteral("sql"), file,
                                 QStringLiteral("INSERT INTO tree (name, ps, pd) VALUES ('%1', '%2', '%3')")
                                     .arg(name, ps, pd)});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
    }
    // The expected output: one "position<TAB>name" line for each name, positions from 0.
    static QString lines(const QStringList& names)
    {
        QString text;
        for (int i = 0; i < names.size(); ++i)
            text += QString::number(i) + QLatin1Char('\t') + names.at(i) + QLatin1Char('\n');
        return text;
    }
    TestEnv env;
};

} // namespace

TEST_F(CliTree, PrintsEveryPositionToTheDefaultLimitWithStoredNames)
{
    const QString file = newFile();
    add(file, "Kit", "O$Hara", "Doe");
    add(file, "O$Hara", "Pa$1", "unknown");
    add(file, "Doe", "", "Granny");

    const CliResult r = run({"tree", file, "Kit"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.err, "");
    QStringList expected(63);
    expected[0] = "Kit";
    expected[1] = "O$Hara";
    expected[2] = "Doe";
    expected[3] = "Pa$1";
    expected[4] = "unknown";
    expected[6] = "Granny";
    EXPECT_EQ(r.out, lines(expected));
}

TEST_F(CliTree, TheLimitBoundsTheOutputAndALoop)
{
    const QString file = newFile();
    add(file, "Loop", "Loop", "Loop");
    const CliResult r = run({"tree", file, "Loop", "--limit", "6"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, lines(QStringList(7, "Loop")));

    const CliResult deep = run({"tree", file, "Loop", "--limit", "254"});
    ASSERT_EQ(deep.code, 0) << deep.err.toStdString();
    EXPECT_EQ(deep.out, lines(QStringList(255, "Loop")));
}

TEST_F(CliTree, AnAnimalWithoutParentsOrRecordHasBlankPositions)
{
    const QString file = newFile();
    add(file, "Kit", "", "");
    EXPECT_EQ(run({"tree", file, "Kit", "--limit", "2"}).out, "0\tKit\n1\t\n2\t\n");
    // A name without a record is found by its stored form and printed as given.
    EXPECT_EQ(run({"tree", file, "O'Nobody", "--limit", "2"}).out, "0\tO'Nobody\n1\t\n2\t\n");
}

TEST_F(CliTree, BadCommandLinesFailWithOneLine)
{
    const QString file = newFile();
    const CliResult few = run({"tree", file});
    EXPECT_EQ(few.code, 2);
    EXPECT_EQ(few.err, "tree needs PATH NAME\n");
    const CliResult limit = run({"tree", file, "Kit", "--limit", "1"});
    EXPECT_EQ(limit.code, 2);
    EXPECT_EQ(limit.err, "--limit must be a whole number from 2 to 32766, not \"1\"\n");
    const CliResult missing = run({"tree", env.root() + "none.cav", "Kit"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err, "No data file at " + env.root() + "none.cav\n");
}
