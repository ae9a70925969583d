// SPDX-License-Identifier: GPL-3.0-or-later
// Jet's statements run on SQLite through the translator and its functions: what is stored and what
// comes back must be what the Jet engine stores and gives.
#include "base/Clock.h"
#include "base/Dates.h"
#include "store/JetError.h"
#include "store/JetTranslator.h"
#include "store/JetTypes.h"
#include "support/TestEnv.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <QVariant>
#include <sqlite3.h>

#include <functional>
#include <stdexcept>

namespace {

const char* const kNull = "<null>";

class JetSql : public ::testing::Test {
protected:
    void SetUp() override
    {
        env = std::make_unique<TestEnv>(); // day first, and puts the date order and the clock back
        ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
        jet::registerFunctions(db);
        // Statements as the program builds them.
        exec(QStringLiteral(
            "CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING, colour STRING, breed STRING, sex STRING, dob DATE, "
            "notes MEMO, ps STRING, pd STRING, fatherId STRING, motherId STRING, cage STRING, tag STRING, picture STRING, "
            "deceased NUMBER, dateDeceased STRING, customField1 STRING, customfield4 STRING, health MEMO, journal MEMO, "
            "callname STRING, sold NUMBER, datesold DATE, breeder NUMBER, owner NUMBER, leased NUMBER, prefix STRING, "
            "suffix STRING, coi STRING, oldId String)"));
        exec(QStringLiteral("CREATE TABLE Breeding (ID COUNTER PRIMARY KEY, Breed STRING, Boar STRING, Sow STRING, "
                            "Due DATE, Mated DATE, Born DATE, numBoars STRING, NumSows STRING, Colour MEMO, Sold STRING, "
                            "Unsuccessful NUMBER, Stillborn String, numUndefined NUMBER)"));
        exec(QStringLiteral("CREATE TABLE soldstock (ID COUNTER PRIMARY KEY, Dam STRING,  Offspring STRING, DOB STRING, "
                            "Breed STRING, Colour STRING, DateSold STRING, SoldTo STRING, Sire STRING, Address STRING)"));
        exec(QStringLiteral(
            "CREATE TABLE weights (id COUNTER PRIMARY KEY, weightDate DATE, weightTime STRING, name STRING, weight STRING)"));
        exec(QStringLiteral("CREATE TABLE expenditure (id COUNTER PRIMARY KEY, name STRING, expense_date DATE, "
                            "details STRING, amount Currency, income Currency, category STRING)"));
        exec(QStringLiteral("CREATE TABLE vaccinations (id COUNTER PRIMARY KEY, duedate DATE, name STRING, "
                            "vaccination STRING, done char(1))"));
    }

    void TearDown() override
    {
        sqlite3_close(db);
        env.reset();
    }

    std::optional<QVector<jet::ColumnInfo>> columns(const QString& table)
    {
        sqlite3_stmt* st = nullptr;
        const QByteArray sql = QStringLiteral("PRAGMA table_info(\"%1\")").arg(table).toUtf8();
        sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr);
        QVector<jet::ColumnInfo> cols;
        while (st && sqlite3_step(st) == SQLITE_ROW)
            cols.push_back({QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 1))),
                            jet::typeForDeclaration(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 2))))});
        sqlite3_finalize(st);
        if (cols.isEmpty())
            return std::nullopt;
        return cols;
    }

    jet::Translation translate(const QString& jetSql)
    {
        return jet::translate(jetSql, [this](const QString& t) { return columns(t); });
    }

    // Runs one statement; each row comes back as texts, Null as "<null>".
    QVector<QStringList> run(const QString& jetSql)
    {
        const jet::Translation t = translate(jetSql);
        sqlite3_stmt* st = nullptr;
        const QByteArray sql = t.sql.toUtf8();
        const char* tail = nullptr;
        if (sqlite3_prepare_v2(db, sql.constData(), int(sql.size()), &st, &tail) != SQLITE_OK) {
            const std::string msg = std::string(sqlite3_errmsg(db)) + " in: " + sql.toStdString();
            sqlite3_finalize(st);
            throw std::runtime_error(msg);
        }
        EXPECT_TRUE(QByteArray(tail).trimmed().isEmpty()) << sql.toStdString();
        lastColumnNames.clear();
        for (int i = 0; i < sqlite3_column_count(st); ++i)
            lastColumnNames << QString::fromUtf8(sqlite3_column_name(st, i));
        QVector<QStringList> rows;
        int rc = 0;
        while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
            QStringList row;
            for (int i = 0; i < sqlite3_column_count(st); ++i) {
                switch (sqlite3_column_type(st, i)) {
                case SQLITE_NULL: row << QString::fromLatin1(kNull); break;
                case SQLITE_INTEGER: row << QString::number(sqlite3_column_int64(st, i)); break;
                case SQLITE_FLOAT: row << QVariant(sqlite3_column_double(st, i)).toString(); break;
                default: row << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, i)));
                }
            }
            rows << row;
        }
        const std::string msg = sqlite3_errmsg(db);
        sqlite3_finalize(st);
        if (rc != SQLITE_DONE)
            throw std::runtime_error(msg + " in: " + sql.toStdString());
        return rows;
    }

    void exec(const QString& jetSql) { run(jetSql); }

    QString value(const QString& jetSql)
    {
        const QVector<QStringList> rows = run(jetSql);
        if (rows.isEmpty() || rows[0].isEmpty())
            return QStringLiteral("<no row>");
        return rows[0][0];
    }

    QStringList column(const QString& jetSql)
    {
        QStringList out;
        for (const QStringList& row : run(jetSql))
            out << row.value(0);
        return out;
    }

    int jetError(const std::function<void()>& f)
    {
        try {
            f();
        } catch (const JetError& e) {
            return e.number();
        }
        return 0;
    }

    void addAnimals(const QStringList& names)
    {
        for (const QString& n : names)
            exec(QStringLiteral("INSERT INTO tree (name) VALUES ('%1')").arg(n));
    }

    std::unique_ptr<TestEnv> env;
    sqlite3* db = nullptr;
    QStringList lastColumnNames;
};

