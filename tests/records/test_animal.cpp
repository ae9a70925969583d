// SPDX-License-Identifier: GPL-3.0-or-later
// The animal record against a real data file: what a load fills in, what save and the renames leave
// in the tables, the age words, the summary text and the picture slots.
#include "support/TestEnv.h"

#include "records/Animal.h"
#include "base/Clock.h"
#include "base/Dates.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/RecentList.h"
#include "session/globals.h"
#include "store/Connection.h"
#include "store/DataFile.h"

#include <QDir>
#include <QFile>

namespace {

class AnimalTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(CreateDataFile(QStringLiteral("Rabbits.cav"), QString()));
        ASSERT_TRUE(OpenDataFile(env.dataFolder() + QStringLiteral("Rabbits.cav")));
        gUser.Father = QStringLiteral("Sire");
        gUser.Mother = QStringLiteral("Dam");
        gUser.Male = QStringLiteral("Buck");
        gUser.Female = QStringLiteral("Doe");
        gUser.Country = QStringLiteral("Australia");
        SetRegionalDateOrder(DateOrder::DayFirst);
        gRecentNames.fill(QString());
        env.ui().clear();
    }
    void TearDown() override
    {
        CloseDatabase();
        gRecentNames.fill(QString());
    }
    static void exec(const QString& sql) { gDatabase.Execute(sql); }
    static QStringList column(const QString& sql)
    {
        QStringList values;
        Recordset rs = gDatabase.OpenRecordset(sql);
        for (; !rs.Eof(); rs.MoveNext())
            values << (rs.Fields(0).isValid() ? rs.Fields(0).toString() : QStringLiteral("<null>"));
        return values;
    }
    static QString dayText(int daysBeforeToday) { return FormatShortDate(Today().addDays(-daysBeforeToday)); }
    static Animal loaded(const QString& name)
    {
        Animal a;
        QString n = name;
        a.SetCurrentAnimal(n);
        return a;
    }
    QString picturesFolder() const { return env.dataFolder() + QStringLiteral("my pics/"); }
    void touchPicture(const QString& file)
    {
        QDir().mkpath(picturesFolder());
        QFile f(picturesFolder() + file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    TestEnv env;
};

// --- age -----------------------------------------------------------------------------------------

TEST_F(AnimalTest, AgeWordsAtEveryBoundary)
{
    const QList<QPair<int, QString>> cases = {
        {0, "Unknown"},    {1, "1 day"},     {2, "2 days"},     {7, "7 days"},
        {8, "1 week"},     {13, "1 week"},   {14, "2 weeks"},   {120, "17 weeks"},
        {121, "4 months"}, {365, "12 months"}, {366, "1 year 0 months"}, {395, "1 year 1 months"},
        {730, "2 years 0 months"}, {1000, "2 years 9 months"}, {-5, "-5 days"},
        {32767, "89 years 9 months"}, {32768, ""}};
    for (const auto& [days, expected] : cases)
        EXPECT_EQ(Animal::AgeText(dayText(days), false, QString(), false, QString()), expected) << days;
}

TEST_F(AnimalTest, AgeOfTheDeadAndTheSold)
{
    const QString born = dayText(400);
    EXPECT_EQ(Animal::AgeText(QStringLiteral("Unknown"), true, QStringLiteral("Unknown"), false, QString()),
              "Unknown");
    EXPECT_EQ(Animal::AgeText(born, true, QStringLiteral("Unknown"), false, QString()), "Died at Unknown");
    EXPECT_EQ(Animal::AgeText(born, true, dayText(330), true, dayText(300)), "Died at 10 weeks");
    EXPECT_EQ(Animal::AgeText(born, false, QString(), true, dayText(300)), "Sold at 14 weeks");
    EXPECT_EQ(Animal::AgeText(born, false, QString(), true, QStringLiteral("Unknown")), "Sold at Unknown");
    EXPECT_EQ(Animal::AgeText(QStringLiteral("soon"), false, QString(), false, QString()), "");
    EXPECT_EQ(Animal::AgeText(born, true, QStringLiteral("later"), false, QString()), "");
}

// --- load ----------------------------------------------------------------------------------------

TEST_F(AnimalTest, LoadFillsEveryFieldAndTheDerivedTexts)
{
    gUser.Prefix = QStringLiteral("Ch,Grand Ch");
    gUser.CustomName[1] = QStringLiteral("Eyes");
    exec("INSERT INTO tree (name,colour,breed,sex,dob,notes,ps,pd,cage,tag,deceased,dateDeceased,sold,datesold,"
         "customField2,health,journal,callname,breeder,owner,leased,prefix,suffix,coi) VALUES ('Grand Ch O$Brien',"
         "'Black$s','Rex','FEMALE',#11/23/2025#,'a$b','Sire$1','Dam$x','7','T$','0','01/01/1925',0,Null,'blue',"
         "'h$','j$','Obi',-1,-1,0,'Best$','Jr','3.5')");
    QString name = QStringLiteral("grand ch o'brien");
    Animal a;
    a.SetCurrentAnimal(name);
    EXPECT_EQ(name, "Grand Ch O'Brien");
    EXPECT_EQ(a.name, "Grand Ch O'Brien");
    EXPECT_EQ(a.storedName, "Grand Ch O$Brien");
    EXPECT_EQ(a.colour, "Black's");
    EXPECT_EQ(a.breed, "Rex");
    EXPECT_EQ(a.sex, "FEMALE");
    EXPECT_EQ(a.sexTerm, "Doe");
    EXPECT_EQ(a.dob, "23/11/2025");
    EXPECT_EQ(a.notes, "a'b");
    EXPECT_EQ(a.ps, "Sire$1");
    EXPECT_EQ(a.pd, "Dam'x");
    EXPECT_EQ(a.cage, "07");
    EXPECT_EQ(a.tag, "T'");
    EXPECT_FALSE(a.deceased);
    EXPECT_EQ(a.dateDeceased, "Unknown");
    EXPECT_FALSE(a.sold);
    EXPECT_EQ(a.dateSold, "Unknown");
    EXPECT_EQ(a.customField[1], "blue");
    EXPECT_EQ(a.health, "h'");
    EXPECT_EQ(a.journal, "j'");
    EXPECT_EQ(a.callName, "Obi");
    EXPECT_GT(a.id, 0);
    EXPECT_EQ(a.age, "12 months");
    EXPECT_EQ(a.title, "Grand Ch");
    EXPECT_TRUE(a.breeder);
    EXPECT_TRUE(a.owner);
    EXPECT_FALSE(a.leased);
    EXPECT_EQ(a.prefix, "Best'");
    EXPECT_EQ(a.suffix, "Jr");
    EXPECT_EQ(a.coi, "3.5");
    EXPECT_EQ(a.fullName, "Best' Grand Ch O'Brien Jr");
    EXPECT_TRUE(env.ui().calls().isEmpty());
}

TEST_F(AnimalTest, CageRuleAndSexWords)
{
    EXPECT_EQ(Animal::CageText("7"), "07");
    EXPECT_EQ(Animal::CageText("12"), "12");
    EXPECT_EQ(Animal::CageText("A"), "A");
    EXPECT_EQ(Animal::CageText(""), "");
    exec("INSERT INTO tree (name,sex,dob) VALUES ('Bo','Male',#01/01/1925#)");
    exec("INSERT INTO tree (name,sex,dob) VALUES ('Cy','whatever',#06/01/1925#)");
    EXPECT_EQ(loaded("Bo").sexTerm, "Buck");
    EXPECT_EQ(loaded("Bo").dob, "Unknown");
    EXPECT_EQ(loaded("Bo").age, "Unknown");
    EXPECT_EQ(loaded("Cy").sexTerm, "undefined");
    EXPECT_EQ(loaded("Cy").dob, "Unknown"); // any day of 1925 reads as unknown
}

TEST_F(AnimalTest, AMissingNameKeepsTheOldAnimalAndAnEmptyNameDoesNothing)
{
    exec("INSERT INTO tree (name,breed) VALUES ('Ash','Rex')");
    Animal a = loaded("Ash");
    QString gone = QStringLiteral("Gone");
    a.SetCurrentAnimal(gone);
    EXPECT_EQ(gone, "Gone");
    EXPECT_EQ(a.name, "Ash");
    EXPECT_EQ(a.breed, "Rex");
    QString empty;
    a.SetCurrentAnimal(empty);
    EXPECT_EQ(a.name, "Ash");
}

TEST_F(AnimalTest, TwoRowsOfOneNameShowTheBoxAndLoadTheLast)
{
    exec("INSERT INTO tree (name,breed) VALUES ('Twin','First')");
    exec("INSERT INTO tree (name,breed) VALUES ('Twin','Second')");
    const Animal a = loaded("Twin");
    EXPECT_EQ(a.breed, "Second");
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_EQ(env.ui().calls().first().title, "Duplicate record error");
    EXPECT_EQ(env.ui().calls().first().text,
              "The text you are searching for is contained in 2 records. Please try searching with titles for an "
              "exact match. \nIf you think you may have duplicate records, click 'Database > Fix Data' from the top "
              "menu to find duplicates before continuing.");
}

TEST_F(AnimalTest, NamesWithApostrophesAndDollarsRoundTrip)
{
    const QStringList names = {"O'Brien", "Rex$1", "Max$x", "Tail$"};
    const QStringList stored = {"O$Brien", "Rex$1", "Max$x", "Tail$"};
    const QStringList shown = {"O'Brien", "Rex$1", "Max'x", "Tail'"};
    for (int i = 0; i < names.size(); ++i) {
        Animal a;
        a.name = names.at(i);
        ASSERT_TRUE(a.save(false, QString(), true));
        EXPECT_EQ(column("SELECT name FROM tree WHERE id = (SELECT Max(id) FROM tree)"), QStringList{stored.at(i)});
        EXPECT_EQ(loaded(shown.at(i)).storedName, stored.at(i));
        EXPECT_EQ(loaded(shown.at(i)).name, shown.at(i));
    }
}

// --- save ----------------------------------------------------------------------------------------

TEST_F(AnimalTest, InsertWritesTheRowWithDefaultsAndAddsToTheRecentList)
{
    Animal a;
    a.name = QStringLiteral("Ash");
    a.sex = QStringLiteral("male");
    a.dob = QStringLiteral("20/11/2025");
    a.ps = QStringLiteral("Pa'pa");
    a.cage = QStringLiteral("3");
    a.tag = QStringLiteral("T'1");
    a.customField[11] = QStringLiteral("x'y");
    a.callName = QStringLiteral("A'sh");
    a.breeder = true;
    a.leased = true;
    a.dateDeceased = kUnknownDate;
    a.dateSold = kUnknownDate;
    a.prefix = QStringLiteral("Ch");
    ASSERT_TRUE(a.save(false, QString(), true));
    Recordset rs = gDatabase.OpenRecordset("SELECT * FROM tree WHERE name = 'Ash'");
    ASSERT_FALSE(rs.Eof());
    EXPECT_EQ(rs.Fields("colour").toString(), "Unknown");
    EXPECT_EQ(rs.Fields("breed").toString(), "Unknown");
    EXPECT_EQ(rs.Fields("ps").toString(), "Pa$pa");
    EXPECT_EQ(rs.Fields("pd").toString(), "Unknown");
    EXPECT_EQ(ToIsoDate(rs.Fields("dob")), "2025-11-20");
    EXPECT_EQ(rs.Fields("cage").toString(), "3");
    EXPECT_EQ(rs.Fields("tag").toString(), "T$1");
    EXPECT_EQ(rs.Fields("customField12").toString(), "x$y");
    EXPECT_EQ(rs.Fields("callname").toString(), "A$sh");
    EXPECT_EQ(rs.Fields("breeder").toDouble(), -1);
    EXPECT_EQ(rs.Fields("owner").toDouble(), 0);
    EXPECT_EQ(rs.Fields("leased").toDouble(), -1);
    EXPECT_EQ(rs.Fields("prefix").toString(), "Ch");
    EXPECT_EQ(gRecentNames[0], "Ash");
    EXPECT_EQ(column("SELECT Count(*) FROM soldstock"), QStringList{"0"});
}

TEST_F(AnimalTest, UpdateRenamesTheRowItsChildrenAndTheRecentEntry)
{
    exec("INSERT INTO tree (name,ps,pd,notes) VALUES ('Old$Boy','Unknown','Unknown','kept')");
    exec("INSERT INTO tree (name,ps,pd) VALUES ('Kid1','Old$Boy','Unknown')");
    exec("INSERT INTO tree (name,ps,pd) VALUES ('Kid2','Old$Boy','Old$Boy')");
    AddRecent(QStringLiteral("Old'Boy"));
    Animal a = loaded("Old'Boy");
    a.name = QStringLiteral("New'Boy");
    ASSERT_TRUE(a.save(true, QStringLiteral("Old'Boy"), true));
    EXPECT_EQ(column("SELECT name FROM tree ORDER BY id"), QStringList({"New$Boy", "Kid1", "Kid2"}));
    EXPECT_EQ(column("SELECT ps FROM tree WHERE name LIKE 'Kid*' ORDER BY id"), QStringList({"New$Boy", "New$Boy"}));
    EXPECT_EQ(column("SELECT pd FROM tree WHERE name LIKE 'Kid*' ORDER BY id"), QStringList({"Unknown", "New$Boy"}));
    EXPECT_EQ(column("SELECT notes FROM tree WHERE name = 'New$Boy'"), QStringList{"kept"});
    EXPECT_EQ(gRecentNames[0], "New'Boy");
    EXPECT_TRUE(gRecentNames[1].isEmpty());

    // The same name again changes nothing.
    ASSERT_TRUE(a.save(true, QStringLiteral("New'Boy"), true));
    EXPECT_EQ(column("SELECT ps FROM tree WHERE name LIKE 'Kid*' ORDER BY id"), QStringList({"New$Boy", "New$Boy"}));
}

TEST_F(AnimalTest, AFailedStatementSaysSoAndRunsNoLaterStep)
{
    Animal a;
    a.name = QStringLiteral("Ash");
    sqlite3_exec(gDatabase.connection()->db(),
                 "CREATE TRIGGER tessorin_refuse BEFORE INSERT ON tree BEGIN SELECT RAISE(ABORT, 'refused'); END",
                 nullptr, nullptr, nullptr);
    EXPECT_FALSE(a.save(false, QString(), true));
    ASSERT_EQ(env.ui().calls().size(), 1);
    const auto& call = env.ui().calls().first();
    EXPECT_EQ(call.title, "Error");
    EXPECT_TRUE(call.text.startsWith("Record failed to save - Ash\nError Number: 3")) << call.text.toStdString();
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).contains("Save Animal Error 3"));
    EXPECT_TRUE(gRecentNames[0].isEmpty());
    EXPECT_EQ(column("SELECT Count(*) FROM tree"), QStringList{"0"});

    env.ui().clear();
    EXPECT_FALSE(a.save(false, QString(), false));
    EXPECT_TRUE(env.ui().calls().isEmpty());
}

