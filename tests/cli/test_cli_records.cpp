// SPDX-License-Identifier: GPL-3.0-or-later
// `tessorin-cli add` and `edit`: the add form's checks and save without its window, on a file that holds
// founders with blank and "Unknown" parents, as generated and demo files do.
#include "support/TestEnv.h"

#include "CliRunner.h"

namespace {

class CliRecords : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(run({"new", file}).code, 0);
        for (const char* sql : {"UPDATE cavyuser SET fldMale = 'Buck', fldFemale = 'Doe', fldAnimal = 'Rabbit', "
                                "fldCountry = 'Australia'",
                                "INSERT INTO tree (name,sex,ps,pd) VALUES ('Founder','female','','')",
                                "INSERT INTO tree (name,sex,ps,pd) VALUES ('Old','male','Unknown','Unknown')",
                                "INSERT INTO tree (name,sex,ps,pd) VALUES ('Kid','female','Old','Founder')",
                                "INSERT INTO weights (name,weight) VALUES ('Old','2')",
                                "INSERT INTO soldstock (Dam,Sire,Offspring,SoldTo) VALUES ('','','Founder','Jo')"})
            ASSERT_EQ(run({"sql", file, sql}).code, 0) << sql;
    }
    CliResult run(const QStringList& arguments) { return RunTool(arguments, env.root() + QStringLiteral("home")); }
    QStringList rows(const QString& sql)
    {
        QStringList lines = run({"sql", file, sql}).out.split('\n', Qt::SkipEmptyParts);
        lines.removeFirst();
        return lines;
    }
    static QString value(const QString& out, const QString& field)
    {
        for (const QString& line : out.split('\n'))
            if (line.section('\t', 0, 0) == field)
                return line.section('\t', 1);
        return QStringLiteral("<missing>");
    }

    TestEnv env;
    QString file = env.root() + QStringLiteral("stud.cav");
};

TEST_F(CliRecords, AddSavesOneRowAndTouchesNoOther)
{
    const CliResult r = run({"add", file, "--name", "Newbie", "--sex", "male", "--colour", "Fawn's", "--cage",
                             "Hutch A'B", "--dob", "02/03/2026", "--owner", "yes"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(value(r.out, "colour"), "Fawn's");
    EXPECT_EQ(value(r.out, "cage"), "Hutch A'B");
    EXPECT_EQ(value(r.out, "sexTerm"), "Buck");
    EXPECT_EQ(value(r.out, "dob"), "02/03/2026");
    EXPECT_EQ(value(r.out, "owner"), "True");
    EXPECT_EQ(rows("SELECT name, ps, pd FROM tree ORDER BY id"),
              QStringList({"Founder\t\t", "Old\tUnknown\tUnknown", "Kid\tOld\tFounder", "Newbie\tUnknown\tUnknown"}));
    EXPECT_EQ(rows("SELECT Dam, Sire, SoldTo FROM soldstock"), QStringList{"\t\tJo"});
}

TEST_F(CliRecords, RefusedRecordsGiveTheFormsMessagesAndWriteNothing)
{
    const struct {
        QStringList arguments;
        const char* err;
        int code;
    } cases[] = {
        {{"--name", "Old", "--sex", "male"}, "A record already exists for this Rabbit\n", 1},
        {{"--name", "Ash", "--sex", "male", "--dob", "31/02/2026"},
         "You must enter the date of birth in date format  - ( dd/mm/yyyy ) or leave it blank\n", 1},
        {{"--name", "Ash/2", "--sex", "nobody"}, "Please choose your animal's sex.\n", 1},
        {{"--name", "Ash", "--sex", "male", "--sold", "maybe"}, "--sold takes yes or no, not \"maybe\"\n", 2},
    };
    for (const auto& c : cases) {
        const CliResult r = run(QStringList{"add", file} + c.arguments);
        EXPECT_EQ(r.code, c.code) << c.err;
        EXPECT_EQ(r.err, c.err);
        EXPECT_TRUE(r.out.isEmpty());
    }
    EXPECT_EQ(rows("SELECT Count(*) FROM tree"), QStringList{"3"});
}

TEST_F(CliRecords, ARenameReachesEveryTableAndASimilarRecordTakesNothing)
{
    CliResult r = run({"edit", file, "Old", "--rename", "Bramble", "--breed", "Rex"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(value(r.out, "breed"), "Rex");
    EXPECT_EQ(rows("SELECT ps FROM tree WHERE name = 'Kid'"), QStringList{"Bramble"});
    EXPECT_EQ(rows("SELECT name FROM weights"), QStringList{"Bramble"});
    EXPECT_EQ(rows("SELECT Count(*) FROM tree WHERE ps = 'Unknown' OR pd = 'Unknown'"), QStringList{"1"});

    r = run({"edit", file, "Bramble", "--similar", "Copy"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(value(r.out, "breed"), "Rex");
    EXPECT_EQ(rows("SELECT name FROM tree WHERE ps = 'Copy' OR pd = 'Copy'"), QStringList());
    EXPECT_EQ(rows("SELECT name FROM weights"), QStringList{"Bramble"});

    r = run({"edit", file, "Nobody", "--breed", "Rex"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err, "No animal named Nobody in the data file\n");
}

TEST_F(CliRecords, EditingASoldAnimalKeepsItsBuyer)
{
    ASSERT_EQ(run({"edit", file, "Founder", "--sold", "yes", "--datesold", "01/10/2026"}).code, 0);
    EXPECT_EQ(rows("SELECT SoldTo, DateSold FROM soldstock"), QStringList{"Jo\t01/10/2026"});
    ASSERT_EQ(run({"edit", file, "Founder", "--colour", "Black"}).code, 0);
    EXPECT_EQ(rows("SELECT SoldTo, DateSold, Colour FROM soldstock"), QStringList{"Jo\t01/10/2026\tBlack"});
}

} // namespace
