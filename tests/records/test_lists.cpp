// SPDX-License-Identifier: GPL-3.0-or-later
// The search of the main window and the list fillers, on a small stud whose flags cover every status.
#include "support/TestEnv.h"

#include "records/Lists.h"
#include "base/Log.h"
#include "session/OpenDataFile.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <gtest/gtest.h>

using Lists::ListSink;

namespace {

struct Beast {
    const char* name; // as shown; stored encoded
    const char* sex;
    const char* breed;
    const char* dob; // mm/dd/yyyy
    const char* deceased;
    const char* sold;
    const char* owner;
    const char* breeder;
    const char* leased;
    const char* callName;
};

// Today is 23 November 2026: "Born In Last 12 Months" means after 11/23/2025.
const Beast kStud[] = {
    {"Amber", "female", "Rex", "05/01/2020", "0", "0", "-1", "-1", "0", "Ambs"},
    {"Basil", "male", "Dutch", "01/01/2026", "0", "-1", "0", "0", "0", ""},
    {"Clover", "female", "Dutch", "05/01/2019", "-1", "0", "-1", "0", "0", ""},
    {"Dill", "male", "Rex", "03/01/2026", "0", "0", "-1", "0", "-1", ""},
    {"Elm", "female", "Rex", "11/23/2025", "0", "0", "0", "-1", "0", ""},
    {"Fern", "undefined", "Dutch", "01/01/1925", "0", "0", "Null", "0", "0", ""},
    {"O'Hara", "male", "Lop", "01/01/1925", "0", "0", "-1", "0", "0", ""},
    {"Unknown", "male", "Unknown", "01/01/1925", "0", "0", "-1", "-1", "0", ""},
};

QStringList names(std::initializer_list<const char*> list)
{
    QStringList l;
    for (const char* n : list)
        l << QString::fromUtf8(n);
    return l;
}

class ListsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        env = std::make_unique<TestEnv>();
        ASSERT_TRUE(CreateDataFile(QStringLiteral("stud.cav"), QString()));
        ASSERT_TRUE(OpenDataFile(env->dataFolder() + QStringLiteral("stud.cav")));
        for (const Beast& b : kStud) {
            gDatabase.Execute(QStringLiteral("INSERT INTO tree (name, sex, breed, dob, deceased, sold, owner, breeder, "
                                             "leased, callname, prefix, suffix) VALUES ('%1','%2','%3',#%4#,%5,%6,%7,%8,%9,'%10','','')")
                                  .arg(EncodeText(QString::fromUtf8(b.name)), QString::fromUtf8(b.sex),
                                       QString::fromUtf8(b.breed), QString::fromUtf8(b.dob), QString::fromUtf8(b.deceased),
                                       QString::fromUtf8(b.sold), QString::fromUtf8(b.owner), QString::fromUtf8(b.breeder),
                                       QString::fromUtf8(b.leased))
                                  .arg(QString::fromUtf8(b.callName)));
        }
        env->ui().clear(); // the new file's call for the setup wizard
    }
    void TearDown() override
    {
        SearchResults.Close();
        Lists::Titles.clear();
        CloseDatabase();
        env.reset();
    }
    static QString errorLog() { return TestEnv::readText(ErrorLogPath()); }
    std::unique_ptr<TestEnv> env;
};

// --- the statement and the status words ------------------------------------------------------------

struct StatusCase {
    const char* value1;
    bool currentOnly;
    QStringList expected;
};

class StatusSearch : public ListsTest, public ::testing::WithParamInterface<StatusCase> {};

TEST_P(StatusSearch, FindsTheRowsOfTheStatus)
{
    const StatusCase& c = GetParam();
    ListSink list;
    ASSERT_TRUE(Lists::FillSearchList(list, QStringLiteral("Status"), QString::fromUtf8(c.value1), QString(), QString(),
                                      c.currentOnly, false));
    EXPECT_EQ(list.items, c.expected);
    EXPECT_EQ(list.backColour, c.expected.isEmpty() ? ListSink::BackColour::ButtonFace : ListSink::BackColour::White);
    EXPECT_EQ(errorLog(), QString());
}

