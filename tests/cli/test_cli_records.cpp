// SPDX-License-Identifier: GPL-3.0-or-later
// The record commands of tessorin-cli: one animal field by field, add and edit with the form's checks,
// the search list and the cage list, the ancestor array and the descendants, and dates in the order of
// the file's own country.
#include "CliRunner.h"

#include <QDir>
#include <QFile>

namespace {

using CliRecords = CliTest;

TEST_F(CliRecords, AnimalPrintsEveryFieldInOrderThenTheAwards)
{
    const QString file = newFile(
        {"UPDATE cavyuser SET fldFather = 'Sire', fldMother = 'Dam', fldMale = 'Buck', fldFemale = 'Doe', "
         "fldCountry = 'Australia', fldPrefix = 'Ch,Grand Ch'",
         "INSERT INTO tree (name,sex,dob,ps,pd,cage,tag,breed,sold,datesold,notes) VALUES ('Grand Ch O$Brien','male',"
         "#11/23/2025#,'Pa$1','Ma$x','7','AB','Rex',-1,#03/01/2026#,'line one\r\nline two')"});
    const QString picture = home() + "/Documents/tessorin/my pics/Grand Ch O'Brien(2)[Show].jpg";
    QDir().mkpath(home() + "/Documents/tessorin/my pics");
    QFile(picture).open(QIODevice::WriteOnly);

    const CliResult r = run({"animal", file, "grand ch o'brien"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    QStringList fields = {"name", "storedName", "colour", "breed", "sex", "sexTerm", "dob", "notes", "ps",
                          "pd",   "cage",       "tag",    "deceased", "dateDeceased", "sold"};
    for (int i = 1; i <= 12; ++i)
        fields << QStringLiteral("customField%1").arg(i);
    fields << QStringList{"health", "journal", "callName", "id",     "age",    "title", "breeder",
                          "owner",  "leased",  "prefix",   "suffix", "coi",    "dateSold", "fullName"};
    for (const char* kind : {"picture%1", "pictureLabel%1"})
        for (int i = 0; i < 10; ++i)
            fields << QString::fromLatin1(kind).arg(i);
    fields << "awards";
    QStringList printed;
    for (const QString& line : r.out.split('\n', Qt::SkipEmptyParts))
        printed << line.section('\t', 0, 0);
    EXPECT_EQ(printed.mid(0, fields.size()), fields);
    EXPECT_EQ(r.out.section('\n', -2, -2), "Sex:   Buck\\rDOB:  23/11/2025\\rAge:  Sold at 14 weeks\\rBreed: Rex\\r"
                                           "Registration No: AB\\rCage No: 07\\rSire:  Pa$1\\rDam:  Ma'x\\r");
    const struct {
        const char* field;
        QString value;
    } values[] = {{"name", "Grand Ch O'Brien"},  {"storedName", "Grand Ch O$Brien"}, {"sexTerm", "Buck"},
                  {"notes", "line one\\r\\nline two"}, {"sold", "True"}, {"deceased", "False"}, {"id", "1"},
                  {"title", "Grand Ch"}, {"dateSold", "01/03/2026"}, {"picture2", picture}, {"pictureLabel2", "Show"}};
    for (const auto& v : values)
        EXPECT_EQ(value(r.out, v.field), v.value) << v.field;

    const CliResult none = run({"animal", file, "Nobody"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.err, "No animal named Nobody in the data file\n");
    EXPECT_EQ(none.out, "");
}

class CliAddEdit : public CliTest {
protected:
    // Founders with blank and "Unknown" parents, as generated and demo files hold them.
    void SetUp() override
    {
        file = newFile({"UPDATE cavyuser SET fldMale = 'Buck', fldFemale = 'Doe', fldAnimal = 'Rabbit', "
                        "fldCountry = 'Australia'",
                        "INSERT INTO tree (name,sex,ps,pd) VALUES ('Founder','female','','')",
                        "INSERT INTO tree (name,sex,ps,pd) VALUES ('Old','male','Unknown','Unknown')",
                        "INSERT INTO tree (name,sex,ps,pd) VALUES ('Kid','female','Old','Founder')",
                        "INSERT INTO weights (name,weight) VALUES ('Old','2')",
                        "INSERT INTO soldstock (Dam,Sire,Offspring,SoldTo) VALUES ('','','Founder','Jo')"});
    }
    QString file;
};

TEST_F(CliAddEdit, AddSavesOneRowAndTouchesNoOther)
{
    const CliResult r = run({"add", file, "--name", "Newbie", "--sex", "male", "--colour", "Fawn's", "--cage",
                             "Hutch A'B", "--dob", "02/03/2026", "--owner", "yes"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(QStringList({value(r.out, "colour"), value(r.out, "cage"), value(r.out, "sexTerm"),
                           value(r.out, "dob"), value(r.out, "owner")}),
              QStringList({"Fawn's", "Hutch A'B", "Buck", "02/03/2026", "True"}));
    EXPECT_EQ(rows(file, "SELECT name, ps, pd FROM tree ORDER BY id"),
              QStringList({"Founder\t\t", "Old\tUnknown\tUnknown", "Kid\tOld\tFounder", "Newbie\tUnknown\tUnknown"}));
    EXPECT_EQ(rows(file, "SELECT Dam, Sire, SoldTo FROM soldstock"), QStringList{"\t\tJo"});

    const struct {
        QStringList arguments;
        const char* err;
    } refused[] = {
        {{"--name", "Old", "--sex", "male"}, "A record already exists for this Rabbit\n"},
        {{"--name", "Ash", "--sex", "male", "--dob", "31/02/2026"},
         "You must enter the date of birth in date format  - ( dd/mm/yyyy ) or leave it blank\n"},
        {{"--name", "Ash/2", "--sex", "nobody"}, "Please choose your animal's sex.\n"},
    };
    for (const auto& c : refused) {
        const CliResult no = run(QStringList{"add", file} + c.arguments);
        EXPECT_EQ(no.code, 1) << c.err;
        EXPECT_EQ(no.err, c.err);
        EXPECT_EQ(no.out, "");
    }
    EXPECT_EQ(scalar(file, "SELECT Count(*) FROM tree"), "4");
}

TEST_F(CliAddEdit, ARenameReachesEveryTableAndASimilarRecordTakesNothing)
{
    CliResult r = run({"edit", file, "Old", "--rename", "Bramble", "--breed", "Rex"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(value(r.out, "breed"), "Rex");
    EXPECT_EQ(rows(file, "SELECT ps FROM tree WHERE name = 'Kid'"), QStringList{"Bramble"});
    EXPECT_EQ(rows(file, "SELECT name FROM weights"), QStringList{"Bramble"});
    EXPECT_EQ(rows(file, "SELECT Count(*) FROM tree WHERE ps = 'Unknown' OR pd = 'Unknown'"), QStringList{"1"});

    r = run({"edit", file, "Bramble", "--similar", "Copy"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(value(r.out, "breed"), "Rex");
    EXPECT_EQ(rows(file, "SELECT name FROM tree WHERE ps = 'Copy' OR pd = 'Copy'"), QStringList());
    EXPECT_EQ(rows(file, "SELECT name FROM weights"), QStringList{"Bramble"});

    r = run({"edit", file, "Nobody", "--breed", "Rex"});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.err, "No animal named Nobody in the data file\n");

    // Editing a sold animal keeps its buyer.
    ASSERT_EQ(run({"edit", file, "Founder", "--sold", "yes", "--datesold", "01/10/2026"}).code, 0);
    EXPECT_EQ(rows(file, "SELECT SoldTo, DateSold FROM soldstock"), QStringList{"Jo\t01/10/2026"});
    ASSERT_EQ(run({"edit", file, "Founder", "--colour", "Black"}).code, 0);
    EXPECT_EQ(rows(file, "SELECT SoldTo, DateSold, Colour FROM soldstock"), QStringList{"Jo\t01/10/2026\tBlack"});
}

TEST_F(CliRecords, SearchTitleAndCagesPrintWhatTheirWindowsList)
{
    const QString file = newFile({"INSERT INTO tree (name, sex, breed, owner, sold, deceased, callname) VALUES "
                                  "('Amber','female','Rex',-1,0,0,'Ambs')",
                                  "INSERT INTO tree (name, sex, breed, owner, sold, deceased, callname) VALUES "
                                  "('Basil','male','Dutch',0,-1,0,'')",
                                  "INSERT INTO tree (name, sex, breed, owner, sold, deceased, callname) VALUES "
                                  "('Dill','male','Rex',-1,0,0,'')",
                                  "INSERT INTO tree (name, sex, breed, owner, sold, deceased, callname) VALUES "
                                  "('O$Hara','male','Lop',-1,0,0,'Oh')",
                                  "INSERT INTO tree (name, sex, breed, owner, sold, deceased, callname) VALUES "
                                  "('Unknown','male','Unknown',-1,0,0,'')",
                                  "UPDATE cavyuser SET fldPrefix = 'CH,Grand Champion,Champion'"});
    const QString many = " results. Click to view.\\nDouble click to edit. Right click for options.\n";
    const QString one = "1 result. Click to view.\\nDouble click to edit. Right click for options.\n";
    const struct {
        QStringList args;
        QString out;
    } cases[] = {
        {{"My Current Stock"}, "Amber\nDill\nO'Hara\n3" + many},
        {{"Sold Stock"}, "Basil\n" + one},
        {{"Sold Stock", "--current"}, "No results found.\n"},
        {{"Rex", "--field1", "Breed", "--field2", "Sex", "--value2", "male"}, "Dill\n" + one},
        {{"All Records", "--field2", "Name", "--value2", "a", "--contains"}, "Amber\nBasil\nO'Hara\n3" + many},
        {{"Oh", "--field1", "callname"}, "O'Hara    [Oh]\n" + one},
        // An apostrophe in a value is searched for, not a break in the statement.
        {{"All Records", "--field2", "Name", "--value2", "O'H", "--contains"}, "O'Hara\n" + one},
    };
    for (const auto& c : cases) {
        const CliResult r = run(QStringList{"search", file} + c.args);
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        EXPECT_EQ(r.out, c.out) << c.args.join(' ').toStdString();
    }
    for (const QStringList& failing : {QStringList{""}, QStringList{"x", "--field1", "Bogus"}}) {
        const CliResult f = run(QStringList{"search", file} + failing);
        EXPECT_EQ(f.code, 1);
        EXPECT_EQ(f.out, "No results found.\n");
        EXPECT_TRUE(f.err.startsWith("The search failed; its error is the last line of ")) << f.err.toStdString();
    }
    EXPECT_EQ(TestEnv::readText(home() + "/.local/share/tessorin/Errors.txt").count('\n'), 2);

    EXPECT_EQ(run({"title", file, "grand champion Rosie"}).out, "Grand Champion\nRosie\n");
    EXPECT_EQ(run({"title", file, "CHESTNUT Rosie"}).out, "\nCHESTNUT Rosie\n");

    sql(file, "UPDATE tree SET cage = 'Hutch 2', tag = 'T-' & name, name = 'CH ' & name WHERE name = 'Dill'");
    const CliResult cages = run({"cages", file});
    EXPECT_EQ(cages.code, 0) << cages.err.toStdString();
    EXPECT_EQ(cages.out, "\tAmber\t\tFemale\tRex\n\tO'Hara\t\tMale\tLop\nHutch 2\tDill\tT-Dill\tMale\tRex\n");
}

// "position<TAB>name" lines, positions from 0.
QString treeLines(const QStringList& names)
{
    QString text;
    for (int i = 0; i < names.size(); ++i)
        text += QString::number(i) + '\t' + names.at(i) + '\n';
    return text;
}

TEST_F(CliRecords, TreePrintsEveryPositionToTheLimitWithStoredNames)
{
    const QString file = newFile({"INSERT INTO tree (name, ps, pd) VALUES ('Kit', 'O$Hara', 'Doe')",
                                  "INSERT INTO tree (name, ps, pd) VALUES ('O$Hara', 'Pa$1', 'unknown')",
                                  "INSERT INTO tree (name, ps, pd) VALUES ('Doe', '', 'Granny')",
                                  "INSERT INTO tree (name, ps, pd) VALUES ('Loop', 'Loop', 'Loop')",
                                  "INSERT INTO tree (name, ps, pd) VALUES ('Alone', '', '')"});
    QStringList kit(63);
    kit[0] = "Kit", kit[1] = "O$Hara", kit[2] = "Doe", kit[3] = "Pa$1", kit[4] = "unknown", kit[6] = "Granny";
    const struct {
        QStringList args;
        QString out;
    } cases[] = {
        {{"Kit"}, treeLines(kit)},
        {{"Loop", "--limit", "6"}, treeLines(QStringList(7, "Loop"))},
        {{"Loop", "--limit", "254"}, treeLines(QStringList(255, "Loop"))},
        {{"Alone", "--limit", "2"}, "0\tAlone\n1\t\n2\t\n"},
        // A name without a record is found by its stored form and printed as given.
        {{"O'Nobody", "--limit", "2"}, "0\tO'Nobody\n1\t\n2\t\n"},
    };
    for (const auto& c : cases) {
        const CliResult r = run(QStringList{"tree", file} + c.args);
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        EXPECT_EQ(r.out, c.out) << c.args.join(' ').toStdString();
    }
}

TEST_F(CliRecords, DescendantsPrintEachGenerationsTitleThenItsEntries)
{
    QStringList inserts;
    for (const char* row : {"'Sire', 'male', 'Unknown', ''", "'Kit A', 'female', 'Sire', 'Dam'",
                            "'O$Brien', 'male', 'sire', 'Dam'", "'Grand', 'male', 'O$Brien', 'Kit A'",
                            "'Great', 'female', 'Grand', 'Unknown'", "'Ping', 'male', 'Pong', ''",
                            "'Pong', 'male', 'Ping', ''"})
        inserts << QStringLiteral("INSERT INTO tree (name, sex, ps, pd) VALUES (%1)").arg(QLatin1String(row));
    const QString file = newFile(inserts);
    const QString empty = "Generation 4\nGeneration 5\nGeneration 6\nGeneration 7\nGeneration 8\nGeneration 9\n";
    const struct {
        const char* name;
        QString out;
    } cases[] = {
        {"Sire", "Generation 1     (2 descendants)\n  Kit A  >>\n  O'Brien  >>\nGeneration 2     (2 descendants)\n"
                 "  Grand  >>\n  Grand  >>\nGeneration 3     (2 descendants)\n  Great  >|\n  Great  >|\n" + empty},
        {"O'Brien", "Generation 1     (1 descendants)\n  Grand  >>\nGeneration 2     (1 descendants)\n  Great  >|\n"
                    "Generation 3\n" + empty},
        {"Great", "Generation 1\nGeneration 2\nGeneration 3\n" + empty},
    };
    for (const auto& c : cases) {
        const CliResult r = run({"descendants", file, c.name});
        EXPECT_EQ(r.code, 0) << r.err.toStdString();
        EXPECT_EQ(r.out, c.out) << c.name;
    }
    // Two animals each the other's sire: nine lists of one, the last marked though its children stay out.
    const QStringList loop = run({"descendants", file, "Ping"}).out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(loop.size(), 18);
    EXPECT_EQ(loop.mid(16), QStringList({"Generation 9     (1 descendants)", "  Pong  >>"}));

    const CliResult none = run({"descendants", file, "Dam"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_TRUE(none.err.contains("No animal named \"Dam\" in " + file)) << none.err.toStdString();
}

TEST_F(CliRecords, SqlStoresADateInTheOrderOfTheFilesCountry)
{
    const struct {
        const char* country;
        const char* stored;
    } cases[] = {{"United States", "2020-02-03"}, {"United Kingdom", "2020-03-02"}, {"", "2020-03-02"}};
    for (const auto& c : cases) {
        const QString file = newFile({QStringLiteral("UPDATE cavyuser SET fldCountry = '%1'").arg(c.country),
                                      "INSERT INTO tree (name, DOB) VALUES ('Clover', '02/03/2020')"},
                                     QString::fromUtf8(c.country) + "x.cav");
        EXPECT_EQ(scalar(file, "SELECT DOB FROM tree"), c.stored) << c.country;
    }
}

} // namespace