TEST_F(AnimalTest, ASoldAnimalKeepsOneSoldStockRowWithTheBuyerBlanked)
{
    Animal a;
    a.name = QStringLiteral("O'Sold");
    a.ps = QStringLiteral("S'1");
    a.pd = QStringLiteral("D");
    a.dob = QStringLiteral("01/02/2025");
    a.breed = QStringLiteral("Rex");
    a.sold = true;
    a.dateSold = QStringLiteral("03/04/2026");
    a.dateDeceased = kUnknownDate;
    ASSERT_TRUE(a.save(false, QString(), true));
    EXPECT_EQ(column("SELECT Dam & '|' & Sire & '|' & Offspring & '|' & Breed & '|' & Colour & '|' & SoldTo & '|' "
                     "& DateSold FROM soldstock"),
              QStringList{"D|S$1|O$Sold|Rex|Unknown|" + QStringLiteral(" ") + "|03/04/2026"});
    // An edit keeps the buyer and the sale's own date unless the date was changed here.
    exec("UPDATE soldstock SET SoldTo = 'Jo', DateSold = #05/06/2026#");
    a = loaded("O'Sold");
    a.breed = QStringLiteral("Lop");
    ASSERT_TRUE(a.save(true, a.name, true));
    EXPECT_EQ(column("SELECT Breed & '|' & SoldTo & '|' & DateSold FROM soldstock"), QStringList{"Lop|Jo|06/05/2026"});
    a.dateSold = QStringLiteral("07/06/2026");
    ASSERT_TRUE(a.save(true, a.name, true));
    EXPECT_EQ(column("SELECT SoldTo & '|' & DateSold FROM soldstock"), QStringList{"Jo|07/06/2026"});

    a.sold = false; // un-ticking sold removes nothing
    ASSERT_TRUE(a.save(true, a.name, true));
    EXPECT_EQ(column("SELECT Count(*) FROM soldstock"), QStringList{"1"});
    EXPECT_EQ(column("SELECT sold FROM tree"), QStringList{"0"});
}

