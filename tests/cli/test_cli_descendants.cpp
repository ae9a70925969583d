// SPDX-License-Identifier: GPL-3.0-or-later
// `tessorin-cli descendants`: the nine generations of the descendants page as lines of text.
#include "support/TestEnv.h"

#include "CliRunner.h"

namespace {

class CliDescendants : public ::testing::Test {
protected:
    CliResult run(const QStringList& arguments) { return RunTool(arguments, env.root() + QStringLiteral("home")); }
    QString studFile()
    {
        const QString file = env.root() + QStringLiteral("stud.cav");
        CliResult r = run({QStringLiteral("new"), file});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        // name, sex, PS, PD as stored
        const char* rows[][4] = {
            {"Sire", "male", "Unknown", ""},  {"Kit A", "female", "Sire", "Dam"}, {"O$Brien", "male", "sire", "Dam"},
            {"Grand", "male", "O$Brien", "Kit A"}, {"Great", "female", "Grand", "Unknown"},
            {"Ping", "male", "Pong", ""},     {"Pong", "male", "Ping", ""},
        };
        for (const auto& row : rows) {
            r = run({QStringLiteral("sql"), file,
                     QStringLiteral("INSERT INTO tree (name, sex, ps, pd) VALUES ('%1', '%2', '%3', '%4')")
                         .arg(QLatin1String(row[0]), QLatin1String(row[1]), QLatin1String(row[2]),
                              QLatin1String(row[3]))});
            EXPECT_EQ(r.code, 0) << r.err.toStdString();
        }
        return file;
    }
    TestEnv env;
};

} // namespace

TEST_F(CliDescendants, PrintsEachGenerationsTitleThenItsEntries)
{
    const QString file = studFile();
    const CliResult r = run({QStringLiteral("descendants"), file, QStringLiteral("Sire")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, QStringLiteral("Generation 1     (2 descendants)\n"
                                    "  Kit A  >>\n"
                                    "  O'Brien  >>\n"
                                    "Generation 2     (2 descendants)\n"
                                    "  Grand  >>\n"
                                    "  Grand  >>\n"
                                    "Generation 3     (2 descendants)\n"
                                    "  Great  >|\n"
                                    "  Great  >|\n"
                                    "Generation 4\nGeneration 5\nGeneration 6\nGeneration 7\nGeneration 8\n"
                                    "Generation 9\n"));
}

TEST_F(CliDescendants, ApostropheNamesNoOffspringAndLoops)
{
    const QString file = studFile();
    CliResult r = run({QStringLiteral("descendants"), file, QStringLiteral("O'Brien")});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.startsWith(QStringLiteral("Generation 1     (1 descendants)\n  Grand  >>\n"
                                                "Generation 2     (1 descendants)\n  Great  >|\nGeneration 3\n")));

    r = run({QStringLiteral("descendants"), file, QStringLiteral("Great")});
    ASSERT_EQ(r.code, 0);
    EXPECT_EQ(r.out, QStringLiteral("Generation 1\nGeneration 2\nGeneration 3\nGeneration 4\nGeneration 5\n"
                                    "Generation 6\nGeneration 7\nGeneration 8\nGeneration 9\n"));

    // Two animals each the other's sire: nine lists of one, the last marked though its children stay out.
    r = run({QStringLiteral("descendants"), file, QStringLiteral("Ping")});
    ASSERT_EQ(r.code, 0);
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 18);
    EXPECT_EQ(lines.at(16), QStringLiteral("Generation 9     (1 descendants)"));
    EXPECT_EQ(lines.at(17), QStringLiteral("  Pong  >>"));
}

TEST_F(CliDescendants, ANameWithoutARecordFails)
{
    const QString file = studFile();
    const CliResult r = run({QStringLiteral("descendants"), file, QStringLiteral("Dam")});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_TRUE(r.err.contains(QStringLiteral("No animal named \"Dam\" in ") + file)) << r.err.toStdString();

    EXPECT_EQ(run({QStringLiteral("descendants"), file}).code, 2);
}