INSTANTIATE_TEST_SUITE_P(
    Lists, StatusSearch,
    ::testing::Values(StatusCase{"My Current Stock", false, names({"Amber", "Dill", "O'Hara"})},
                      StatusCase{"My Current Stock", true, names({"Amber", "Dill", "O'Hara"})},
                      StatusCase{"All Records", false, names({"Amber", "Basil", "Clover", "Dill", "Elm", "Fern", "O'Hara"})},
                      StatusCase{"All Records", true, names({"Amber", "Basil", "Clover", "Dill", "Elm", "Fern", "O'Hara"})},
                      StatusCase{"I Am The Breeder", false, names({"Amber", "Elm"})},
                      StatusCase{"I Am The Breeder", true, names({"Amber"})},
                      StatusCase{"Born In Last 12 Months", false, names({"Basil", "Dill"})},
                      StatusCase{"Born In Last 12 Months", true, names({"Dill"})},
                      StatusCase{"Sold Stock", false, names({"Basil"})},
                      StatusCase{"Sold Stock", true, {}},
                      StatusCase{"Not My Stock", false, names({"Basil", "Elm"})},
                      StatusCase{"Not My Stock", true, {}},
                      StatusCase{"Leased", false, names({"Dill"})},
                      StatusCase{"Leased", true, names({"Dill"})},
                      StatusCase{"Deceased Stock", false, names({"Clover"})},
                      StatusCase{"Deceased Stock", true, {}}));

TEST_F(ListsTest, StatementsAreBuiltAsTheListsAlwaysBuiltThem)
{
    EXPECT_EQ(Lists::SearchStatement("Status", "Sold Stock", "", "", true, false),
              "SELECT * FROM tree WHERE sold = -1 AND deceased <> -1 AND sold <> -1 AND owner = -1 ORDER BY name");
    EXPECT_EQ(Lists::SearchStatement("Status", "My Current Stock", "", "", true, false),
              "SELECT * FROM tree WHERE deceased <> -1 AND sold <> -1 AND owner = -1 ORDER BY name");
    EXPECT_EQ(Lists::SearchStatement("Status", "Born In Last 12 Months", "", "", false, false),
              "SELECT * FROM tree WHERE dob > #11 23 2025# ORDER BY name");
    EXPECT_EQ(Lists::SearchStatement("Status", "All Records", "Name", "il", false, true),
              "SELECT * FROM tree  WHERE Name LIKE  '*il*' ORDER BY name");
    EXPECT_EQ(Lists::SearchStatement("Registration", "R1", "Sex", "male", true, false),
              "SELECT * FROM tree WHERE Tag = 'R1' AND Sex = 'male' AND deceased <> -1 AND sold <> -1 AND owner = -1 ORDER BY name");
    // The status word wins over the criterion.
    EXPECT_EQ(Lists::SearchStatement("Breed", "Leased", "", "", false, false),
              "SELECT * FROM tree WHERE leased = -1 ORDER BY name");
}

struct CriteriaCase {
    const char* field1;
    const char* value1;
    const char* field2;
    const char* value2;
    bool contains;
    bool currentOnly;
    QStringList expected;
};

class CriteriaSearch : public ListsTest, public ::testing::WithParamInterface<CriteriaCase> {};

TEST_P(CriteriaSearch, BothCriteria)
{
    const CriteriaCase& c = GetParam();
    ListSink list;
    ASSERT_TRUE(Lists::FillSearchList(list, c.field1, QString::fromUtf8(c.value1), c.field2, c.value2, c.currentOnly,
                                      c.contains));
    EXPECT_EQ(list.items, c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, CriteriaSearch,
    ::testing::Values(CriteriaCase{"Breed", "Rex", "", "", false, false, names({"Amber", "Dill", "Elm"})},
                      CriteriaCase{"Breed", "Rex", "", "", false, true, names({"Amber", "Dill"})},
                      CriteriaCase{"Status", "All Records", "Sex", "female", false, false, names({"Amber", "Clover", "Elm"})},
                      CriteriaCase{"Status", "All Records", "Sex", "female", false, true, names({"Amber", "Clover", "Elm"})},
                      CriteriaCase{"Status", "I Am The Breeder", "Sex", "female", false, false, names({"Amber", "Elm"})},
                      CriteriaCase{"Status", "I Am The Breeder", "Sex", "female", false, true, names({"Amber"})},
                      CriteriaCase{"Status", "All Records", "Name", "L", true, false, names({"Basil", "Clover", "Dill", "Elm"})},
                      CriteriaCase{"Status", "My Current Stock", "Name", "L", true, true, names({"Dill"})},
                      CriteriaCase{"Breed", "Dutch", "Name", "ern", true, false, names({"Fern"})}));

TEST_F(ListsTest, TheCallNameShowsOnlyForTheColumnSpelling)
{
    ListSink list;
    ASSERT_TRUE(Lists::FillSearchList(list, "callname", "Ambs", "", "", false, false));
    EXPECT_EQ(list.items, QStringList{"Amber    [Ambs]"});
    ASSERT_TRUE(Lists::FillSearchList(list, "Call Name", "Ambs", "", "", false, false));
    EXPECT_EQ(list.items, QStringList{"Amber"});
}

TEST_F(ListsTest, AMalformedSearchIsLoggedAndLeavesTheList)
{
    ListSink list;
    list.items = QStringList{"Kept"};
    EXPECT_FALSE(Lists::FillSearchList(list, "Status", "", "", "", true, false));
    EXPECT_EQ(list.items, QStringList{"Kept"});
    const QStringList lines = errorLog().split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains(" - Search Error 3075 - Syntax error")) << lines[0].toStdString();
    EXPECT_TRUE(env->ui().calls().isEmpty());
}