// ---------------------------------------------------------------------------------------------
// Definitions

TEST_F(JetSql, TablesMadeFromJetStatementsReadBackTheirJetTypes)
{
    const auto cols = columns(QStringLiteral("tree"));
    ASSERT_TRUE(cols);
    QHash<QString, int> types;
    for (const jet::ColumnInfo& c : *cols)
        types.insert(c.name, c.type);
    EXPECT_EQ(types.value(QStringLiteral("id")), jet::dbLong);
    EXPECT_EQ(types.value(QStringLiteral("name")), jet::dbText);
    EXPECT_EQ(types.value(QStringLiteral("dob")), jet::dbDate);
    EXPECT_EQ(types.value(QStringLiteral("notes")), jet::dbMemo);
    EXPECT_EQ(types.value(QStringLiteral("deceased")), jet::dbDouble);
    EXPECT_EQ(types.value(QStringLiteral("oldId")), jet::dbText);
    EXPECT_EQ(types.value(QStringLiteral("customfield4")), jet::dbText);

    exec(QStringLiteral("CREATE TABLE kinds (a Currency, b YESNO, c SHORT, d LONG, e char(1), f Text(50))"));
    const auto kinds = columns(QStringLiteral("kinds"));
    ASSERT_TRUE(kinds);
    QVector<int> got;
    for (const jet::ColumnInfo& c : *kinds)
        got << c.type;
    EXPECT_EQ(got, (QVector<int>{jet::dbCurrency, jet::dbBoolean, jet::dbInteger, jet::dbLong, jet::dbText, jet::dbText}));

    // The key numbers itself.
    addAnimals({QStringLiteral("Ash"), QStringLiteral("Birch")});
    EXPECT_EQ(column(QStringLiteral("SELECT id FROM tree ORDER BY id")), (QStringList{"1", "2"}));
}

TEST_F(JetSql, TheRestOfTheDataFilesStatementsRun)
{
    const char* const statements[] = {
        "CREATE TABLE cavyuser (ID COUNTER PRIMARY KEY, fldEmail STRING, fldBreederName STRING, fldStudNum STRING, "
        "fldPhoneNum STRING, fldStud STRING, fldAnimal STRING, fldMale STRING, fldFemale STRING, fldGestation LONG, "
        "fldCountry STRING, fldCustomDetail STRING, fldCustomName1 STRING, fldCustomName2 STRING, fldCustomName3 STRING, "
        "fldCustomName4 STRING, fldCustomName5 STRING, fldCustomName6 STRING, fldCustomName7 STRING, fldCustomName8 STRING, "
        "fldCustomName9 STRING, fldCustomName10 STRING, fldCustomName11 STRING, fldCustomName12 STRING, fldOrganisation "
        "STRING, fldReminders MEMO, fldFather STRING, fldMother STRING, fldPrefix STRING, fldNestBox Long, fldWean Long, "
        "fldRebreed Long, fldTag Long, fldWeightMeasure STRING, fldVersion String, fldAutoUpdate Long)",
        "CREATE TABLE print (id COUNTER PRIMARY KEY, Orientation NUMBER, Margin NUMBER, FontSize NUMBER, FontName STRING, "
        "FontColour STRING, FontBold NUMBER,FontItalic NUMBER, SubjectFontSize NUMBER, SubjectFontName STRING, "
        "SubjectFontColour STRING, SubjectFontBold NUMBER,SubjectFontItalic NUMBER, TitleFontSize NUMBER, TitleFontName "
        "STRING, TitleFontColour STRING,TitleFontBold NUMBER,TitleFontItalic NUMBER, ShowBorder NUMBER, WhichGraphic NUMBER, "
        "ShowShadow NUMBER, PicSize NUMBER, LineColour STRING, Generationchoice NUMBER, FieldChoices STRING, picLeft NUMBER, "
        "picTop NUMBER, objectPositions MEMO, name String, background String, logo String, highlightChampions NUMBER, "
        "championColour STRING, logoSize NUMBER, fieldOrder STRING)",
        "CREATE TABLE contacts (ID COUNTER PRIMARY KEY,name STRING, address STRING, city STRING, state STRING, country "
        "STRING, postcode STRING, phone STRING, email STRING, category STRING, notes MEMO)",
        "CREATE TABLE reminders (id COUNTER PRIMARY KEY, duedate DATE, reminder STRING, done char(1))",
        "CREATE TABLE shows (id COUNTER PRIMARY KEY, name STRING, show STRING, showDate DATE, class STRING, competitorNum "
        "String, place STRING, awards STRING, judge STRING, Points STRING)",
        "CREATE TABLE journal (id COUNTER PRIMARY KEY, nameId STRING, journalDate DATE, journalNote Memo)",
        "INSERT INTO cavyuser (fldAnimal,fldMale,fldFemale,fldGestation,fldFather,fldMother,fldNestBox,fldWean,fldRebreed,"
        "fldTag,fldAutoUpdate) VALUES ('Animal','Male','Female',0,'Father','Mother',0,0,0,0,1)",
        "UPDATE print SET name = 'Custom' where id = 1",
        "Insert into Journal(nameId, journalDate,journalNote) Values ('1','04/03/2021','Bought at the $show')",
        "UPDATE cavyuser SET fldVersion = '5.00.00' WHERE ID = 1",
        "INSERT INTO shows (name, show, showDate, class, competitorNum, place, points, judge, awards) VALUES "
        "('Ash','Spring','05/03/2021','Adult','12','1st','20','Ann','BOB')",
    };
    for (const char* s : statements)
        EXPECT_NO_THROW(exec(QString::fromUtf8(s))) << s;
    EXPECT_EQ(run(QStringLiteral("Select * FROM cavyuser WHERE id = 1")).size(), 1);
    EXPECT_EQ(value(QStringLiteral("SELECT fldVersion FROM cavyUser WHERE ID = 1")), QStringLiteral("5.00.00"));
    EXPECT_EQ(value(QStringLiteral("SELECT journalDate FROM journal")), QStringLiteral("2021-03-04"));
    EXPECT_EQ(value(QStringLiteral("SELECT * FROM shows WHERE Year(showDate) = '2021' ORDER BY showDate")),
              QStringLiteral("1"));
    EXPECT_EQ(columns(QStringLiteral("print"))->size(), 35);
}