// --- the cascade of a rename ---------------------------------------------------------------------

TEST_F(AnimalTest, RenameReachesEveryTableThatNamesTheAnimal)
{
    exec("INSERT INTO tree (name,ps,pd) VALUES ('Kid','Old$1','Old$1')");
    exec("INSERT INTO weights (name,weight) VALUES ('Old$1','2')");
    exec("INSERT INTO expenditure (name,details) VALUES ('Old$1','Old$1 feed')");
    exec("INSERT INTO soldstock (Dam,Sire,Offspring) VALUES ('Old$1','Old$1','Old$1')");
    exec("INSERT INTO Breeding (Boar,Sow) VALUES ('Old$1','Old$1')");
    exec("INSERT INTO shows (name,show) VALUES ('Old$1','Royal')");
    exec("INSERT INTO vaccinations (duedate,name,vaccination,done) VALUES (#12/25/2026#,'Old$1','RHD','N')");
    exec("INSERT INTO weights (name,weight) VALUES ('Other','3')");
    ASSERT_TRUE(RenameInAllTables(QStringLiteral("Old$1"), QStringLiteral("It's new")));
    const QString n = QStringLiteral("It$s new");
    EXPECT_EQ(column("SELECT ps & '|' & pd FROM tree"), QStringList{n + "|" + n});
    EXPECT_EQ(column("SELECT name FROM weights ORDER BY id"), QStringList({n, "Other"}));
    EXPECT_EQ(column("SELECT name & '|' & details FROM expenditure"), QStringList{n + "|Old$1 feed"});
    EXPECT_EQ(column("SELECT Dam & '|' & Sire & '|' & Offspring FROM soldstock"), QStringList{n + "|" + n + "|" + n});
    EXPECT_EQ(column("SELECT Boar & '|' & Sow FROM Breeding"), QStringList{n + "|" + n});
    EXPECT_EQ(column("SELECT name FROM shows"), QStringList{n});
    EXPECT_EQ(column("SELECT name FROM vaccinations"), QStringList{n});
}

