// SPDX-License-Identifier: GPL-3.0-or-later
// The engine's operations and its errors, on real files.
#include "StoreTest.h"

#include "store/Database.h"

#include <QFile>

namespace {

class Engine : public StoreTest {
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        db = Database::CreateDatabase(path(QStringLiteral("engine.cav")));
        db.Execute(QStringLiteral("CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING, sex STRING, dob DATE, "
                                  "sold NUMBER, notes MEMO)"));
    }
    void add(const QString& values)
    {
        db.Execute(QStringLiteral("INSERT INTO tree (name, sex, dob, sold) VALUES (") + values + QStringLiteral(")"));
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
    Database db;
};

TEST_F(Engine, RecordsetWalksForwardAndBackAndCountsAsJetDoes)
{
    add(QStringLiteral("'Ash', 'male', #03/15/2020#, -1"));
    add(QStringLiteral("'Birch', 'female', #04/01/2021#, 0"));
    add(QStringLiteral("'Cedar', 'female', Null, 0"));

    Recordset rs = db.OpenRecordset(QStringLiteral("Select * From tree ORDER by name"));
    EXPECT_FALSE(rs.Eof());
    EXPECT_FALSE(rs.Bof());
    EXPECT_EQ(rs.RecordCount(), 1); // exact only after MoveLast
    EXPECT_EQ(rs.Fields(QStringLiteral("NAME")).toString(), QStringLiteral("Ash"));
    EXPECT_EQ(rs.Fields(QStringLiteral("dob")).toDateTime(), QDateTime(QDate(2020, 3, 15), QTime(0, 0)));
    EXPECT_EQ(rs.Fields(QStringLiteral("sold")).toLongLong(), -1);
    rs.MoveLast();
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_EQ(rs.Fields(QStringLiteral("name")).toString(), QStringLiteral("Cedar"));
    EXPECT_TRUE(rs.Fields(QStringLiteral("dob")).isNull());
    rs.MovePrevious();
    EXPECT_EQ(rs.Fields(QStringLiteral("name")).toString(), QStringLiteral("Birch"));
    rs.MoveFirst();
    EXPECT_EQ(rs.Fields(0).toLongLong(), 1);
    rs.MovePrevious();
    EXPECT_TRUE(rs.Bof());
    EXPECT_EQ(jetError([&] { rs.Fields(QStringLiteral("name")); }), 3021);
    rs.MoveFirst();
    rs.MoveNext();
    rs.MoveNext();
    rs.MoveNext();
    EXPECT_TRUE(rs.Eof());
    EXPECT_EQ(jetError([&] { rs.MoveNext(); }), 3021);
}

TEST_F(Engine, EmptyResultIsBothEofAndBof)
{
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = 'nobody'"));
    EXPECT_TRUE(rs.Eof());
    EXPECT_TRUE(rs.Bof());
    EXPECT_EQ(rs.RecordCount(), 0);
    EXPECT_EQ(jetError([&] { rs.MoveFirst(); }), 3021);
}

TEST_F(Engine, NullIsNotTheEmptyText)
{
    db.Execute(QStringLiteral("INSERT INTO tree (name, notes) VALUES ('', Null)"));
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT name, notes FROM tree"));
    EXPECT_FALSE(rs.Fields(QStringLiteral("name")).isNull());
    EXPECT_EQ(rs.Fields(QStringLiteral("name")).toString(), QString());
    EXPECT_TRUE(rs.Fields(QStringLiteral("notes")).isNull());
}

TEST_F(Engine, RefusalsCarryJetNumbers)
{
    EXPECT_EQ(jetError([&] { db.Execute(QStringLiteral("CREATE TABLE tree (id COUNTER PRIMARY KEY)")); }), 3010);
    EXPECT_EQ(jetError([&] { db.Execute(QStringLiteral("UPDATE tree SET nosuch = 1")); }), 3061);
    EXPECT_EQ(jetError([&] { db.Execute(QStringLiteral("INSERT INTO tree (nosuch) VALUES (1)")); }), 3127);
    EXPECT_EQ(jetError([&] { db.OpenRecordset(QStringLiteral("SELECT * FROM nosuch")); }), 3078);
    EXPECT_EQ(jetError([&] { db.Execute(QStringLiteral("SELECT * FROM tree")); }), 3065);
    EXPECT_EQ(jetError([&] { db.TableDefs(QStringLiteral("nosuch")); }), 3265);
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM tree"));
    EXPECT_EQ(jetError([&] { rs.Fields(QStringLiteral("nosuch")); }), 3265);
}

TEST_F(Engine, OnlyTheFirstStatementIsEverConsidered)
{
    add(QStringLiteral("'Ash', 'male', Null, 0"));
    EXPECT_EQ(jetError([&] { db.Execute(QStringLiteral("DELETE * FROM tree; DROP TABLE tree")); }), 3142);
    EXPECT_EQ(jetError([&] {
                  db.OpenRecordset(QStringLiteral("SELECT * FROM tree WHERE name = ''; DROP TABLE tree; --'"));
              }),
              3142);
    // The hostile text as a value, as the program writes it after encoding its apostrophes.
    add(QStringLiteral("'$; DROP TABLE tree; --', 'male', Null, 0"));
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT count(*) AS n FROM tree"));
    EXPECT_EQ(rs.Fields(QStringLiteral("n")).toInt(), 2);
    EXPECT_TRUE(db.hasTable(QStringLiteral("TREE")));
}

TEST_F(Engine, TextComparesWithoutRegardToCase)
{
    add(QStringLiteral("'ash', 'male', Null, 0"));
    add(QStringLiteral("'ASH', 'male', Null, 0"));
    add(QStringLiteral("'Birch', 'female', Null, 0"));
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT count(*) AS n FROM tree WHERE name = 'Ash'"));
    EXPECT_EQ(rs.Fields(QStringLiteral("n")).toInt(), 2);
    rs = db.OpenRecordset(QStringLiteral("SELECT DISTINCT name FROM tree"));
    rs.MoveLast();
    EXPECT_EQ(rs.RecordCount(), 2);
    rs = db.OpenRecordset(QStringLiteral("SELECT name FROM tree WHERE name Like 'b*'"));
    EXPECT_EQ(rs.Fields(QStringLiteral("name")).toString(), QStringLiteral("Birch"));
}

TEST_F(Engine, NestedRecordsetsOnOneTextAndAStatementRunTwice)
{
    add(QStringLiteral("'Ash', 'male', Null, 0"));
    add(QStringLiteral("'Birch', 'female', Null, 0"));
    const QString sql = QStringLiteral("SELECT name FROM tree ORDER BY name");
    Recordset outer = db.OpenRecordset(sql);
    QStringList seen;
    while (!outer.Eof()) {
        Recordset inner = db.OpenRecordset(sql);
        inner.MoveLast();
        seen << outer.Fields(QStringLiteral("name")).toString() + QString::number(inner.RecordCount());
        outer.MoveNext();
    }
    EXPECT_EQ(seen, QStringList({QStringLiteral("Ash2"), QStringLiteral("Birch2")}));
    EXPECT_EQ(db.Execute(QStringLiteral("UPDATE tree SET sold = -1")), 2);
    EXPECT_EQ(db.Execute(QStringLiteral("UPDATE tree SET sold = -1")), 2);
}

TEST_F(Engine, ColumnsAreMadeByTypeNumberAndReadBack)
{
    TableDef td = db.TableDefs(QStringLiteral("Tree"));
    const QList<int> types = {jet::dbBoolean, jet::dbInteger, jet::dbLong, jet::dbCurrency,
                              jet::dbDouble,  jet::dbDate,    jet::dbText, jet::dbMemo};
    for (int t : types)
        td.Fields().Append(td.CreateField(QStringLiteral("c") + QString::number(t), t));
    for (int t : types)
        EXPECT_EQ(td.Fields()(QStringLiteral("C") + QString::number(t)).Type(), t) << t;

    EXPECT_EQ(td.Fields()(QStringLiteral("id")).Attributes(), jet::dbAutoIncrField | jet::dbFixedField);
    EXPECT_EQ(td.Fields()(QStringLiteral("name")).Attributes(), jet::dbVariableField);
    EXPECT_TRUE(td.Fields()(QStringLiteral("name")).AllowZeroLength());

    EXPECT_EQ(jetError([&] { td.Fields().Append(td.CreateField(QStringLiteral("NAME"), jet::dbText)); }), 3191);
    EXPECT_EQ(jetError([&] { td.Fields().Delete(QStringLiteral("nosuch")); }), 3265);
    EXPECT_EQ(jetError([&] { td.Fields()(QStringLiteral("sold")).setAllowZeroLength(true); }), 3219);
}

TEST_F(Engine, RenameDeleteAndDefaultKeepTheRows)
{
    add(QStringLiteral("'Ash', 'male', #03/15/2020#, -1"));
    TableDef td = db.TableDefs(QStringLiteral("tree"));
    td.Fields()(QStringLiteral("sex")).setName(QStringLiteral("gender"));
    td.Fields().Delete(QStringLiteral("notes"));
    Field counted = td.CreateField(QStringLiteral("litters"), jet::dbLong);
    counted.setDefaultValue(0);
    td.Fields().Append(counted);
    db.Execute(QStringLiteral("INSERT INTO tree (name, gender) VALUES ('Birch', 'female')"));

    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM tree ORDER BY id"));
    EXPECT_EQ(rs.Fields(QStringLiteral("gender")).toString(), QStringLiteral("male"));
    EXPECT_EQ(rs.FieldIndex(QStringLiteral("notes")), -1);
    rs.MoveNext();
    EXPECT_EQ(rs.Fields(QStringLiteral("litters")).toInt(), 0);
    EXPECT_FALSE(rs.Fields(QStringLiteral("litters")).isNull());
}

TEST_F(Engine, AnAutoNumberedKeyAppendedNumbersTheRowsAfresh)
{
    db.Execute(QStringLiteral("CREATE TABLE contacts (id LONG, name STRING)"));
    db.Execute(QStringLiteral("INSERT INTO contacts (id, name) VALUES (7, 'Vet')"));
    db.Execute(QStringLiteral("INSERT INTO contacts (id, name) VALUES (7, 'Feed store')"));
    TableDef td = db.TableDefs(QStringLiteral("contacts"));
    td.Fields().Delete(QStringLiteral("id"));
    Field id = td.CreateField(QStringLiteral("ID"), jet::dbLong);
    id.setAttributes(id.Attributes() + jet::dbAutoIncrField);
    td.Fields().Append(id);
    Index pk = td.CreateIndex(QStringLiteral("PrimaryKey"));
    pk.Primary = true;
    pk.Fields << QStringLiteral("ID");
    td.Indexes().Append(pk);

    EXPECT_EQ(td.Fields()(QStringLiteral("id")).Attributes(), 17);
    EXPECT_TRUE(td.Indexes().contains(QStringLiteral("PrimaryKey")));
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT ID, name FROM contacts ORDER BY ID"));
    EXPECT_EQ(rs.Fields(QStringLiteral("ID")).toInt(), 1);
    EXPECT_EQ(rs.Fields(QStringLiteral("name")).toString(), QStringLiteral("Vet"));
    rs.MoveNext();
    EXPECT_EQ(rs.Fields(QStringLiteral("ID")).toInt(), 2);
    db.Execute(QStringLiteral("INSERT INTO contacts (name) VALUES ('Judge')"));
    rs = db.OpenRecordset(QStringLiteral("SELECT ID FROM contacts WHERE name = 'Judge'"));
    EXPECT_EQ(rs.Fields(QStringLiteral("ID")).toInt(), 3);
}

TEST_F(Engine, TransactionsCommitOrRollBackWhole)
{
    {
        Transaction t(db);
        add(QStringLiteral("'Ash', 'male', Null, 0"));
        add(QStringLiteral("'Birch', 'female', Null, 0"));
    } // no commit: rolled back
    {
        Transaction t(db);
        add(QStringLiteral("'Cedar', 'female', Null, 0"));
        t.commit();
    }
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT name FROM tree"));
    rs.MoveLast();
    EXPECT_EQ(rs.RecordCount(), 1);
    EXPECT_EQ(rs.Fields(QStringLiteral("name")).toString(), QStringLiteral("Cedar"));
}

TEST_F(Engine, AClosedDatabaseRefusesAndClosesTwiceQuietly)
{
    Recordset rs = db.OpenRecordset(QStringLiteral("SELECT * FROM tree"));
    db.Close();
    db.Close();
    EXPECT_EQ(jetError([&] { db.Execute(QStringLiteral("DELETE * FROM tree")); }), 3420);
    EXPECT_FALSE(db.isOpen());
}

TEST_F(Engine, CreatingOverAFileAndOpeningNoDatabaseFail)
{
    EXPECT_EQ(jetError([&] { Database::CreateDatabase(path(QStringLiteral("engine.cav"))); }), 3204);
    QFile junk(path(QStringLiteral("junk.cav")));
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(4096, 'x'));
    junk.close();
    EXPECT_EQ(jetError([&] { Database::OpenDatabase(path(QStringLiteral("junk.cav"))); }), 3343);
    EXPECT_EQ(jetError([&] { Database::OpenDatabase(path(QStringLiteral("missing.cav"))); }), 3024);
}

} // namespace