TEST_F(JetSql, DefaultsAndAddedColumnsWork)
{
    exec(QStringLiteral("CREATE TABLE t (id COUNTER PRIMARY KEY, a STRING DEFAULT \"\", b LONG DEFAULT 0, c DATE)"));
    exec(QStringLiteral("INSERT INTO t (c) VALUES (#01/02/2020#)"));
    EXPECT_EQ(run(QStringLiteral("SELECT a, b, c FROM t")).value(0), (QStringList{"", "0", "2020-01-02"}));
    exec(QStringLiteral("ALTER TABLE t ADD COLUMN flag BIT"));
    exec(QStringLiteral("UPDATE t SET flag = 1"));
    EXPECT_EQ(value(QStringLiteral("SELECT flag FROM t")), QStringLiteral("-1"));
    exec(QStringLiteral("ALTER TABLE t DROP COLUMN flag"));
    EXPECT_EQ(columns(QStringLiteral("t"))->size(), 4);
    exec(QStringLiteral("CREATE INDEX byA ON t (a)"));
    exec(QStringLiteral("DROP INDEX byA ON t"));
    exec(QStringLiteral("DROP TABLE t"));
    EXPECT_FALSE(columns(QStringLiteral("t")));
}

// ---------------------------------------------------------------------------------------------
// Dates

TEST_F(JetSql, DateLiteralsAreStoredAsIsoTextInDateOrder)
{
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Ash', #01/02/2020#)"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Birch', #12 25 2019#)"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Cedar', #03/04/21 1:05 PM#)"));
    EXPECT_EQ(value(QStringLiteral("SELECT dob FROM tree WHERE name = 'Ash'")), QStringLiteral("2020-01-02"));
    EXPECT_EQ(value(QStringLiteral("SELECT typeof(dob) FROM tree WHERE name = 'Ash'")), QStringLiteral("text"));
    EXPECT_EQ(value(QStringLiteral("SELECT dob FROM tree WHERE name = 'Cedar'")), QStringLiteral("2021-03-04 13:05:00"));
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM tree ORDER BY dob")),
              (QStringList{"Birch", "Ash", "Cedar"}));
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM tree WHERE dob > #01 01 2020# ORDER BY name")),
              (QStringList{"Ash", "Cedar"}));
}

TEST_F(JetSql, YearComparedWithTextComparesAsANumber)
{
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Ash', #01/02/2020#)"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Birch', #12/25/2019#)"));
    exec(QStringLiteral("INSERT INTO Breeding (Boar, Sow, Mated) VALUES ('Ash', 'Birch', #06/01/2020#)"));
    exec(QStringLiteral("INSERT INTO soldstock (Offspring, DateSold) VALUES ('Ash', '15/06/2020')"));
    exec(QStringLiteral("INSERT INTO soldstock (Offspring, DateSold) VALUES ('Birch', 'not sold yet')"));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM tree WHERE Year(dob) = '2020'")), (QStringList{"1"}));
    EXPECT_EQ(value(QStringLiteral("SELECT Boar FROM breeding WHERE Year(mated) = '2020'")), QStringLiteral("Ash"));
    EXPECT_EQ(value(QStringLiteral("SELECT Offspring FROM soldstock WHERE year(DateSold) = 2020")), QStringLiteral("Ash"));
    EXPECT_EQ(column(QStringLiteral("SELECT DISTINCT year(DateSold) FROM soldstock ORDER BY 1")), (QStringList{kNull, "2020"}));
    EXPECT_EQ(value(QStringLiteral("SELECT name FROM tree WHERE Month(dob) = '12' AND Day(dob) = 25")),
              QStringLiteral("Birch"));
}

