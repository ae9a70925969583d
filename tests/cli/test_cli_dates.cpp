// SPDX-License-Identifier: GPL-3.0-or-later
// The command line reads a file's dates as the window does: in the order of the file's own country.
#include "support/TestEnv.h"

#include "CliRunner.h"

TEST(CliDates, SqlStoresADateInTheOrderOfTheFilesCountry)
{
    TestEnv env;
    const struct {
        const char* country;
        const char* stored;
    } cases[] = {{"United States", "2020-02-03"}, {"United Kingdom", "2020-03-02"}, {"", "2020-03-02"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.country);
        const QString file = env.root() + QString::fromUtf8(c.country) + QStringLiteral("x.cav");
        ASSERT_EQ(RunTool({QStringLiteral("new"), file}).code, 0);
        for (const QString& sql : {QStringLiteral("UPDATE cavyuser SET fldCountry = '%1'").arg(c.country),
                                   QStringLiteral("INSERT INTO tree (name, DOB) VALUES ('Clover', '02/03/2020')")}) {
            const CliResult r = RunTool({QStringLiteral("sql"), file, sql});
            ASSERT_EQ(r.code, 0) << r.err.toStdString();
        }
        const CliResult r = RunTool({QStringLiteral("sql"), file, QStringLiteral("SELECT DOB FROM tree")});
        EXPECT_EQ(r.out, QStringLiteral("dob\n") + QString::fromUtf8(c.stored) + QLatin1Char('\n'));
    }
}