namespace {

class Literals : public StoreTest {};

// Statements that differ only in their text literals share one prepared statement; each use must
// still see its own literals, also while another use of the same shape is open.
TEST_F(Literals, EachUseOfASharedShapeSeesItsOwnText)
{
    Database db = Database::CreateDatabase(path(QStringLiteral("l.cav")));
    db.Execute(QStringLiteral("CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING, ps STRING)"));
    db.Execute(QStringLiteral("INSERT INTO tree (name, ps) VALUES ('Ash', 'Oak')"));
    db.Execute(QStringLiteral("INSERT INTO tree (name, ps) VALUES ('It''s Birch', 'Ash')"));
    db.Execute(QStringLiteral("INSERT INTO tree (name, ps) VALUES ('#1 [x]', '')"));

    auto sire = [&](const QString& name) {
        Recordset rs = db.OpenRecordset(QStringLiteral("SELECT ps FROM tree WHERE name = '") + name + QStringLiteral("'"));
        return rs.Eof() ? QStringLiteral("<none>") : rs.Fields(0).toString();
    };
    EXPECT_EQ(sire(QStringLiteral("Ash")), QStringLiteral("Oak"));
    EXPECT_EQ(sire(QStringLiteral("It''s Birch")), QStringLiteral("Ash"));
    EXPECT_EQ(sire(QStringLiteral("#1 [x]")), QString());
    EXPECT_EQ(sire(QStringLiteral("Nobody")), QStringLiteral("<none>"));

    Recordset outer = db.OpenRecordset(QStringLiteral("SELECT name FROM tree WHERE ps = 'Oak'"));
    Recordset inner = db.OpenRecordset(QStringLiteral("SELECT name FROM tree WHERE ps = 'Ash'"));
    EXPECT_EQ(outer.Fields(0).toString(), QStringLiteral("Ash"));
    EXPECT_EQ(inner.Fields(0).toString(), QStringLiteral("It's Birch"));

    EXPECT_EQ(db.Execute(QStringLiteral("UPDATE tree SET ps = 'Elm' WHERE name = 'Ash'")), 1);
    EXPECT_EQ(db.Execute(QStringLiteral("UPDATE tree SET ps = 'Elm' WHERE name = 'Nobody'")), 0);
    EXPECT_EQ(sire(QStringLiteral("Ash")), QStringLiteral("Elm"));
}

} // namespace