TEST_F(JetSql, CDateReadsTextDatesInTheRegionalOrder)
{
    exec(QStringLiteral("INSERT INTO soldstock (Offspring, DateSold) VALUES ('Ash', '15/06/2020')"));
    exec(QStringLiteral("INSERT INTO soldstock (Offspring, DateSold) VALUES ('Birch', '01/02/2019')"));
    exec(QStringLiteral("INSERT INTO soldstock (Offspring, DateSold) VALUES ('Cedar', 'Unknown')"));
    EXPECT_EQ(column(QStringLiteral("SELECT Offspring FROM soldstock WHERE CDate(DateSold) > #01/01/2020# ")),
              (QStringList{"Ash"}));

    exec(QStringLiteral("INSERT INTO expenditure (name, expense_date, amount) VALUES ('feed', '03/04/2021', '12.50')"));
    exec(QStringLiteral("INSERT INTO expenditure (name, expense_date, amount) VALUES ('vet', '03/05/2022', '99')"));
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM expenditure WHERE CDate(Expense_date) >= #04/01/2021# AND "
                                    "CDate(Expense_date) < #04/01/2022# ORDER BY expense_date, id")),
              (QStringList{"feed"}));
    EXPECT_EQ(value(QStringLiteral("SELECT expense_date FROM expenditure WHERE name = 'feed'")), QStringLiteral("2021-04-03"));
}

TEST_F(JetSql, DateArithmeticAndTheClock)
{
    EXPECT_EQ(value(QStringLiteral("SELECT DateAdd('d', 30, #01/02/2020#)")), QStringLiteral("2020-02-01"));
    EXPECT_EQ(value(QStringLiteral("SELECT DateAdd('m', 1, #01/31/2020#)")), QStringLiteral("2020-02-29"));
    EXPECT_EQ(value(QStringLiteral("SELECT DateAdd('yyyy', -1, #02/29/2020#)")), QStringLiteral("2019-02-28"));
    EXPECT_EQ(value(QStringLiteral("SELECT DateAdd('h', 30, #01/02/2020#)")), QStringLiteral("2020-01-03 06:00:00"));
    EXPECT_EQ(value(QStringLiteral("SELECT DateDiff('d', #01/01/2020#, #03/01/2020#)")), QStringLiteral("60"));
    EXPECT_EQ(value(QStringLiteral("SELECT DateDiff('m', #01/31/2020#, #03/01/2020#)")), QStringLiteral("2"));
    EXPECT_EQ(value(QStringLiteral("SELECT DateDiff('yyyy', #12/31/2019#, #01/01/2020#)")), QStringLiteral("1"));
    EXPECT_EQ(value(QStringLiteral("SELECT DateValue('15/06/2020 10:00')")), QStringLiteral("2020-06-15"));
    EXPECT_EQ(value(QStringLiteral("SELECT Weekday(#01/05/2020#)")), QStringLiteral("1"));
    EXPECT_EQ(value(QStringLiteral("SELECT DatePart('q', #05/01/2020#)")), QStringLiteral("2"));
    EXPECT_EQ(value(QStringLiteral("SELECT DateSerial(2020, 14, 1)")), QStringLiteral("2021-02-01"));

    SetFixedToday(QDate(2021, 3, 4));
    EXPECT_EQ(value(QStringLiteral("SELECT Date()")), QStringLiteral("2021-03-04"));
    EXPECT_EQ(value(QStringLiteral("SELECT Year(Now())")), QStringLiteral("2021"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Young', #06/01/2020#)"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Old', #06/01/2019#)"));
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM tree WHERE dob > DateAdd('yyyy', -1, Date())")),
              (QStringList{"Young"}));
    exec(QStringLiteral("INSERT INTO vaccinations (duedate, name, done) VALUES (Date(), 'Young', 'n')"));
    EXPECT_EQ(value(QStringLiteral("SELECT duedate FROM vaccinations")), QStringLiteral("2021-03-04"));
}

// ---------------------------------------------------------------------------------------------
// The assignment rule

TEST_F(JetSql, ANumberColumnTakesNumberTextsAndTrueFalse)
{
    const QStringList written = {"'True'", "'false'", "'12.5'", "' 7 '", "'1,250'", "'abc'", "''", "True", "-1", "Null"};
    for (const QString& w : written)
        exec(QStringLiteral("INSERT INTO tree (name, sold) VALUES (%1, %1)").arg(w));
    EXPECT_EQ(column(QStringLiteral("SELECT sold FROM tree ORDER BY id")),
              (QStringList{"-1", "0", "12.5", "7", "1250", kNull, kNull, "-1", "-1", kNull}));
    exec(QStringLiteral("UPDATE tree SET deceased = 'True' WHERE sold = -1"));
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM tree WHERE deceased = True")), QStringLiteral("3"));
}

TEST_F(JetSql, ADateColumnTakesTheRegionalShortDateAndNullForTheRest)
{
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('a', '13/13/2020')"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('b', '13/01/2020')"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('c', '2020-01-13')"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('d', 'soon')"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('e', '')"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('f', '01/01/1925')"));
    SetRegionalDateOrder(DateOrder::MonthFirst);
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('g', '01/13/2020')"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('h', '13/01/2020')"));
    EXPECT_EQ(column(QStringLiteral("SELECT dob FROM tree ORDER BY name")),
              (QStringList{kNull, "2020-01-13", "2020-01-13", kNull, kNull, "1925-01-01", "2020-01-13", kNull}));

    exec(QStringLiteral("UPDATE tree SET datesold = '02/03/2021' WHERE name = 'a'"));
    EXPECT_EQ(value(QStringLiteral("SELECT datesold FROM tree WHERE name = 'a'")), QStringLiteral("2021-02-03"));
}