TEST_F(AnimalTest, OnlyARealRenameTouchesOtherRows)
{
    // Founders stored with '' or "Unknown" parents, as generated and imported files have them.
    exec("INSERT INTO tree (name,ps,pd) VALUES ('Founder','','Unknown')");
    exec("INSERT INTO soldstock (Dam,Sire,Offspring) VALUES ('','Unknown','Founder')");
    const struct {
        const char* oldName;
        const char* newName;
        bool real;
    } cases[] = {{"", "Newbie", false},     {"  ", "Newbie", false}, {"Unknown", "Newbie", false},
                 {"unknown", "Newbie", false}, {"Same", "Same", false}, {"Old", "New", true}, {"bella", "Bella", true}};
    for (const auto& c : cases) {
        EXPECT_EQ(IsRealRename(c.oldName, c.newName), c.real) << c.oldName << " -> " << c.newName;
        if (c.real)
            continue;
        ASSERT_TRUE(RenameInAllTables(c.oldName, c.newName));
        Animal a;
        a.name = c.newName;
        a.RenameAnimal(c.oldName);
        EXPECT_EQ(column("SELECT ps & '|' & pd FROM tree"), QStringList{"|Unknown"}) << c.oldName;
        EXPECT_EQ(column("SELECT Dam & '|' & Sire FROM soldstock"), QStringList{"|Unknown"}) << c.oldName;
    }
}