// Every value that a value list offers finds its rows, whether picked for the first pair or the second,
// and so does a date typed in the short form of the file.
TEST_F(ListsTest, AValueFromTheValueListFindsItsRows)
{
    struct Case {
        const char* field;
        const char* value;
        bool contains;
        QStringList expected;
    };
    const Case cases[] = {
        {"Name", "O'Hara", false, names({"O'Hara"})},
        {"Name", "O'H", true, names({"O'Hara"})},
        {"DOB", "01/05/2020", false, names({"Amber"})}, // day first, as the file's country has it
        {"DOB", "1/5/2020", false, names({"Amber"})},
        {"DOB", "23.11.2025", false, names({"Elm"})},
        {"DOB", "2026-03-01", false, names({"Dill"})},
        {"DOB", "05/01/2020", false, {}},
        {"DOB", "no date", false, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.field) + " " + c.value);
        if (!c.contains) {
            ListSink first;
            ASSERT_TRUE(Lists::FillSearchList(first, c.field, QString::fromUtf8(c.value), "", "", false, false));
            EXPECT_EQ(first.items, c.expected);
        }
        ListSink second;
        ASSERT_TRUE(Lists::FillSearchList(second, "Status", "All Records", c.field, QString::fromUtf8(c.value), false,
                                          c.contains));
        EXPECT_EQ(second.items, c.expected);
    }

    for (const char* criterion : {"Name", "DOB"}) {
        ListSink values;
        Lists::FillValueList(values, criterion, false);
        ASSERT_FALSE(values.items.isEmpty());
        for (const QString& value : std::as_const(values.items)) {
            ListSink found;
            ASSERT_TRUE(Lists::FillSearchList(found, criterion, value, "", "", false, false));
            EXPECT_FALSE(found.items.isEmpty()) << criterion << " " << value.toStdString();
        }
    }
    EXPECT_EQ(errorLog(), QString());
}

TEST_F(ListsTest, AFailedSearchLeavesTheListAndTheCountThatDescribesIt)
{
    Lists::SearchPanel panel;
    panel.cboBreed = "All Records";
    panel.cboBreed_Click();
    ASSERT_EQ(panel.searchList.count(), 7);
    const QString count = panel.lblResultsFound;
    const QString subject = panel.lblSubjectAnimal;

    // No column answers to this criterion, so the engine refuses the statement.
    panel.cboSearch = "Weight";
    panel.cboBreed = "2";
    panel.cboBreed_Click();
    EXPECT_EQ(panel.searchList.count(), 7);
    EXPECT_EQ(panel.lblResultsFound, count);
    EXPECT_EQ(panel.lblSubjectAnimal, subject);
    EXPECT_TRUE(errorLog().contains(" - Search Error ")) << errorLog().toStdString();
}

// --- the panel: counts, sentence, letter bar, reset ------------------------------------------------

TEST(ListsTexts, ResultsCount)
{
    EXPECT_EQ(Lists::ResultsCountText(1, "All Records"), "1 result. Click to view.\nDouble click to edit. Right click for options.");
    EXPECT_EQ(Lists::ResultsCountText(12, "All Records"), "12 results. Click to view.\nDouble click to edit. Right click for options.");
    EXPECT_EQ(Lists::ResultsCountText(0, "My Current Stock"),
              "No Results found. Try searching by Status is All Records.\nOnly records checked \"I am the owner\" can "
              "appear under My Current Stock.");
    EXPECT_EQ(Lists::ResultsCountText(0, "Leased"), "No results found.");
    EXPECT_EQ(Lists::SubjectText(3, "Status", "Leased", "Sex", "male", true, true, false),
              "Search Result: 3 records found where Status is \"Leased\" (list all records) and Sex contains \"male\"");
    EXPECT_EQ(Lists::SubjectText(1, "Breed", "Rex", "", "", false, true, true),
              "Search Result: 1 records found where Breed is \"Rex\" (list my current stock)");
    EXPECT_EQ(Lists::SubjectText(0, "Status", "All Records", "", "", false, false, true),
              "Search Result: 0 records found where Status is \"All Records\"");
}