TEST_F(JetSql, ATextColumnTakesNumbersAsTextAndDatesInTheRegionalForm)
{
    exec(QStringLiteral("INSERT INTO tree (name, coi, tag, dateDeceased) VALUES (12.5, -1, 1E20, #01/02/2020#)"));
    EXPECT_EQ(run(QStringLiteral("SELECT name, coi, tag, dateDeceased FROM tree")).value(0),
              (QStringList{"12.5", "-1", "1E+20", "02/01/2020"}));
    SetRegionalDateOrder(DateOrder::MonthFirst);
    exec(QStringLiteral("UPDATE tree SET dateDeceased = #01/02/2020#, notes = 'x' & 3"));
    EXPECT_EQ(run(QStringLiteral("SELECT dateDeceased, notes FROM tree")).value(0), (QStringList{"01/02/2020", "x3"}));
    exec(QStringLiteral("UPDATE tree SET dob = #01/02/2020#"));
    exec(QStringLiteral("UPDATE tree SET dateDeceased = dob"));
    EXPECT_EQ(value(QStringLiteral("SELECT dateDeceased FROM tree")), QStringLiteral("01/02/2020"));
}

TEST_F(JetSql, WholeNumberColumnsRoundAsJetDoesAndRefuseWhatDoesNotFit)
{
    exec(QStringLiteral("CREATE TABLE counts (n LONG, s SHORT, c Currency)"));
    const QStringList written = {"'2.5'", "3.5", "'x'", "40000", "-2.5"};
    for (const QString& w : written)
        exec(QStringLiteral("INSERT INTO counts (n, s, c) VALUES (%1, %1, %1)").arg(w));
    EXPECT_EQ(column(QStringLiteral("SELECT n FROM counts")), (QStringList{"2", "4", kNull, "40000", "-2"}));
    EXPECT_EQ(column(QStringLiteral("SELECT s FROM counts")), (QStringList{"2", "4", kNull, kNull, "-2"}));
    exec(QStringLiteral("UPDATE counts SET c = '12.34567'"));
    EXPECT_EQ(value(QStringLiteral("SELECT c FROM counts")), QStringLiteral("12.3457"));
}

TEST_F(JetSql, InsertWithoutColumnsAndInsertFromASelectConvertToo)
{
    exec(QStringLiteral("INSERT INTO weights VALUES (Null, '05/03/2021', '10:00', 'Ash', 950)"));
    EXPECT_EQ(run(QStringLiteral("SELECT id, weightDate, weightTime, name, weight FROM weights")).value(0),
              (QStringList{"1", "2021-03-05", "10:00", "Ash", "950"}));

    exec(QStringLiteral("INSERT INTO soldstock (Offspring, DateSold) VALUES ('Ash', '15/06/2020')"));
    exec(QStringLiteral("INSERT INTO tree (name, datesold, sold) SELECT Offspring, DateSold, 'True' FROM soldstock"));
    EXPECT_EQ(run(QStringLiteral("SELECT name, datesold, sold FROM tree")).value(0),
              (QStringList{"Ash", "2020-06-15", "-1"}));
}

TEST_F(JetSql, ChangingAColumnsTypeKeepsWhatConvertsAndEmptiesTheRest)
{
    exec(QStringLiteral("CREATE TABLE old (id COUNTER PRIMARY KEY, d STRING)"));
    for (const char* v : {"'05/03/2021'", "'not a date'", "''", "Null"})
        exec(QStringLiteral("INSERT INTO old (d) VALUES (%1)").arg(QLatin1String(v)));
    exec(QStringLiteral("ALTER TABLE old ADD COLUMN temp DATE"));
    exec(QStringLiteral("Update old set temp = d "));
    EXPECT_EQ(column(QStringLiteral("SELECT temp FROM old ORDER BY id")), (QStringList{"2021-03-05", kNull, kNull, kNull}));
}

// ---------------------------------------------------------------------------------------------
// LIKE and &

