// SPDX-License-Identifier: GPL-3.0-or-later
// Each data file reads its dates in the order of its own country, whatever file the window has open.
#include "StoreTest.h"
#include "store/Database.h"

namespace {

class FileDates : public StoreTest {
protected:
    Database make(const QString& name, const QString& country)
    {
        Database db = Database::CreateDatabase(path(name));
        db.Execute(QStringLiteral("CREATE TABLE cavyuser (fldCountry TEXT(50))"));
        db.Execute(QStringLiteral("CREATE TABLE tree (name TEXT(50), DOB DATETIME)"));
        db.Execute(QStringLiteral("INSERT INTO cavyuser (fldCountry) VALUES ('%1')").arg(country));
        return db;
    }
    static QString value(Database& db, const QString& expression)
    {
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT ") + expression + QStringLiteral(" FROM cavyuser"));
        return rs.Fields(0).toString();
    }
    static QString storedDob(Database& db)
    {
        db.Execute(QStringLiteral("DELETE FROM tree"));
        db.Execute(QStringLiteral("INSERT INTO tree (name, DOB) VALUES ('Clover', '02/03/2020')"));
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT Format(DOB, 'yyyy-mm-dd') FROM tree"));
        return rs.Fields(0).toString();
    }
};

TEST_F(FileDates, TwoFilesOpenSideBySideEachReadTheirOwnWay)
{
    // The window's own order must not leak into either file.
    SetRegionalDateOrder(DateOrder::DayFirst);
    Database us = make(QStringLiteral("us.cav"), QStringLiteral("United States"));
    Database uk = make(QStringLiteral("uk.cav"), QStringLiteral("United Kingdom"));
    Database none = make(QStringLiteral("none.cav"), QString());
    Database odd = make(QStringLiteral("odd.cav"), QStringLiteral("Atlantis"));

    struct Case {
        const char* file;
        Database* db;
        const char* dob, *cdate, *shortDate;
    };
    const Case cases[] = {
        {"US", &us, "2020-02-03", "2020-02-03", "02/03/2020"},
        {"UK", &uk, "2020-03-02", "2020-03-02", "02/03/2020"},
        {"no country", &none, "2020-03-02", "2020-03-02", "02/03/2020"},
        {"unknown country", &odd, "2020-03-02", "2020-03-02", "02/03/2020"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        EXPECT_EQ(storedDob(*c.db), c.dob);
        EXPECT_EQ(value(*c.db, QStringLiteral("Format(CDate('02/03/2020'), 'yyyy-mm-dd')")), c.cdate);
        // The short date is written back in the order it was read: the same text either way.
        EXPECT_EQ(value(*c.db, QStringLiteral("Format(CDate('02/03/2020'), 'Short Date')")), c.shortDate);
    }
    EXPECT_EQ(value(us, QStringLiteral("Format(#2020-12-25#, 'Short Date')")), "12/25/2020");
    EXPECT_EQ(value(uk, QStringLiteral("Format(#2020-12-25#, 'Short Date')")), "25/12/2020");
    EXPECT_EQ(us.dateOrder(), DateOrder::MonthFirst);
    EXPECT_EQ(uk.dateOrder(), DateOrder::DayFirst);
    EXPECT_EQ(RegionalDateOrder(), DateOrder::DayFirst);
}

TEST_F(FileDates, ChangingTheCountryByStatementChangesThatFileOnly)
{
    Database a = make(QStringLiteral("a.cav"), QStringLiteral("United Kingdom"));
    Database b = make(QStringLiteral("b.cav"), QStringLiteral("United Kingdom"));
    EXPECT_EQ(storedDob(a), "2020-03-02");
    a.Execute(QStringLiteral("UPDATE cavyuser SET fldCountry = 'United States'"));
    EXPECT_EQ(storedDob(a), "2020-02-03");
    EXPECT_EQ(storedDob(b), "2020-03-02");
    a.Execute(QStringLiteral("DELETE FROM cavyuser"));
    EXPECT_EQ(storedDob(a), "2020-03-02") << "a file with no settings row reads day first";
}

} // namespace