TEST_F(ListsTest, PickingAStatusSetsTheFilterAndTheCount)
{
    Lists::SearchPanel panel;
    panel.optCurrentStock = true;
    panel.cboBreed = "Sold Stock";
    panel.cboBreed_Click();
    EXPECT_TRUE(panel.currentStockShown);
    EXPECT_FALSE(panel.optCurrentStock);
    EXPECT_EQ(panel.searchList.items, QStringList{"Basil"});
    EXPECT_EQ(panel.lblResultsFound, "1 result. Click to view.\nDouble click to edit. Right click for options.");
    EXPECT_EQ(panel.lblSubjectAnimal, "Search Result: 1 records found where Status is \"Sold Stock\" (list all records)");

    panel.cmdReset_Click();
    EXPECT_FALSE(panel.currentStockShown);
    EXPECT_EQ(panel.searchList.items, names({"Amber", "Dill", "O'Hara"}));
}

TEST_F(ListsTest, TheLetterBarKeepsTheTailFromTheLetter)
{
    Lists::SearchPanel panel;
    panel.cboBreed = "All Records";
    panel.lblLetter_Click("D");
    EXPECT_EQ(panel.searchList.items, names({"Dill", "Elm", "Fern", "O'Hara"}));
    EXPECT_EQ(panel.lblResultsFound, "Displaying from D onwards.\nClick # to view full list");

    panel.lblLetter_Click("Z");
    EXPECT_EQ(panel.searchList.count(), 7);
    EXPECT_EQ(panel.lblResultsFound, "No name starts with Z.");

    panel.lblLetter_Click("#");
    EXPECT_EQ(panel.searchList.count(), 7);
    EXPECT_EQ(panel.lblResultsFound, "7 results. Click to view.\nDouble click to edit. Right click for options.");
}

TEST_F(ListsTest, AdvancedSearchNeedsTheSecondValue)
{
    Lists::SearchPanel panel;
    panel.cboBreed = "All Records";
    panel.cboSearch2 = "Sex";
    panel.AdvancedSearch();
    ASSERT_EQ(env->ui().calls().size(), 1);
    EXPECT_EQ(env->ui().calls().at(0).title, "Missing search criteria");
    EXPECT_EQ(env->ui().calls().at(0).text,
              "Fill all four lists for advanced search or click Reset and just use just the top two lists.");
    panel.cboBreed2 = "male";
    panel.AdvancedSearch();
    EXPECT_EQ(panel.searchList.items, names({"Basil", "Dill", "O'Hara"}));
    EXPECT_EQ(panel.lblSubjectAnimal, "Search Result: 3 records found where Status is \"All Records\" and Sex is \"male\"");
}

// --- fillers -------------------------------------------------------------------------------------

TEST_F(ListsTest, FieldListsSkipDoublesBlanksAndUnknown)
{
    gDatabase.Execute("UPDATE tree SET colour = 'unknown' WHERE name = 'Amber'");
    gDatabase.Execute("UPDATE tree SET colour = ' ' WHERE name = 'Basil'");
    gDatabase.Execute("UPDATE tree SET colour = 'Agouti' WHERE name = 'Clover'");
    gDatabase.Execute("UPDATE tree SET colour = 'agouti ' WHERE name = 'Dill'");
    gDatabase.Execute("UPDATE tree SET colour = 'Black$s' WHERE name = 'Elm'");
    ListSink list;
    Lists::FillFieldList(list, "Colour", "tree", false);
    EXPECT_EQ(list.items, names({"Agouti", "Black's"}));

    ListSink breeds;
    Lists::FillValueList(breeds, "Breed", true);
    EXPECT_EQ(breeds.items, names({"Lop", "Rex"}));
    ListSink status;
    Lists::FillValueList(status, "Status", false);
    EXPECT_EQ(status.items, Lists::StatusNames());
}

TEST_F(ListsTest, ParentsNamesAndContacts)
{
    ListSink list;
    list.items = QStringList{"old"};
    Lists::FillParentList(list, " AND owner = -1", "male");
    EXPECT_EQ(list.items, names({"Unknown", "Dill", "O'Hara", "Unknown"}));
    Lists::FillAllNames(list, "(none)");
    EXPECT_EQ(list.items, names({"(none)", "Amber", "Basil", "Clover", "Dill", "Elm", "Fern", "O'Hara"}));
    gDatabase.Execute("INSERT INTO contacts (name) VALUES ('Zed O$Neil')");
    gDatabase.Execute("INSERT INTO contacts (name) VALUES ('Unknown')");
    gDatabase.Execute("INSERT INTO contacts (name) VALUES ('Ann')");
    Lists::FillContactList(list);
    EXPECT_EQ(list.items, names({"Zed O'Neil", "Ann"}));
}