TEST_F(JetSql, LikeUsesJetsWildcardsWithoutRegardToCase)
{
    addAnimals({"Ash", "apple", "Birch", "1st Prize", "A1", "50%", "a_b", "axb", "[x]", "ÉCLAIR"});
    auto like = [&](const QString& pattern) {
        return column(QStringLiteral("SELECT name FROM tree WHERE name LIKE '%1' ORDER BY id").arg(pattern));
    };
    EXPECT_EQ(like(QStringLiteral("a*")), (QStringList{"Ash", "apple", "A1", "a_b", "axb"}));
    EXPECT_EQ(like(QStringLiteral("#*")), (QStringList{"1st Prize", "50%"}));
    EXPECT_EQ(like(QStringLiteral("*%")), (QStringList{"50%"}));
    EXPECT_EQ(like(QStringLiteral("a_b")), (QStringList{"a_b"}));
    EXPECT_EQ(like(QStringLiteral("a?b")), (QStringList{"a_b", "axb"}));
    EXPECT_EQ(like(QStringLiteral("*[#]*")), QStringList());
    EXPECT_EQ(like(QStringLiteral("[!ab1-9]*")), (QStringList{"[x]", "ÉCLAIR"}));
    EXPECT_EQ(like(QStringLiteral("[[]*")), (QStringList{"[x]"}));
    EXPECT_EQ(like(QStringLiteral("éc*")), (QStringList{"ÉCLAIR"}));
    EXPECT_EQ(like(QStringLiteral("*IR*")), (QStringList{"Birch", "ÉCLAIR"}));
    EXPECT_EQ(column(QStringLiteral("SELECT count(*) FROM tree WHERE name NOT LIKE 'a*'")), (QStringList{"5"}));

    // The search list's statement, with its two blanks.
    exec(QStringLiteral("UPDATE tree SET breed = 'Rex Satin', deceased = 0, sold = 0, owner = -1 WHERE name = 'Ash'"));
    EXPECT_EQ(column(QStringLiteral("SELECT * FROM tree  WHERE breed LIKE  '*satin*' AND deceased <> -1 AND sold <> -1 "
                                    "AND owner = -1 ORDER BY name")),
              (QStringList{"1"}));
    // The result is Jet's truth: -1, as True.
    EXPECT_EQ(value(QStringLiteral("SELECT 'abc' LIKE 'A*'")), QStringLiteral("-1"));
    EXPECT_EQ(value(QStringLiteral("SELECT IIf('abc' LIKE 'A*' = True, 'yes', 'no')")), QStringLiteral("yes"));
    // Null matches nothing, not even '*'.
    EXPECT_EQ(column(QStringLiteral("SELECT count(*) FROM tree WHERE breed LIKE '*'")), (QStringList{"1"}));
}

TEST_F(JetSql, AmpersandJoinsTextAndTakesNullAsEmpty)
{
    EXPECT_EQ(value(QStringLiteral("SELECT 'x' & Null")), QStringLiteral("x"));
    EXPECT_EQ(value(QStringLiteral("SELECT Null & Null")), QString::fromLatin1(kNull));
    EXPECT_EQ(value(QStringLiteral("SELECT 1 + 2 & 'a' & 2 * 3")), QStringLiteral("3a6"));
    EXPECT_EQ(value(QStringLiteral("SELECT 'n' & 12.5")), QStringLiteral("n12.5"));
    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Ash', #01/02/2020#)"));
    EXPECT_EQ(value(QStringLiteral("SELECT name & ' born ' & dob & breed FROM tree")), QStringLiteral("Ash born 02/01/2020"));
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM tree WHERE name & 'x' = 'ASHX'")), QStringLiteral("0"));
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM tree WHERE name = 'as' & 'h'")), QStringLiteral("1"));
}

// ---------------------------------------------------------------------------------------------
// Functions

TEST_F(JetSql, FormatGivesJetsTexts)
{
    auto fmt = [&](const char* what, const char* format) {
        return value(QStringLiteral("SELECT Format(%1, '%2')").arg(QLatin1String(what), QLatin1String(format)));
    };
    EXPECT_EQ(fmt("#01/02/2020#", "yyyy-mm-dd"), QStringLiteral("2020-01-02"));
    EXPECT_EQ(fmt("#01/02/2020#", "mm/dd/yyyy"), QStringLiteral("01/02/2020"));
    EXPECT_EQ(fmt("#01/02/2020#", "dd/mm/yyyy"), QStringLiteral("02/01/2020"));
    EXPECT_EQ(fmt("#01/02/2020#", "Short Date"), QStringLiteral("02/01/2020"));
    EXPECT_EQ(fmt("#01/02/2020#", "Long Date"), QStringLiteral("02 January 2020"));
    EXPECT_EQ(fmt("#01/02/2020#", "yyyy"), QStringLiteral("2020"));
    EXPECT_EQ(fmt("#01/02/2020#", "mm"), QStringLiteral("01"));
    EXPECT_EQ(fmt("#01/02/2020#", "dd"), QStringLiteral("02"));
    EXPECT_EQ(fmt("#01/02/2020#", "mmm"), QStringLiteral("Jan"));
    EXPECT_EQ(fmt("#01/02/2020#", "mmmm"), QStringLiteral("January"));
    EXPECT_EQ(fmt("#01/02/2020#", "mmm d, yyyy"), QStringLiteral("Jan 2, 2020"));
    EXPECT_EQ(fmt("#01/02/2020#", "dddd"), QStringLiteral("Thursday"));
    EXPECT_EQ(fmt("#01/02/2020 13:05#", "hh:mm"), QStringLiteral("13:05"));
    EXPECT_EQ(fmt("#01/02/2020 13:05#", "hh:mmAMPM"), QStringLiteral("01:05PM"));
    EXPECT_EQ(fmt("#01/02/2020 09:05#", "h:nn am/pm"), QStringLiteral("9:05 am"));
    EXPECT_EQ(fmt("'2020-01-02'", "yyyy"), QStringLiteral("2020"));
    EXPECT_EQ(fmt("'15/06/2020'", "mmmm"), QStringLiteral("June"));
    EXPECT_EQ(fmt("'no date'", "yyyy"), QStringLiteral("no date"));
    EXPECT_EQ(fmt("Null", "yyyy"), QString::fromLatin1(kNull));

    EXPECT_EQ(fmt("1234.5", "0.00"), QStringLiteral("1234.50"));
    EXPECT_EQ(fmt("1234.5", "#,##0.00"), QStringLiteral("1,234.50"));
    EXPECT_EQ(fmt("1234.5", "Currency"), QStringLiteral("$1,234.50"));
    EXPECT_EQ(fmt("-3", "Currency"), QStringLiteral("($3.00)"));
    EXPECT_EQ(fmt("0.125", "0.00"), QStringLiteral("0.13"));
    EXPECT_EQ(fmt("-0.5", "0"), QStringLiteral("-1"));
    EXPECT_EQ(fmt("0.256", "0%"), QStringLiteral("26%"));
    EXPECT_EQ(fmt("12345678", "#,##0"), QStringLiteral("12,345,678"));
    EXPECT_EQ(fmt("3", "000"), QStringLiteral("003"));
    EXPECT_EQ(fmt("1.5", "#.##"), QStringLiteral("1.5"));
    EXPECT_EQ(fmt("'12.5'", "0.0"), QStringLiteral("12.5"));
    EXPECT_EQ(fmt("1234.5", "Standard"), QStringLiteral("1,234.50"));
    EXPECT_EQ(fmt("12345", "0.00E+00"), QStringLiteral("1.23E+04"));
    EXPECT_EQ(fmt("0", "Yes/No"), QStringLiteral("No"));

    SetRegionalDateOrder(DateOrder::MonthFirst);
    EXPECT_EQ(fmt("#01/02/2020#", "Short Date"), QStringLiteral("01/02/2020"));
    EXPECT_EQ(fmt("#01/02/2020#", "Long Date"), QStringLiteral("Thursday, January 2, 2020"));

    exec(QStringLiteral("INSERT INTO tree (name, dob) VALUES ('Ash', #01/02/2020#)"));
    EXPECT_EQ(value(QStringLiteral("SELECT Format(dob, 'yyyy-mm-dd') FROM tree")), QStringLiteral("2020-01-02"));
}

