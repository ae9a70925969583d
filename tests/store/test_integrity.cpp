// SPDX-License-Identifier: GPL-3.0-or-later
// The integrity check on files built in the shapes older versions left behind.
#include "StoreTest.h"

#include "base/Log.h"
#include "store/DataFile.h"
#include "store/IntegrityCheck.h"
#include "store/Schema.h"
#include "store/User.h"

#include <QFile>

namespace {

class Integrity : public StoreTest {
protected:
    Database makeFile(const QString& name)
    {
        EXPECT_TRUE(CreateDataFile(name, env->dataFolder()));
        return OpenWithPassword(path(name));
    }

    // A file as an old version left it: missing columns, old columns, text where dates now stand.
    Database oldFile(const QString& version)
    {
        Database db = makeFile(QStringLiteral("old.cav"));
        db.Execute(QStringLiteral("CREATE TABLE tree (id COUNTER PRIMARY KEY, name STRING, breed STRING, sex STRING, "
                                  "dob DATE, ps STRING, pd STRING, journal MEMO, title STRING, ancestor NUMBER)"));
        db.Execute(QStringLiteral("CREATE INDEX title ON tree (title)"));
        db.Execute(QStringLiteral("INSERT INTO tree (name, sex, ancestor, journal) VALUES ('Ash', 'male', 0, 'Bought at the show')"));
        db.Execute(QStringLiteral("INSERT INTO tree (name, sex, ancestor) VALUES ('Birch', 'female', 1)"));
        db.Execute(QStringLiteral("CREATE TABLE cavyuser (ID COUNTER PRIMARY KEY, fldGestation STRING, "
                                  "fldWean STRING, fldVersion STRING, fldStartNews STRING)"));
        db.Execute(QStringLiteral("INSERT INTO cavyuser (fldGestation, fldWean, fldVersion) VALUES ('31', 'six', '") +
                   version + QStringLiteral("')"));
        db.Execute(QStringLiteral("CREATE TABLE weights (id COUNTER PRIMARY KEY, weightDate STRING, name STRING, weight STRING)"));
        db.Execute(QStringLiteral("INSERT INTO weights (weightDate, name, weight) VALUES ('2019-05-04', 'Ash', '2.5')"));
        db.Execute(QStringLiteral("INSERT INTO weights (weightDate, name, weight) VALUES ('last spring', 'Ash', '2.1')"));
        db.Execute(QStringLiteral("CREATE TABLE contacts (id LONG, name STRING, notes STRING)"));
        db.Execute(QStringLiteral("INSERT INTO contacts (id, name, notes) VALUES (0, 'Vet', 'Tuesdays')"));
        db.Execute(QStringLiteral("INSERT INTO contacts (id, name) VALUES (0, 'Feed store')"));
        db.Execute(QStringLiteral("CREATE TABLE print (id COUNTER PRIMARY KEY, FontSize NUMBER, PrintWhat NUMBER)"));
        db.Execute(QStringLiteral("INSERT INTO print (FontSize, PrintWhat) VALUES (10, 1)"));
        db.Execute(QStringLiteral("CREATE TABLE Breeding (ID COUNTER PRIMARY KEY, Boar STRING, Sow STRING, Colour STRING, Sold STRING)"));
        db.Execute(QStringLiteral("INSERT INTO Breeding (Boar, Sow, Colour) VALUES ('Ash', 'Birch', 'two agouti')"));
        return db;
    }

    static QStringList columns(Database& db, const QString& table)
    {
        QStringList names;
        TableFields f = db.TableDefs(table).Fields();
        for (int i = 0; i < f.Count(); ++i)
            names << f[i].Name();
        return names;
    }

    static QVariant value(Database& db, const QString& sql)
    {
        Recordset rs = db.OpenRecordset(sql);
        return rs.Eof() ? QVariant() : rs.Fields(0);
    }