// The texts the record once wrote unencoded; the others are covered by the insert above.
TEST_F(AnimalTest, ApostrophesInTheOnceRawTextsAreSavedAndReadBack)
{
    Animal a;
    a.name = QStringLiteral("O'Hara");
    a.colour = QStringLiteral("Fawn's");
    a.breed = QStringLiteral("Rex'd");
    a.cage = QStringLiteral("Hutch A'1"); // a dollar before a digit stays a dollar when shown
    a.prefix = QStringLiteral("Gr'Ch");
    a.suffix = QStringLiteral("It's");
    a.sex = QStringLiteral("female");
    a.dob = a.dateDeceased = a.dateSold = kUnknownDate;
    ASSERT_TRUE(a.save(false, QString(), true));
    a.breed = QStringLiteral("Lop's");
    ASSERT_TRUE(a.save(true, a.name, true));
    EXPECT_TRUE(env.ui().calls().isEmpty());
    const Animal back = loaded("O'Hara");
    EXPECT_EQ(QStringList({back.colour, back.breed, back.cage, back.prefix, back.suffix}),
              QStringList({"Fawn's", "Lop's", "Hutch A$1", "Gr'Ch", "It's"}));
    EXPECT_EQ(column("SELECT Cage FROM tree"), QStringList{"Hutch A$1"});
}