TEST_F(JetSql, TextFunctionsGiveJetsResults)
{
    EXPECT_EQ(value(QStringLiteral("SELECT '[' & Trim('  a b  ') & ']'")), QStringLiteral("[a b]"));
    EXPECT_EQ(value(QStringLiteral("SELECT '[' & LTrim('  a  ') & RTrim('  b  ') & ']'")), QStringLiteral("[a    b]"));
    EXPECT_EQ(value(QStringLiteral("SELECT UCase('abc') & LCase('DEF')")), QStringLiteral("ABCdef"));
    EXPECT_EQ(value(QStringLiteral("SELECT Len('abcd') + Len(12.5)")), QStringLiteral("8"));
    EXPECT_EQ(value(QStringLiteral("SELECT Left('abcd', 2) & Right('abcd', 1) & Mid('abcdef', 2, 3) & Mid('abc', 5)")),
              QStringLiteral("abdbcd"));
    EXPECT_EQ(value(QStringLiteral("SELECT InStr('Hello', 'L')")), QStringLiteral("3"));
    EXPECT_EQ(value(QStringLiteral("SELECT InStr(4, 'Hello', 'l')")), QStringLiteral("4"));
    EXPECT_EQ(value(QStringLiteral("SELECT InStr('Hello', 'z')")), QStringLiteral("0"));
    EXPECT_EQ(value(QStringLiteral("SELECT Replace('a-b-C', '-', '+')")), QStringLiteral("a+b+C"));
    EXPECT_EQ(value(QStringLiteral("SELECT Replace('abcABC', 'b', '')")), QStringLiteral("acAC"));
    EXPECT_EQ(value(QStringLiteral("SELECT Str(12) & '|' & Str(-3) & '|' & CStr(12.5)")), QStringLiteral(" 12|-3|12.5"));
    EXPECT_EQ(value(QStringLiteral("SELECT Chr(65) & Asc('a')")), QStringLiteral("A97"));
    EXPECT_EQ(value(QStringLiteral("SELECT Left(Null, 1)")), QString::fromLatin1(kNull));
    EXPECT_EQ(value(QStringLiteral("SELECT Mid('abc', 0)")), QString::fromLatin1(kNull));
}