    static QString errorLog()
    {
        QFile f(ErrorLogPath());
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
};

TEST_F(Integrity, ANewFileGetsEveryTableTheSettingsRowAndTheStamp)
{
    Database db = makeFile(QStringLiteral("new.cav"));
    CheckDatabase(db, false, false);
    for (const Schema::TableStatement& t : Schema::Tables())
        EXPECT_TRUE(db.hasTable(t.table)) << t.table.toStdString();
    EXPECT_TRUE(HasSettingsRow(db));
    EXPECT_EQ(GetVersionText(db), ProgramVersionText());
    EXPECT_EQ(value(db, QStringLiteral("SELECT fldAnimal FROM cavyuser")).toString(), QStringLiteral("Animal"));
    EXPECT_FALSE(columns(db, QStringLiteral("Breeding")).contains(QStringLiteral("Sold"), Qt::CaseInsensitive));
    EXPECT_TRUE(columns(db, QStringLiteral("cavyuser")).contains(QStringLiteral("fldLogo")));
    EXPECT_EQ(errorLog(), QString()); // nothing failed, so nothing is logged
}

TEST_F(Integrity, AFileWithTheCurrentStampOpensWithNoSchemaCall)
{
    {
        Database db = makeFile(QStringLiteral("new.cav"));
        CheckDatabase(db, false, false);
    }
    env->ui().clear();
    Database db = OpenWithPassword(path(QStringLiteral("new.cav")));
    const qint64 before = db.schemaCallCount();
    CheckDatabase(db, false, false);
    EXPECT_EQ(db.schemaCallCount(), before);
    EXPECT_TRUE(env->ui().calls().isEmpty());
}

TEST_F(Integrity, AnOldFileIsBroughtUpToDate)
{
    Database db = oldFile(QStringLiteral("4.47"));
    CheckDatabase(db, false, false);

    const QStringList tree = columns(db, QStringLiteral("tree"));
    for (const char* c : {"colour", "cage", "customField12", "coi", "owner", "breeder", "callname", "fatherId"})
        EXPECT_TRUE(tree.contains(QString::fromLatin1(c), Qt::CaseInsensitive)) << c;
    EXPECT_FALSE(tree.contains(QStringLiteral("title")));
    EXPECT_FALSE(db.TableDefs(QStringLiteral("tree")).Indexes().contains(QStringLiteral("title")));
    EXPECT_FALSE(columns(db, QStringLiteral("cavyuser")).contains(QStringLiteral("fldStartNews")));
    EXPECT_FALSE(columns(db, QStringLiteral("print")).contains(QStringLiteral("PrintWhat")));
    EXPECT_FALSE(columns(db, QStringLiteral("Breeding")).contains(QStringLiteral("Sold")));

    // Columns of a changed type keep what converts and lose what does not.
    EXPECT_EQ(db.TableDefs(QStringLiteral("cavyuser")).Fields()(QStringLiteral("fldGestation")).Type(), jet::dbLong);
    EXPECT_EQ(value(db, QStringLiteral("SELECT fldGestation FROM cavyuser")).toInt(), 31);
    EXPECT_TRUE(value(db, QStringLiteral("SELECT fldWean FROM cavyuser")).isNull());
    EXPECT_EQ(db.TableDefs(QStringLiteral("weights")).Fields()(QStringLiteral("weightDate")).Type(), jet::dbDate);
    EXPECT_EQ(value(db, QStringLiteral("SELECT weightDate FROM weights WHERE weight = '2.5'")).toDateTime().date(),
              QDate(2019, 5, 4));
    EXPECT_TRUE(value(db, QStringLiteral("SELECT weightDate FROM weights WHERE weight = '2.1'")).isNull());
    EXPECT_EQ(db.TableDefs(QStringLiteral("Breeding")).Fields()(QStringLiteral("Colour")).Type(), jet::dbMemo);
    EXPECT_EQ(value(db, QStringLiteral("SELECT Colour FROM Breeding")).toString(), QStringLiteral("two agouti"));
    EXPECT_EQ(db.TableDefs(QStringLiteral("contacts")).Fields()(QStringLiteral("notes")).Type(), jet::dbMemo);

    // The contacts key is numbered afresh and the rows keep their data.
    EXPECT_EQ(db.TableDefs(QStringLiteral("contacts")).Fields()(QStringLiteral("ID")).Attributes(), 17);
    EXPECT_EQ(value(db, QStringLiteral("SELECT ID FROM contacts WHERE name = 'Feed store'")).toInt(), 2);
    EXPECT_EQ(value(db, QStringLiteral("SELECT notes FROM contacts WHERE ID = 1")).toString(), QStringLiteral("Tuesdays"));

    // The old status column sets the flags of a file older than 4.48.
    EXPECT_EQ(value(db, QStringLiteral("SELECT breeder FROM tree WHERE name = 'Ash'")).toInt(), -1);
    EXPECT_EQ(value(db, QStringLiteral("SELECT owner FROM tree WHERE name = 'Birch'")).toInt(), -1);
    EXPECT_TRUE(value(db, QStringLiteral("SELECT owner FROM tree WHERE name = 'Ash'")).isNull());

    // Journal text is copied to the journal table and kept where it was.
    Recordset j = db.OpenRecordset(QStringLiteral("SELECT nameId, journalDate, journalNote FROM journal"));
    ASSERT_FALSE(j.Eof());
    EXPECT_EQ(j.Fields(QStringLiteral("nameId")).toString(), QStringLiteral("1"));
    EXPECT_EQ(j.Fields(QStringLiteral("journalDate")).toDateTime().date(), QDate(2026, 11, 23));
    EXPECT_EQ(j.Fields(QStringLiteral("journalNote")).toString(), QStringLiteral("Bought at the show"));
    EXPECT_EQ(value(db, QStringLiteral("SELECT journal FROM tree WHERE name = 'Ash'")).toString(),
              QStringLiteral("Bought at the show"));

    EXPECT_EQ(value(db, QStringLiteral("SELECT name FROM print WHERE id = 1")).toString(), QStringLiteral("Custom"));
    EXPECT_EQ(GetVersionText(db), ProgramVersionText());
    EXPECT_EQ(errorLog(), QString());
}

TEST_F(Integrity, AnUpgradedFileHasEveryColumnAndTakesTheSettingsSave)
{
    Database fresh = makeFile(QStringLiteral("fresh.cav"));
    CheckDatabase(fresh, false, false);
    Database db = oldFile(QStringLiteral("4.47"));
    CheckDatabase(db, false, false);
    for (const Schema::TableStatement& t : Schema::Tables()) {
        TableFields upgraded = db.TableDefs(t.table).Fields();
        for (const Schema::ColumnText& c : Schema::Columns(t.table)) {
            if (c.name != QLatin1String("Sold") || t.table != QLatin1String("Breeding")) // removed on purpose
                EXPECT_TRUE(upgraded.contains(c.name)) << t.table.toStdString() << "." << c.name.toStdString();
        }
    }
    // The columns that no step names come with the type a new file gives them.
    for (const char* c : {"fldEmail", "fldStudNum", "fldPhoneNum", "fldFather"}) {
        const QString name = QString::fromLatin1(c);
        EXPECT_EQ(db.TableDefs(QStringLiteral("cavyuser")).Fields()(name).Type(),
                  fresh.TableDefs(QStringLiteral("cavyuser")).Fields()(name).Type()) << c;
    }

    User user;
    user.read(db);
    user.Email = QStringLiteral("kit@example.org");
    user.StudNum = QStringLiteral("S-17");
    user.PhoneNum = QStringLiteral("01234 567890");
    ASSERT_TRUE(SaveSettingsToFile(db, user));
    EXPECT_EQ(value(db, QStringLiteral("SELECT fldEmail & '|' & fldStudNum & '|' & fldPhoneNum FROM cavyuser")).toString(),
              QStringLiteral("kit@example.org|S-17|01234 567890"));
    EXPECT_EQ(errorLog(), QString());
}

TEST_F(Integrity, TheStatusUpgradeStopsAtVersion448)
{
    Database db = oldFile(QStringLiteral("4.48"));
    EXPECT_FALSE(NeedsStatusUpgrade(db, false));
    EXPECT_TRUE(NeedsStatusUpgrade(db, true));
    CheckDatabase(db, false, false);
    EXPECT_TRUE(value(db, QStringLiteral("SELECT breeder FROM tree WHERE name = 'Ash'")).isNull());
    EXPECT_TRUE(value(db, QStringLiteral("SELECT owner FROM tree WHERE name = 'Birch'")).isNull());
}

TEST_F(Integrity, AVersionThatIsNoNumberNeedsTheUpgrade)
{
    Database db = oldFile(QStringLiteral("beta"));
    EXPECT_TRUE(NeedsStatusUpgrade(db, false));
}

TEST_F(Integrity, AFileStampedByANewerProgramIsStampedDown)
{
    Database db = makeFile(QStringLiteral("new.cav"));
    CheckDatabase(db, false, false);
    db.Execute(QStringLiteral("UPDATE cavyuser SET fldVersion = '9.99.99' WHERE ID = 1"));
    CheckDatabase(db, false, false);
    EXPECT_EQ(GetVersionText(db), ProgramVersionText());
}

TEST_F(Integrity, AForcedCheckSaysSoBeforeItWorksAndCopiesJournalsAgain)
{
    Database db = oldFile(QStringLiteral("4.47"));
    CheckDatabase(db, false, false);
    env->ui().clear();
    CheckDatabase(db, true, true);
    const auto calls = env->ui().calls();
    ASSERT_GE(calls.size(), 2);
    EXPECT_EQ(calls[0].text, QStringLiteral("Database Updated."));
    EXPECT_EQ(calls[1].text, QStringLiteral("Checking database integrity ..."));
    EXPECT_EQ(value(db, QStringLiteral("SELECT count(*) FROM journal")).toInt(), 2);
}

TEST_F(Integrity, ResettingCustomFieldsEmptiesThemAndMakesThemAgain)
{
    Database db = makeFile(QStringLiteral("new.cav"));
    CheckDatabase(db, false, false);
    db.Execute(QStringLiteral("INSERT INTO tree (name, customField1, customField2) VALUES ('Ash', 'blue', 'tall')"));
    db.Execute(QStringLiteral("UPDATE cavyuser SET fldCustomName1 = 'Eye', fldCustomName2 = 'Size' WHERE ID = 1"));

    ResetCustomFields(db, QStringLiteral("one"), QStringLiteral("customField2"), QStringLiteral("fldCustomName2"));
    EXPECT_EQ(value(db, QStringLiteral("SELECT customField1 FROM tree")).toString(), QStringLiteral("blue"));
    EXPECT_TRUE(value(db, QStringLiteral("SELECT customField2 FROM tree")).isNull());
    EXPECT_TRUE(value(db, QStringLiteral("SELECT fldCustomName2 FROM cavyuser")).isNull());

    ResetCustomFields(db, QStringLiteral("all"));
    EXPECT_TRUE(value(db, QStringLiteral("SELECT customField1 FROM tree")).isNull());
    EXPECT_TRUE(value(db, QStringLiteral("SELECT fldCustomName1 FROM cavyuser")).isNull());
    EXPECT_EQ(value(db, QStringLiteral("SELECT name FROM tree")).toString(), QStringLiteral("Ash"));
    const auto calls = env->ui().calls();
    EXPECT_TRUE(std::none_of(calls.begin(), calls.end(),
                             [](const auto& c) { return c.text == QLatin1String("Database Updated."); }));
}

TEST_F(Integrity, SwappingColumnsExchangesTheirContents)
{
    Database db = makeFile(QStringLiteral("new.cav"));
    CheckDatabase(db, false, false);
    db.Execute(QStringLiteral("INSERT INTO tree (name, colour, breed) VALUES ('Ash', 'Rex', 'Black')"));
    SwapColumns(db, QStringLiteral("tree"), QStringLiteral("colour"), QStringLiteral("breed"), jet::dbText);
    EXPECT_EQ(value(db, QStringLiteral("SELECT colour FROM tree")).toString(), QStringLiteral("Black"));
    EXPECT_EQ(value(db, QStringLiteral("SELECT breed FROM tree")).toString(), QStringLiteral("Rex"));
    EXPECT_FALSE(db.TableDefs(QStringLiteral("tree")).Fields().contains(QStringLiteral("temp1")));
}

TEST_F(Integrity, AFailedTypeChangeKeepsTheOldColumnAndItsValues)
{
    Database db = oldFile(QStringLiteral("4.47"));
    ChangeColumnType(db, QStringLiteral("weights"), QStringLiteral("nosuch"), jet::dbDate);
    EXPECT_FALSE(db.TableDefs(QStringLiteral("weights")).Fields().contains(QStringLiteral("temp")));
    EXPECT_EQ(value(db, QStringLiteral("SELECT count(*) FROM weights")).toInt(), 2);
}

} // namespace