// --- single columns and delete -------------------------------------------------------------------

TEST_F(AnimalTest, UpdateFieldAndSaveHealthWriteOneColumnAndReportFailures)
{
    exec("INSERT INTO tree (name) VALUES ('O$Neil')");
    Animal a = loaded("O'Neil");
    a.updateField(QStringLiteral("Notes"), QStringLiteral("won't bite"));
    a.SaveHealthOrJournal(QStringLiteral("Health"), QStringLiteral("ear's fine"));
    EXPECT_EQ(column("SELECT notes & '|' & health FROM tree"), QStringList{"won$t bite|ear$s fine"});
    EXPECT_TRUE(env.ui().calls().isEmpty());

    a.updateField(QStringLiteral("Nonsense"), QStringLiteral("x"));
    ASSERT_EQ(env.ui().calls().size(), 1);
    EXPECT_TRUE(env.ui().calls().at(0).text.startsWith("Nonsense record failed to save\n"));
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).contains("Update Field Error "));

    a.SaveHealthOrJournal(QStringLiteral("Nonsense"), QStringLiteral("x"));
    ASSERT_EQ(env.ui().calls().size(), 2);
    EXPECT_EQ(env.ui().calls().at(1).title, "Error");
    EXPECT_TRUE(env.ui().calls().at(1).text.startsWith("Record failed to save - O'Neil\nError Number: "));
    EXPECT_TRUE(TestEnv::readText(ErrorLogPath()).contains("Save Nonsense Error "));
}

TEST_F(AnimalTest, DeleteRemovesTheRowLogsItAndOffersEachPicture)
{
    exec("INSERT INTO tree (name) VALUES ('Ash')");
    exec("INSERT INTO weights (name,weight) VALUES ('Ash','2')");
    touchPicture("Ash(0)[Main].jpg");
    touchPicture("ash(1).JPG");
    touchPicture("Ashley(0).jpg");
    touchPicture("Ash.jpg");
    Animal a = loaded("Ash");
    env.ui().queueAnswer(Ui::Answer::Yes);
    env.ui().queueAnswer(Ui::Answer::No);
    a.Delete();
    EXPECT_EQ(column("SELECT Count(*) FROM tree"), QStringList{"0"});
    EXPECT_EQ(column("SELECT Count(*) FROM weights"), QStringList{"1"});
    EXPECT_TRUE(TestEnv::readText(SaveLogPath()).contains("Deleted: Ash"));
    ASSERT_EQ(env.ui().calls().size(), 2);
    EXPECT_EQ(env.ui().calls().at(0).title, "Delete Picture");
    EXPECT_EQ(env.ui().calls().at(0).text,
              "Do you want to delete the picture Ash(0)[Main].jpg from the Tessorin 'My Pics' folder?\n"
              "This won't affect your original source copy of the picture.");
    EXPECT_FALSE(QFile::exists(picturesFolder() + "Ash(0)[Main].jpg"));
    EXPECT_TRUE(QFile::exists(picturesFolder() + "ash(1).JPG"));
    EXPECT_TRUE(QFile::exists(picturesFolder() + "Ashley(0).jpg"));
}

// --- pictures ------------------------------------------------------------------------------------