TEST_F(JetSql, ChoicesConversionsAndArithmetic)
{
    EXPECT_EQ(value(QStringLiteral("SELECT Nz(Null, 'u')")), QStringLiteral("u"));
    EXPECT_EQ(value(QStringLiteral("SELECT Nz('a', 'u')")), QStringLiteral("a"));
    EXPECT_EQ(value(QStringLiteral("SELECT '[' & Nz(Null) & ']'")), QStringLiteral("[]"));
    EXPECT_EQ(value(QStringLiteral("SELECT IIf(1 = 1, 'a', 'b')")), QStringLiteral("a"));
    EXPECT_EQ(value(QStringLiteral("SELECT IIf(Null, 'a', 'b')")), QStringLiteral("b"));
    EXPECT_EQ(value(QStringLiteral("SELECT IIf(IsNull(Null), 'none', 'some')")), QStringLiteral("none"));
    EXPECT_EQ(value(QStringLiteral("SELECT Val('12abc')")), QStringLiteral("12"));
    EXPECT_EQ(value(QStringLiteral("SELECT IIf(Val('12abc') = '12.0', 'same', 'other')")), QStringLiteral("same"));
    EXPECT_EQ(value(QStringLiteral("SELECT Val(' 1 2 3.5kg')")), QStringLiteral("123.5"));
    EXPECT_EQ(value(QStringLiteral("SELECT Val('abc')")), QStringLiteral("0"));
    EXPECT_EQ(value(QStringLiteral("SELECT Val('&H1F')")), QStringLiteral("31"));
    EXPECT_EQ(value(QStringLiteral("SELECT CInt(2.5) & CInt(3.5) & CInt('-1.5')")), QStringLiteral("24-2"));
    EXPECT_EQ(value(QStringLiteral("SELECT CInt('40000')")), QString::fromLatin1(kNull));
    EXPECT_EQ(value(QStringLiteral("SELECT CLng('12,345') + CDbl('1.5')")), QStringLiteral("12346.5"));
    EXPECT_EQ(value(QStringLiteral("SELECT Int(-2.5) & Fix(-2.5) & Abs(-3) & Sgn(-7)")), QStringLiteral("-3-23-1"));
    EXPECT_EQ(value(QStringLiteral("SELECT Round(2.5) & '|' & Round(2.675, 2) & '|' & Round(0.125, 2)")),
              QStringLiteral("2|2.68|0.12"));
    EXPECT_EQ(value(QStringLiteral("SELECT 7 \\ 2 & '|' & 7 Mod 3 & '|' & 7 / 2 & '|' & 2 ^ 10")),
              QStringLiteral("3|1|3.5|1024"));
    EXPECT_EQ(value(QStringLiteral("SELECT -7 Mod 3")), QStringLiteral("-1"));
    EXPECT_EQ(value(QStringLiteral("SELECT IsNumeric('12') & IsNumeric('x') & IsDate('15/06/2020')")),
              QStringLiteral("-10-1"));
}

TEST_F(JetSql, FirstLastAndComputedColumnNames)
{
    addAnimals({"Ash", "Birch", "Cedar"});
    const QVector<QStringList> rows = run(QStringLiteral("SELECT Count(*), First(name), Last(name) FROM tree"));
    EXPECT_EQ(rows.value(0), (QStringList{"3", "Ash", "Cedar"}));
    EXPECT_EQ(lastColumnNames, (QStringList{"Expr1000", "Expr1001", "Expr1002"}));
    run(QStringLiteral("SELECT name, Len(name) AS size FROM tree"));
    EXPECT_EQ(lastColumnNames, (QStringList{"name", "size"}));
    EXPECT_EQ(column(QStringLiteral("SELECT TOP 2 name FROM tree ORDER BY name DESC")), (QStringList{"Cedar", "Birch"}));
}

// ---------------------------------------------------------------------------------------------
// Names, texts and safety

TEST_F(JetSql, DoubleQuotedWordsAreColumnsOrTexts)
{
    exec(QStringLiteral("INSERT INTO tree (name, breed) VALUES (\"Ash\", \"it's\")"));
    EXPECT_EQ(value(QStringLiteral("SELECT \"breed\" FROM tree WHERE \"name\" = \"ash\"")), QStringLiteral("it's"));
    EXPECT_EQ(value(QStringLiteral("SELECT [tree].[name] FROM [tree]")), QStringLiteral("Ash"));
    // A bracketed name that names nothing is an error, never a text.
    EXPECT_THROW(run(QStringLiteral("SELECT [nosuch] FROM tree")), std::runtime_error);
}

TEST_F(JetSql, TextComparisonAndDistinctIgnoreCase)
{
    addAnimals({"ash", "ASH", "Birch"});
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM tree WHERE name = 'Ash'")), QStringLiteral("2"));
    EXPECT_EQ(column(QStringLiteral("SELECT DISTINCT name FROM tree")).size(), 2);
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM tree WHERE name > 'b' ORDER BY name")), (QStringList{"Birch"}));
}

TEST_F(JetSql, HostileTextStaysAValueAndASecondStatementNeverRuns)
{
    addAnimals({"$; DROP TABLE tree; --", "O''Brien"});
    exec(QStringLiteral("INSERT INTO tree (name) VALUES ('''; DROP TABLE tree; --')"));
    EXPECT_EQ(column(QStringLiteral("SELECT name FROM tree ORDER BY id")),
              (QStringList{"$; DROP TABLE tree; --", "O'Brien", "'; DROP TABLE tree; --"}));

    EXPECT_EQ(jetError([&] { exec(QStringLiteral("DELETE * FROM tree; DROP TABLE tree")); }), 3142);
    EXPECT_EQ(jetError([&] { run(QStringLiteral("SELECT * FROM tree WHERE name = ''; DROP TABLE tree; --'")); }), 3142);
    EXPECT_EQ(jetError([&] { exec(QStringLiteral("UPDATE tree SET name = 'x' -- ; DROP TABLE tree")); }), 3142);
    EXPECT_EQ(value(QStringLiteral("SELECT count(*) FROM tree")), QStringLiteral("3"));

    // Jet's "--" is two minus signs, never a comment that hides the rest.
    EXPECT_EQ(value(QStringLiteral("SELECT 5 --1")), QStringLiteral("6"));
}

} // namespace