TEST_F(ListsTest, RecordExistsScansStoredNamesWithoutCase)
{
    EXPECT_TRUE(Lists::RecordExists("Amber", "tree"));
    EXPECT_TRUE(Lists::RecordExists("aMBER", "tree"));
    EXPECT_TRUE(Lists::RecordExists("o$hara", "tree"));
    EXPECT_FALSE(Lists::RecordExists("O'Hara", "tree"));
    EXPECT_FALSE(Lists::RecordExists("Amb", "tree"));
    EXPECT_FALSE(Lists::RecordExists("", "tree"));
    EXPECT_FALSE(Lists::RecordExists("Amber", "contacts"));
}

TEST_F(ListsTest, TitlesLongestFirstAndRemoved)
{
    Lists::LoadTitles("CH,Grand Champion,Champion");
    EXPECT_EQ(Lists::Titles, names({"Grand Champion", "Champion", "CH", ""}));
    EXPECT_EQ(Lists::RemoveTitle("grand champion Rosie"), "Rosie");
    EXPECT_EQ(Lists::RemoveTitle("CHESTNUT Rosie"), "CHESTNUT Rosie");
    ListSink list;
    Lists::FillTitleList(list);
    EXPECT_EQ(list.items, names({"Grand Champion", "Champion", "CH"}));
}

TEST_F(ListsTest, SmallLookUps)
{
    gDatabase.Execute("UPDATE tree SET prefix = 'GC', suffix = 'Jr' WHERE name = 'Amber'");
    gDatabase.Execute("UPDATE tree SET prefix = 'Mac$' WHERE name = 'O$Hara'");
    EXPECT_EQ(Lists::GetPrefixOf("Amber"), "GC");
    EXPECT_EQ(Lists::GetSuffixOf("Amber"), "Jr");
    EXPECT_EQ(Lists::GetFullName("Amber"), "GC Amber Jr");
    EXPECT_EQ(Lists::GetPrefixOf("O$Hara"), "Mac'");
    EXPECT_EQ(Lists::GetFullName("Basil"), "Basil");
    EXPECT_EQ(Lists::GetPrefixOf("Nobody"), "");
    EXPECT_TRUE(Lists::GetIsSold("Basil"));
    EXPECT_FALSE(Lists::GetIsSold("Amber"));
    EXPECT_TRUE(Lists::GetIsDeceased("Clover"));
    EXPECT_FALSE(Lists::GetIsDeceased("Nobody"));
    Recordset rs = gDatabase.OpenRecordset("SELECT id FROM tree WHERE name = 'O$Hara'");
    const QString id = rs.Fields(0).toString();
    rs.Close();
    EXPECT_EQ(Lists::GetNameById(id), "O'Hara");
    EXPECT_EQ(Lists::GetFieldById("name", "tree", id), "O$Hara");
    EXPECT_EQ(Lists::GetFieldById("breed", "tree", id), "");
    gUser.Male = "Buck";
    gUser.Female = "Doe";
    EXPECT_EQ(Lists::SexWordOf("male"), "Buck");
    EXPECT_EQ(Lists::SexWordOf("undefined"), "Doe");
}

TEST_F(ListsTest, ColumnsOfCaptions)
{
    gUser.CustomName[2] = "Breed:";
    gUser.Father = "Sire";
    gUser.Country = "United States";
    EXPECT_EQ(Lists::GetColumnName("breed"), "CustomField3");
    EXPECT_EQ(Lists::GetColumnName("Sire"), "ps");
    EXPECT_EQ(Lists::GetColumnName("Color"), "Colour");
    EXPECT_EQ(Lists::GetColumnName("Registration"), "Tag");
    EXPECT_EQ(Lists::GetColumnName("Call Name"), "Callname");
    EXPECT_EQ(Lists::GetColumnName("I am not the owner"), "Owner");
    EXPECT_EQ(Lists::GetColumnName("Cage"), "Cage");
    const QStringList criteria = Lists::SearchCriteria(true);
    EXPECT_EQ(criteria.first(), "Status");
    EXPECT_EQ(criteria.at(4), "Color");
    EXPECT_EQ(criteria.last(), "Breed");
    EXPECT_FALSE(Lists::SearchCriteria(false).contains("Status"));
}

} // namespace