TEST_F(AnimalTest, PictureSlotsComeFromTheFolderWithTheirLabels)
{
    exec("INSERT INTO tree (name) VALUES ('Rex')");
    touchPicture("Rex(0)[Best in show].jpg");
    touchPicture("Rex(0)[zz later].jpg");
    touchPicture("rex(3).JPG");
    touchPicture("Rexy(1).jpg");
    touchPicture("Rex(5).png");
    const Animal a = loaded("Rex");
    EXPECT_EQ(a.picture[0], picturesFolder() + "Rex(0)[Best in show].jpg");
    EXPECT_EQ(a.pictureLabel[0], "Best in show");
    EXPECT_EQ(a.picture[1], "");
    EXPECT_EQ(a.picture[3], picturesFolder() + "rex(3).JPG");
    EXPECT_EQ(a.pictureLabel[3], "");
    EXPECT_EQ(a.picture[5], "");
    EXPECT_EQ(a.getPictureFileName("REXY"), picturesFolder() + "Rexy(1).jpg");
    EXPECT_EQ(a.getPictureFileName("Nobody"), "");
    EXPECT_EQ(Animal::getPictureLabel("/a/b/x(0)[one].jpg"), "one");
    EXPECT_EQ(Animal::getPictureLabel("/a[b]/x(0)[one].jpg"), "b");
    EXPECT_EQ(Animal::getPictureLabel("x(0).jpg"), "");
}

// --- summary and titles --------------------------------------------------------------------------

TEST_F(AnimalTest, AwardsTextLineByLine)
{
    gUser.CustomName[0] = QStringLiteral("Eyes");
    exec("INSERT INTO tree (name,sex,dob,breed,colour,ps,pd,cage,tag,deceased,dateDeceased,customField1) VALUES "
         "('Ash','male',#11/20/2025#,'Rex','Black','Pa$1','Ma$x','4','AB',-1,'23/11/2026','blue')");
    Animal a = loaded("Ash");
    EXPECT_EQ(a.Get_Awards(false), "Sex:   Buck\rDOB:  20/11/2025\rAge:  Died at 1 year 0 months (Deceased) \r"
                                   "Breed: Rex\rColour:  Black\rRegistration No: AB\rCage No: 04\r"
                                   "Sire:  Pa$1\rDam:  Ma'x\rEyes: blue\r");
    EXPECT_EQ(a.Get_Awards(true), "Sex:   Buck\rDOB:  20/11/2025\rAge:  Died at 1 year 0 months (Deceased) \r"
                                  "Breed: Rex\rColour:  Black\rRegistration No: AB\rCage No: 04\rEyes: blue");
    gUser.Country = QStringLiteral("United States");
    a.tag = QStringLiteral("A");
    a.customField[0].clear();
    EXPECT_EQ(a.Get_Awards(true), "Sex:   Buck\rDOB:  20/11/2025\rAge:  Died at 1 year 0 months (Deceased) \r"
                                  "Breed: Rex\rColor:  Black\rCage No: 04");
}

TEST_F(AnimalTest, AnEmptyInstanceGivesTheNotice)
{
    Animal a;
    QString gone = QStringLiteral("Gone");
    a.SetCurrentAnimal(gone);
    EXPECT_EQ(a.Get_Awards(false),
              "The program cannot find the record you are looking for in this database.\r"
              "You may have clicked on a record in the recent list which no longer exists or has been renamed.\r"
              "The list may belong to another database with the same name which you have opened recently.\r"
              "You can reset your recent names list by choosing Database > Clear Recent Names List from the top "
              "menu.\r"
              "To find records in this database click the SEARCH button. \r");
}

TEST_F(AnimalTest, ClearFieldsLeavesLeasedAndTheDerivedTexts)
{
    exec("INSERT INTO tree (name,breed,leased,sold,dob) VALUES ('Ash','Rex',-1,-1,#11/20/2025#)");
    Animal a = loaded("Ash");
    a.clearFields();
    EXPECT_EQ(a.name, "");
    EXPECT_EQ(a.breed, "");
    EXPECT_EQ(a.dob, "");
    EXPECT_FALSE(a.sold);
    EXPECT_EQ(a.id, 0);
    EXPECT_TRUE(a.leased);
    EXPECT_EQ(a.fullName, "Ash");
    EXPECT_FALSE(a.age.isEmpty());
}

} // namespace
